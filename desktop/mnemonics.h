// Access keys for labels that have none: each gets a letter of its own, as long as there are some.
#pragma once

#include <QSet>
#include <QString>

namespace kavrel {

class Mnemonics {
public:
    // Letters that something else in the window has already.
    explicit Mnemonics(const QString& taken);

    // The letter for a label: the first of a word, if it can be had, otherwise any; a null character when all are gone.
    [[nodiscard]] QChar take(const QString& label);

private:
    QSet<QChar> taken_;
};

// The label as Qt takes it, with its access key marked; ampersands of its own stay what they are.
[[nodiscard]] QString with_mnemonic(const QString& label, QChar key);

}  // namespace kavrel
