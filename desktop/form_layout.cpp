#include "desktop/form_layout.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <limits>

#include "desktop/mnemonics.h"
#include "desktop/text.h"

namespace kavrel {

namespace {

constexpr int tallest_column = 500;  // pixels, from which on another one is opened
constexpr int most_columns = 3;
constexpr int block_gap = 8;

// The blocks of a form, one after the other.
class Blocks {
public:
    Blocks(const FormSheet& sheet, Mnemonics& mnemonics, QWidget& parent)
        : sheet_(sheet), mnemonics_(mnemonics), parent_(parent) {
        for (std::size_t i = 0; i < sheet.size(); ++i) {
            if (sheet.may_be_scaled(i)) echo_width_ = parent.fontMetrics().horizontalAdvance("= 88.888 MHz");
        }
    }

    void add_heading(std::size_t i) {
        auto* box = new QGroupBox(with_mnemonic(qt_text(sheet_.label(i)), {}), &parent_);
        box->setObjectName(qt_text(sheet_.field(i).name));
        open_rows(box, {10, 4, 10, 6});
    }

    PlacedField add(FieldEditor& editor) {
        PlacedField placed{.editor = &editor, .label = nullptr, .key = mnemonics_.take(editor.label())};
        editor.set_mnemonic(placed.key);
        const FieldKind kind = editor.field().kind;
        if (kind == FieldKind::radio || kind == FieldKind::list) {
            widgets_.push_back(editor.widget());
            rows_ = nullptr;
            return placed;
        }
        // A tick box at the end of the form ("Save design data") belongs to the whole of it, to no heading.
        const bool ends_form = kind == FieldKind::flag && editor.field_number() + 1 == sheet_.size();
        if (rows_ == nullptr || ends_form) open_rows(new QWidget(&parent_), {2, 2, 2, 2});
        const int row = rows_->rowCount();
        if (editor.wants_label()) {
            placed.label = new QLabel(rows_->parentWidget());
            placed.label->setBuddy(editor.focus_widget());
            rows_->addWidget(placed.label, row, 0);
            rows_->addWidget(editor.widget(), row, 1);
            if (sheet_.may_be_scaled(editor.field_number())) {
                placed.echo = new QLabel(rows_->parentWidget());
                rows_->addWidget(placed.echo, row, 2);
            }
        } else {
            rows_->addWidget(editor.widget(), row, 0, 1, 2, kind == FieldKind::button ? Qt::AlignRight : Qt::AlignLeft);
        }
        return placed;
    }

    [[nodiscard]] const std::vector<QWidget*>& widgets() const { return widgets_; }

private:
    void open_rows(QWidget* block, QMargins margins) {
        rows_ = new QGridLayout(block);
        rows_->setContentsMargins(margins);
        rows_->setVerticalSpacing(5);
        rows_->setHorizontalSpacing(12);
        rows_->setColumnStretch(0, 1);
        if (echo_width_ > 0) rows_->setColumnMinimumWidth(2, echo_width_);  // in all blocks, so that entries line up
        widgets_.push_back(block);
    }

    const FormSheet& sheet_;
    Mnemonics& mnemonics_;
    QWidget& parent_;
    int echo_width_ = 0;           // that a number in plain units takes
    QGridLayout* rows_ = nullptr;  // of the block that further fields go to
    std::vector<QWidget*> widgets_;
};

int tallest(const std::vector<int>& heights, const std::vector<std::size_t>& breaks);

}  // namespace

std::vector<PlacedField> lay_out_form(const FormSheet& sheet, const std::vector<FieldEditor*>& editors,
                                      Mnemonics& mnemonics, QWidget& parent) {
    Blocks blocks(sheet, mnemonics, parent);
    std::vector<PlacedField> placed;
    for (std::size_t i = 0; i < editors.size(); ++i) {
        if (editors[i] == nullptr) {
            blocks.add_heading(i);
        } else {
            placed.push_back(blocks.add(*editors[i]));
        }
    }
    for (const PlacedField& field : placed) {
        if (field.echo != nullptr) field.echo->setObjectName(field.editor->widget()->objectName() + ".echo");
        if (field.label != nullptr) field.label->setText(with_mnemonic(field.editor->label(), field.key));
        field.editor->refresh();
    }

    std::vector<int> heights;
    for (QWidget* block : blocks.widgets()) heights.push_back(block->sizeHint().height() + block_gap);
    int columns = 1;
    while (columns < most_columns && tallest(heights, column_breaks(heights, columns)) > tallest_column) ++columns;
    const auto breaks = column_breaks(heights, columns);

    auto* across = new QHBoxLayout(&parent);
    across->setContentsMargins(0, 0, 0, 0);
    across->setSpacing(14);
    QVBoxLayout* column = nullptr;
    const auto& widgets = blocks.widgets();
    bool has_list = false;
    const auto close_column = [&] {
        if (column != nullptr && !has_list) column->addStretch(1);
        has_list = false;
    };
    for (std::size_t i = 0; i < widgets.size(); ++i) {
        if (i == 0 || std::ranges::find(breaks, i) != breaks.end()) {
            close_column();
            column = new QVBoxLayout;
            column->setSpacing(block_gap);
            across->addLayout(column, 1);
        }
        // A list takes the room that there is.
        const bool is_list = widgets[i]->findChild<QTableWidget*>() != nullptr;
        has_list = has_list || is_list;
        column->addWidget(widgets[i], is_list ? 1 : 0);
    }
    close_column();
    return placed;
}

std::vector<std::size_t> column_breaks(const std::vector<int>& heights, int columns) {
    const std::size_t count = heights.size();
    if (columns <= 1 || count < 2) return {};
    std::vector<std::size_t> best;
    int least = std::numeric_limits<int>::max();
    for (std::size_t first = 1; first < count; ++first) {
        std::vector<std::size_t> tried{first};
        if (columns == 2) {
            if (const int height = tallest(heights, tried); height < least) {
                least = height;
                best = tried;
            }
            continue;
        }
        for (std::size_t second = first + 1; second < count; ++second) {
            tried = {first, second};
            if (const int height = tallest(heights, tried); height < least) {
                least = height;
                best = tried;
            }
        }
    }
    return best;
}

namespace {

int tallest(const std::vector<int>& heights, const std::vector<std::size_t>& breaks) {
    int most = 0;
    int height = 0;
    for (std::size_t i = 0; i < heights.size(); ++i) {
        if (std::ranges::find(breaks, i) != breaks.end()) height = 0;
        height += heights[i];
        most = std::max(most, height);
    }
    return most;
}

}  // namespace

}  // namespace kavrel
