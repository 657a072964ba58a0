#include "desktop/list_editor.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "desktop/mnemonics.h"
#include "desktop/number_entry.h"
#include "desktop/number_table.h"
#include "desktop/palettes.h"
#include "desktop/text.h"

namespace kavrel {

namespace {

constexpr int column_width = 150;

}  // namespace

ListEditor::ListEditor(FormSheet& sheet, std::size_t field, QWidget* parent)
    : FieldEditor(sheet, field, parent),
      box_(new QGroupBox(parent)),
      table_(new NumberTable(
          sheet.list(field).columns, sheet.list(field).capacity,
          [this](int column, const QString& text) { return number_in(column, text); }, box_)),
      message_(new QLabel(box_)),
      insert_(new QPushButton(tr("Insert row"), box_)),
      remove_(new QPushButton(tr("Delete rows"), box_)) {
    auto* layout = new QVBoxLayout(box_);
    layout->setContentsMargins(8, 6, 8, 8);
    layout->addWidget(table_, 1);
    table_->setObjectName(qt_text(this->field().name) + ".table");
    table_->setMinimumWidth(column_width * table_->columnCount() + 48);
    message_->setWordWrap(true);
    QPalette colours = message_->palette();
    colours.setColor(QPalette::WindowText, alarm_text(colours));
    message_->setPalette(colours);
    message_->setFixedHeight(2 * message_->fontMetrics().lineSpacing());
    layout->addWidget(message_);
    auto* buttons = new QHBoxLayout;
    const auto add = [&](QPushButton* button, const QString& tip, auto work) {
        button->setAutoDefault(false);
        button->setToolTip(tip);
        buttons->addWidget(button);
        connect(button, &QPushButton::clicked, this, work);
    };
    add(insert_, tr("A blank row above the current one (Ins)"), [this] { table_->insert_row(); });
    add(remove_, tr("Deletes the marked rows (Ctrl+Del)"), [this] { table_->delete_rows(); });
    buttons->addStretch(1);
    if (sheet.form().reads_file) {
        read_ = new QPushButton(tr("Read from file"), box_);
        add(read_, tr("A text file with a row of numbers a line"), [this] {
            sheet_.read_rows(field_);
            emit changed();
        });
    }
    layout->addLayout(buttons);
    connect(table_, &NumberTable::edited, this, &ListEditor::take_rows);
    connect(table_, &NumberTable::overfull, this, [this](int rows) {
        show_message(tr("%1 rows do not fit: there is room for %2").arg(rows).arg(sheet_.list(field_).capacity));
    });
}

QWidget* ListEditor::widget() const { return box_; }
QWidget* ListEditor::focus_widget() const { return table_; }

QList<QWidget*> ListEditor::further_stops() const {
    QList<QWidget*> stops{insert_, remove_};
    if (read_ != nullptr) stops.append(read_);
    return stops;
}

void ListEditor::go_to_wrong() {
    if (const auto contents = table_->contents(); contents.wrong_cell) {
        const auto [row, column] = *contents.wrong_cell;
        table_->setCurrentCell(row, column);
    }
    table_->setFocus(Qt::TabFocusReason);
}

void ListEditor::refresh() {
    box_->setTitle(with_mnemonic(label(), key_));
    box_->setEnabled(is_on());
    QStringList heads;
    for (int column = 1; column <= table_->columnCount(); ++column) {
        heads.append(qt_text(sheet_.column_label(field_, column)));
    }
    table_->setHorizontalHeaderLabels(heads);
    const auto contents = table_->contents();
    if (!is_shown_ || (!contents.wrong_cell && record_differs(contents.rows))) show_rows();
}

void ListEditor::take_rows() {
    const auto contents = table_->contents();
    if (contents.wrong_cell) {
        const auto [row, column] = *contents.wrong_cell;
        const QString place = tr("row %1, %2").arg(row + 1).arg(table_->horizontalHeaderItem(column)->text());
        const std::string typed = typed_number(contents.wrong_text);
        const QString wrong = qt_text(sheet_.cell(field_, column + 1, typed).wrong);
        show_message(place + ": " + (typed.empty() ? tr("a number is missing") : wrong));
        wrong_ = message_->text();
        emit changed();
        return;
    }
    show_message({});
    wrong_.clear();
    sheet_.clear_rows(field_);
    for (const auto& row : contents.rows) {
        const std::string wrong = sheet_.append_row(field_, row);
        if (!wrong.empty()) show_message(wrong_ = qt_text(wrong));
    }
    emit changed();
}

std::optional<double> ListEditor::number_in(int column, const QString& text) const {
    const FormSheet::Typed typed = sheet_.cell(field_, column + 1, typed_number(text));
    return typed.wrong.empty() ? std::optional(typed.value) : std::nullopt;
}

void ListEditor::show_rows() {
    const ListView list = sheet_.list(field_);
    std::vector<std::vector<double>> rows;
    for (int row = 1; row <= *list.rows; ++row) {
        auto& numbers = rows.emplace_back();
        for (int column = 1; column <= list.columns; ++column) numbers.push_back(list(row, column));
    }
    table_->set_rows(rows);
    is_shown_ = true;
    wrong_.clear();
    show_message({});
}

bool ListEditor::record_differs(const std::vector<std::vector<double>>& rows) const {
    const ListView list = sheet_.list(field_);
    if (static_cast<int>(rows.size()) != *list.rows) return true;
    for (int row = 1; row <= *list.rows; ++row) {
        for (int column = 1; column <= list.columns; ++column) {
            if (rows[static_cast<std::size_t>(row) - 1][static_cast<std::size_t>(column) - 1] != list(row, column)) {
                return true;
            }
        }
    }
    return false;
}

void ListEditor::show_message(const QString& wrong) { message_->setText(wrong); }

}  // namespace kavrel
