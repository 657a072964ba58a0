// Hands at the keyboard: what a test does with the dialogs that come up while a call of the program waits for them.
#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QMessageBox>
#include <QSet>
#include <QTest>
#include <QTimer>
#include <deque>
#include <functional>

#include <gtest/gtest.h>

namespace kavrel {

class Hands : public QObject {
public:
    using Step = std::function<void(QDialog&)>;

    Hands() { look_soon(); }

    // Does this with the next dialog that comes up.
    Hands& then(Step step) {
        steps_.push_back(std::move(step));
        return *this;
    }
    // Does this with every dialog for which there is no step.
    void always(Step step) { otherwise_ = std::move(step); }

    [[nodiscard]] bool are_done() const { return steps_.empty(); }

private:
    static constexpr int patience = 60000;  // milliseconds

    void look_soon() {
        QTimer::singleShot(1, this, [this] { look(); });
    }

    void look() {
        look_soon();
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (dialog == nullptr || !dialog->isVisible() || seen_.contains(dialog)) return;
        if (QApplication::activeWindow() != dialog) return dialog->activateWindow();  // it has no focus yet
        seen_.insert(dialog);
        connect(dialog, &QObject::destroyed, this, [this, dialog] { seen_.remove(dialog); });
        QTimer::singleShot(patience, dialog, [dialog] {
            ADD_FAILURE() << "a dialog was left open: " << dialog->windowTitle().toStdString();
            dialog->reject();
        });
        if (!steps_.empty()) {
            const Step step = std::move(steps_.front());
            steps_.pop_front();
            step(*dialog);
        } else if (otherwise_) {
            otherwise_(*dialog);
        } else {
            const auto* box = qobject_cast<QMessageBox*>(dialog);
            ADD_FAILURE() << "a dialog came up unasked: " << dialog->windowTitle().toStdString() << ' '
                          << (box == nullptr ? "" : box->text().toStdString());
            dialog->reject();
        }
    }

    std::deque<Step> steps_;
    Step otherwise_;
    QSet<QObject*> seen_;
};

// Until this window has the focus.
inline bool wait_for(QWidget& window) {
    window.activateWindow();
    return QTest::qWaitFor([&window] { return QApplication::activeWindow() == &window; });
}

inline void press(QWidget& widget, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(&widget, static_cast<Qt::Key>(key), modifiers);
}

// Types into a widget, over what it held.
inline void type_over(QWidget& widget, const QString& text) {
    widget.setFocus();
    press(widget, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(&widget, text);
}

// Fills in cells of a table from its current one on, each left with the tab key.
inline void type_cells(QWidget& table, const QStringList& cells) {
    table.setFocus();
    for (const QString& cell : cells) {
        // The first letter opens the cell, which gets the others.
        for (const QChar letter : cell) QTest::keyClicks(QApplication::focusWidget(), QString(letter));
        press(*QApplication::focusWidget(), Qt::Key_Tab);
    }
}

// Names a file in the file selector.
inline void pick_file(QDialog& selector, const QString& name) {
    type_over(*selector.findChild<QWidget*>("fileNameEdit"), name);
    selector.accept();
}

// The button of a dialog by its label, any access key.
inline QAbstractButton* button_of(QWidget& dialog, const QString& label) {
    for (auto* button : dialog.findChildren<QAbstractButton*>()) {
        if (button->text().remove('&').remove("...") == label) return button;
    }
    ADD_FAILURE() << "no button " << label.toStdString();
    return nullptr;
}

inline void click(QWidget& dialog, const QString& label) {
    if (QAbstractButton* button = button_of(dialog, label)) button->click();
}

}  // namespace kavrel
