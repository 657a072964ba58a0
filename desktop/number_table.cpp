#include "desktop/number_table.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QRegularExpression>
#include <QSignalBlocker>
#include <algorithm>

#include "desktop/number_entry.h"
#include "desktop/palettes.h"
#include "desktop/text.h"
#include "shell/number_text.h"

namespace kavrel {

namespace {

constexpr int usual_rows = 8;  // that an empty table shows

QList<QStringList> pasted_cells(QString text);
bool holds_number(const QStringList& cells);

}  // namespace

NumberTable::NumberTable(int columns, int capacity, ReadCell read, QWidget* parent)
    : QTableWidget(std::min(usual_rows, capacity), columns, parent), capacity_(capacity), read_(std::move(read)) {
    setAlternatingRowColors(true);
    setSelectionMode(ContiguousSelection);
    setCornerButtonEnabled(false);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setMinimumSectionSize(96);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
    verticalHeader()->setHighlightSections(false);
    setEditTriggers(DoubleClicked | EditKeyPressed | AnyKeyPressed);
    setCurrentCell(0, 0);
    connect(this, &QTableWidget::cellChanged, this, &NumberTable::went);
}

QSize NumberTable::sizeHint() const {
    const int rows = std::min(usual_rows, capacity_) * verticalHeader()->defaultSectionSize();
    return {QTableWidget::sizeHint().width(), horizontalHeader()->sizeHint().height() + rows + 2 * frameWidth()};
}

void NumberTable::set_rows(const std::vector<std::vector<double>>& rows) {
    {
        const QSignalBlocker silent(this);
        clearContents();
        setRowCount(std::min(capacity_, std::max(usual_rows, static_cast<int>(rows.size()) + 1)));
        for (std::size_t row = 0; row < rows.size(); ++row) {
            for (std::size_t column = 0; column < rows[row].size(); ++column) {
                set_cell(static_cast<int>(row), static_cast<int>(column), short_number(rows[row][column]));
            }
        }
    }
    mark_wrong_cells();
}

NumberTable::Contents NumberTable::contents() const {
    Contents found;
    for (int row = 0; row <= last_filled_row(); ++row) {
        if (is_blank(row)) continue;
        std::vector<double> numbers;
        for (int column = 0; column < columnCount(); ++column) {
            const QString text = cell(row, column);
            if (const auto number = read_(column, text)) {
                numbers.push_back(*number);
            } else if (!found.wrong_cell || (!text.isEmpty() && found.wrong_text.isEmpty())) {
                found.wrong_cell = {row, column};
                found.wrong_text = text;
            }
        }
        found.rows.push_back(numbers);
    }
    return found;
}

void NumberTable::insert_row() {
    if (last_filled_row() + 1 >= capacity_) {
        emit overfull(capacity_ + 1);
        return;
    }
    const int row = std::max(0, currentRow());
    if (rowCount() == capacity_) removeRow(capacity_ - 1);
    insertRow(row);
    setCurrentCell(row, 0);
    went();
}

void NumberTable::delete_rows() {
    QSet<int> marked;
    for (const auto& index : selectedIndexes()) marked.insert(index.row());
    if (marked.isEmpty() && currentRow() >= 0) marked.insert(currentRow());
    QList<int> rows(marked.begin(), marked.end());
    std::ranges::sort(rows, std::greater{});
    for (const int row : rows) removeRow(row);
    went();
    if (!rows.isEmpty()) setCurrentCell(std::min(rows.last(), rowCount() - 1), std::max(0, currentColumn()));
}

void NumberTable::paste() {
    QList<QStringList> cells = pasted_cells(QApplication::clipboard()->text());
    if (!cells.isEmpty() && !holds_number(cells.first())) cells.removeFirst();  // column heads
    const int top = std::max(0, currentRow());
    const int left = std::max(0, currentColumn());
    if (top + static_cast<int>(cells.size()) > capacity_) {
        emit overfull(top + static_cast<int>(cells.size()));
        return;
    }
    {
        const QSignalBlocker silent(this);
        setRowCount(std::max(rowCount(), top + static_cast<int>(cells.size())));
        for (int row = 0; row < cells.size(); ++row) {
            for (int column = 0; column < cells[row].size() && left + column < columnCount(); ++column) {
                set_cell(top + row, left + column, cells[row][column].trimmed());
            }
        }
    }
    went();
}

void NumberTable::copy() const {
    QString text;
    for (const auto& range : selectedRanges()) {
        for (int row = range.topRow(); row <= range.bottomRow(); ++row) {
            for (int column = range.leftColumn(); column <= range.rightColumn(); ++column) {
                text += (column > range.leftColumn() ? "\t" : "") + cell(row, column);
            }
            text += '\n';
        }
    }
    QApplication::clipboard()->setText(text);
}

void NumberTable::clear_cells() {
    {
        const QSignalBlocker silent(this);
        for (const auto& index : selectedIndexes()) set_cell(index.row(), index.column(), {});
    }
    went();
}

// As in a spreadsheet: Enter goes down, Delete empties, letters and figures overwrite.
void NumberTable::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Paste)) return paste();
    if (event->matches(QKeySequence::Copy)) return copy();
    if (event->matches(QKeySequence::Cut)) {
        copy();
        return clear_cells();
    }
    const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    const bool control = (event->modifiers() & Qt::ControlModifier) != 0;
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (!plain) break;
            if (currentRow() + 1 < rowCount()) setCurrentCell(currentRow() + 1, currentColumn());
            return;
        case Qt::Key_Delete:
        case Qt::Key_Backspace:
            if (control) return delete_rows();
            return clear_cells();
        case Qt::Key_Insert:
            if (plain) return insert_row();
            break;
        default: break;
    }
    // Keys that are no entry of a number belong to the form.
    if (event->key() == Qt::Key_Escape || (event->modifiers() & Qt::AltModifier) != 0 ||
        (control && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter))) {
        event->ignore();
        return;
    }
    QTableWidget::keyPressEvent(event);
}

