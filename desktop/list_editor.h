// A list field: a spreadsheet of numbers with the buttons that work on its rows.
#pragma once

#include <optional>
#include <vector>

#include "desktop/field_editor.h"

class QGroupBox;
class QLabel;
class QPushButton;

namespace kavrel {

class NumberTable;

class ListEditor final : public FieldEditor {
    Q_OBJECT

public:
    ListEditor(FormSheet& sheet, std::size_t field, QWidget* parent);

    [[nodiscard]] QWidget* widget() const override;
    [[nodiscard]] QWidget* focus_widget() const override;
    [[nodiscard]] QList<QWidget*> further_stops() const override;
    void refresh() override;
    [[nodiscard]] QString wrong() const override { return wrong_; }
    void go_to_wrong() override;
    [[nodiscard]] bool wants_label() const override { return false; }
    void set_mnemonic(QChar key) override { key_ = key; }

private:
    // The rows of the table into the record, if every one of them is whole.
    void take_rows();
    void show_rows();
    [[nodiscard]] std::optional<double> number_in(int column, const QString& text) const;
    [[nodiscard]] bool record_differs(const std::vector<std::vector<double>>& rows) const;
    void show_message(const QString& wrong);

    QGroupBox* box_;
    NumberTable* table_;
    QLabel* message_;
    QPushButton* insert_;
    QPushButton* remove_;
    QPushButton* read_ = nullptr;
    QString wrong_;
    QChar key_;
    bool is_shown_ = false;  // the record's rows have been in the table
};

}  // namespace kavrel
