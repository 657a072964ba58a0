// An open form as a dialog, made from its field table alone.
#pragma once

#include <QDialog>
#include <vector>

#include "desktop/form_layout.h"

namespace kavrel {

class WindowSettings;

class FormDialog : public QDialog {
    Q_OBJECT

public:
    FormDialog(FormSheet& sheet, WindowSettings& settings, QWidget* parent);
    ~FormDialog() override;

    void accept() override;
    void reject() override;

signals:
    void help_wanted(const QString& form);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void fit_screen();
    void refresh();
    void order_tabs();
    void keep_field();
    void focus_field(const QString& name);
    // Whether a field that is on has an entry that cannot be taken; it gets the focus and shows why.
    [[nodiscard]] bool show_wrong_entry();

    FormSheet& sheet_;
    WindowSettings& settings_;
    std::vector<PlacedField> fields_;
    bool refreshing_ = false;
};

}  // namespace kavrel