// Tab goes from cell to cell, and beyond the last one out of the table.
bool NumberTable::event(QEvent* event) {
    if (event->type() == QEvent::KeyPress && state() != EditingState) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        const bool at_end = currentColumn() + 1 == columnCount() &&
                            (currentRow() > last_filled_row() || currentRow() + 1 == rowCount());
        const bool at_start = currentColumn() <= 0 && currentRow() <= 0;
        if (key == Qt::Key_Tab && at_end) return QAbstractScrollArea::focusNextPrevChild(true);
        if (key == Qt::Key_Backtab && at_start) return QAbstractScrollArea::focusNextPrevChild(false);
    }
    return QTableWidget::event(event);
}

QString NumberTable::cell(int row, int column) const {
    const QTableWidgetItem* found = item(row, column);
    return found == nullptr ? QString() : found->text().trimmed();
}

void NumberTable::set_cell(int row, int column, const QString& text) {
    if (text.isEmpty()) {
        delete takeItem(row, column);
        return;
    }
    auto* made = new QTableWidgetItem(text);
    made->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    setItem(row, column, made);
}

int NumberTable::last_filled_row() const {
    int row = rowCount() - 1;
    while (row >= 0 && is_blank(row)) --row;
    return row;
}

bool NumberTable::is_blank(int row) const {
    int column = 0;
    while (column < columnCount() && cell(row, column).isEmpty()) ++column;
    return column == columnCount();
}

void NumberTable::keep_blank_row() {
    const int wanted = std::min(capacity_, std::max(usual_rows, last_filled_row() + 2));
    if (rowCount() < wanted) setRowCount(wanted);
}

void NumberTable::mark_wrong_cells() {
    const QSignalBlocker silent(this);
    for (int row = 0; row < rowCount(); ++row) {
        for (int column = 0; column < columnCount(); ++column) {
            QTableWidgetItem* one = item(row, column);
            if (one == nullptr) continue;
            const QString text = one->text().trimmed();
            const bool wrong = !text.isEmpty() && !read_(column, text);
            one->setBackground(wrong ? QBrush(alarm_paper(palette())) : QBrush());
            one->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        }
    }
}

void NumberTable::went() {
    keep_blank_row();
    mark_wrong_cells();
    emit edited();
}

namespace {

// The cells of a pasted text: columns at tabs, as spreadsheets give them, or at blanks and semicolons, or at commas.
QList<QStringList> pasted_cells(QString text) {
    text.replace("\r\n", "\n").replace('\r', '\n');
    if (text.endsWith('\n')) text.chop(1);
    QList<QStringList> rows;
    const bool has_tabs = text.contains('\t');
    for (const QString& line : text.split('\n')) {
        if (has_tabs) {
            rows.append(line.split('\t'));
        } else {
            QStringList cells = line.split(QRegularExpression("[\\s;]+"), Qt::SkipEmptyParts);
            if (cells.size() == 1 && cells.first().count(',') > 1) cells = cells.first().split(',');
            for (QString& one : cells) {
                if (one.endsWith(',')) one.chop(1);
            }
            rows.append(cells);
        }
    }
    return rows;
}

bool holds_number(const QStringList& cells) {
    return std::ranges::any_of(cells, [](const QString& one) { return parse_number(typed_number(one)).has_value(); });
}

}  // namespace

}  // namespace kavrel
