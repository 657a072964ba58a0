// One field of an open form on the screen, by the field's kind.
#pragma once

#include <QString>
#include <QWidget>
#include <memory>

#include "shell/form.h"

namespace kavrel {

// An editor writes into the form's record as the user works, and signals when the rules are to be looked at again.
class FieldEditor : public QObject {
    Q_OBJECT

public:
    FieldEditor(FormSheet& sheet, std::size_t field, QObject* parent) : QObject(parent), sheet_(sheet), field_(field) {}

    // What is shown in the form, and what in it takes the keyboard focus.
    [[nodiscard]] virtual QWidget* widget() const = 0;
    [[nodiscard]] virtual QWidget* focus_widget() const { return widget(); }

    // Where the tab key comes to after the focus widget, before it leaves the field.
    [[nodiscard]] virtual QList<QWidget*> further_stops() const { return {}; }

    // Shows value, label and state as the form has them now. What the user is typing stays.
    virtual void refresh() = 0;

    // What is wrong with the entry, or blank: such a form cannot be left with OK.
    [[nodiscard]] virtual QString wrong() const { return {}; }

    // Gives the focus to the entry that is wrong, where the field has several.
    virtual void go_to_wrong() { focus_widget()->setFocus(Qt::TabFocusReason); }

    // What the value is in plain units, where that is not what is shown.
    [[nodiscard]] QString echo() const;

    // Whether the label is beside it (or else on it).
    [[nodiscard]] virtual bool wants_label() const { return true; }
    virtual void set_mnemonic(QChar) {}

    [[nodiscard]] std::size_t field_number() const { return field_; }
    [[nodiscard]] const Field& field() const { return sheet_.field(field_); }
    [[nodiscard]] bool is_on() const { return sheet_.is_on(field_); }
    [[nodiscard]] QString label() const;

signals:
    void changed();

protected:
    // Hands a value to the form; what is wrong with it, or blank.
    QString enter(const std::string& value);

    FormSheet& sheet_;
    std::size_t field_;
};

// The editor for a field; null for a heading.
[[nodiscard]] FieldEditor* make_field_editor(FormSheet& sheet, std::size_t field, QWidget* parent);

}  // namespace kavrel
