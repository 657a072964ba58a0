// A spreadsheet of numbers as they are typed. It always has a blank row at its end, up to its capacity; blank rows do
// not count.
#pragma once

#include <QTableWidget>
#include <functional>
#include <optional>
#include <vector>

namespace kavrel {

class NumberTable : public QTableWidget {
    Q_OBJECT

public:
    // The number in a cell of a column (from 0) as it was typed, none for what is none.
    using ReadCell = std::function<std::optional<double>(int column, const QString& typed)>;
    NumberTable(int columns, int capacity, ReadCell read, QWidget* parent);

    // High enough for a table of a few rows without a scroll bar.
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

    void set_rows(const std::vector<std::vector<double>>& rows);

    // What the rows hold, or where the first cell is that is no number.
    struct Contents {
        std::vector<std::vector<double>> rows;
        std::optional<std::pair<int, int>> wrong_cell = {};
        QString wrong_text = {};
    };
    [[nodiscard]] Contents contents() const;

    void insert_row();   // above the current one
    void delete_rows();  // those that have a marked cell
    void paste();        // a spreadsheet's cells, from the current cell on
    void copy() const;   // the marked cells
    void clear_cells();

signals:
    // Something was typed, pasted, inserted or deleted.
    void edited();
    // What was pasted needs this many rows, which are more than there may be.
    void overfull(int rows);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;

private:
    [[nodiscard]] QString cell(int row, int column) const;
    void set_cell(int row, int column, const QString& text);
    [[nodiscard]] int last_filled_row() const;
    [[nodiscard]] bool is_blank(int row) const;
    void keep_blank_row();
    void mark_wrong_cells();
    void went();

    int capacity_;
    ReadCell read_;
};

}  // namespace kavrel
