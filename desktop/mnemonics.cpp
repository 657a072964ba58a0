#include "desktop/mnemonics.h"

namespace kavrel {

namespace {

bool can_be_key(QChar c) { return c.unicode() < 128 && c.isLetterOrNumber(); }

}  // namespace

Mnemonics::Mnemonics(const QString& taken) {
    for (const QChar c : taken) taken_.insert(c.toLower());
}

QChar Mnemonics::take(const QString& label) {
    const auto free = [&](QChar c) { return can_be_key(c) && !taken_.contains(c.toLower()); };
    QChar key;
    for (qsizetype i = 0; i < label.size() && key.isNull(); ++i) {
        if ((i == 0 || !can_be_key(label[i - 1])) && free(label[i])) key = label[i].toLower();
    }
    for (qsizetype i = 0; i < label.size() && key.isNull(); ++i) {
        if (free(label[i])) key = label[i].toLower();
    }
    if (!key.isNull()) taken_.insert(key);
    return key;
}

QString with_mnemonic(const QString& label, QChar key) {
    QString text;
    bool marked = key.isNull();
    for (qsizetype i = 0; i < label.size(); ++i) {
        const bool begins_word = i == 0 || !can_be_key(label[i - 1]);
        const bool is_first_choice = label[i].toLower() == key && begins_word;
        // A letter inside a word is marked only where no word begins with it.
        const bool later = !begins_word && [&] {
            for (qsizetype k = i + 1; k < label.size(); ++k) {
                if (label[k].toLower() == key && !can_be_key(label[k - 1])) return true;
            }
            return false;
        }();
        if (!marked && (is_first_choice || (label[i].toLower() == key && !later))) {
            text += '&';
            marked = true;
        }
        text += label[i];
        if (label[i] == '&') text += '&';
    }
    return text;
}

}  // namespace kavrel
