// An open form as a dialog, made from its field table alone.
#pragma once

#include <QDialog>
#include <vector>

#include "desktop/form_layout.h"

class QDialogButtonBox;
class QLabel;

namespace kavrel {

class WindowSettings;

class FormDialog : public QDialog {
    Q_OBJECT

public:
    FormDialog(FormSheet& sheet, WindowSettings& settings, QWidget* parent);
    ~FormDialog() override;

    void accept() override;

signals:
    void help_wanted(const QString& form);

protected:
    void showEvent(QShowEvent* event) override;
    // The tab key goes through the fields that are on, in the form's order, then through the buttons; a radio group is
    // one stop.
    bool focusNextPrevChild(bool next) override;

private:
    void fit_screen();
    void take_change();
    void refresh();
    // Where the tab key stops: the part of the form that a stop stands for, and what of it takes the focus.
    struct Stop {
        const QWidget* part;
        QWidget* focus;
    };
    [[nodiscard]] std::vector<Stop> stops() const;
    void focus_field(std::string_view name);
    // The first field that is on and has an entry that cannot be taken; null if there is none.
    [[nodiscard]] const PlacedField* wrong_entry() const;
    // Whether there is one; it gets the focus, and the form says why.
    [[nodiscard]] bool show_wrong_entry();
    void show_refusal(const QString& text);

    FormSheet& sheet_;
    WindowSettings& settings_;
    std::vector<PlacedField> fields_;
    QLabel* refusal_;  // what is wrong, in a line of its own
    QDialogButtonBox* buttons_;
    bool refreshing_ = false;
};

}  // namespace kavrel
