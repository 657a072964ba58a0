// List forms as spreadsheets: paste, insert, delete, read from a file.
#include <QClipboard>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>

#include "forms/fir_form.h"
#include "tests/desktop/desktop_run.h"

namespace kavrel {
namespace {

struct ListForm : testing::Test, FormRun {
    FirRequest& request = bench().fir_request;
    QTableWidget* table = nullptr;

    void open_list() {
        open(FIR_TWIN_DLG);
        table = dialog->findChild<QTableWidget*>();
        table->setFocus();
        for (const auto* button : table->parentWidget()->findChildren<QPushButton*>()) {
            EXPECT_GT(button->geometry().top(), table->geometry().bottom());
        }
    }

    void paste(const QString& text, int row = 0, int column = 0) {
        QApplication::clipboard()->setText(text);
        table->setCurrentCell(row, column);
        press(*table, Qt::Key_V, Qt::ControlModifier);
    }

    [[nodiscard]] std::vector<double> rows() const {
        std::vector<double> cells;
        for (int row = 1; row <= request.shape.rows; ++row) {
            cells.push_back(request.shape(row, 1));
            cells.push_back(request.shape(row, 2));
        }
        return cells;
    }
};

TEST_F(ListForm, TakesWhatASpreadsheetGives) {
    open_list();
    paste("Frequency\tLoss\n0\t0\r\n1k\t-0.5\n2500\t1,25\n");
    EXPECT_EQ(rows(), (std::vector<double>{0, 0, 1000, -0.5, 2500, 1.25})) << "heads are left out, commas are points";
    paste("7", 1, 1);
    EXPECT_EQ(rows()[3], 7.0) << "a single cell";
    paste("3000 2\n4000 3", 3);
    EXPECT_EQ(rows().size(), 10U) << "columns at blanks";
    QString many;
    for (int i = 0; i <= max_shape_points; ++i) many += QString("%1\t0\n").arg(i);
    paste(many);
    EXPECT_EQ(rows().size(), 10U) << "too many rows change nothing";
    paste(many.section('\n', 0, max_shape_points - 1));
    EXPECT_EQ(request.shape.rows, max_shape_points);
    EXPECT_EQ(table->rowCount(), max_shape_points);
}

TEST_F(ListForm, InsertsDeletesCopiesAndEmptiesRows) {
    request.shape.rows = 3;
    for (int row = 1; row <= 3; ++row) request.shape(row, 1) = request.shape(row, 2) = row;
    open_list();
    table->setCurrentCell(1, 0);
    press(*table, Qt::Key_Insert);
    EXPECT_EQ(rows().size(), 6U) << "a blank row is none";
    type_cells(*table, {"9", "8"});
    press(*QApplication::focusWidget(), Qt::Key_Escape);
    EXPECT_EQ(rows(), (std::vector<double>{1, 1, 9, 8, 2, 2, 3, 3}));
    table->clearSelection();
    table->setRangeSelected(QTableWidgetSelectionRange(0, 0, 1, 1), true);
    press(*table, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "1\t1\n9\t8\n");
    click(*dialog, "Delete rows");
    EXPECT_EQ(rows(), (std::vector<double>{2, 2, 3, 3}));
    table->setCurrentCell(0, 1);
    press(*table, Qt::Key_Delete);
    dialog->accept();
    EXPECT_TRUE(dialog->isVisible()) << "half a row";
    press(*table, Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(ListForm, AWrongCellIsShownAndKeepsTheFormOpen) {
    open_list();
    paste("1\tx\n2\t3");
    EXPECT_EQ(request.shape.rows, 0);
    dialog->accept();
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_NE(table->item(0, 1)->background().style(), Qt::NoBrush);
    EXPECT_EQ(table->currentIndex(), table->model()->index(0, 1));
    paste("5", 0, 1);
    EXPECT_EQ(dialog->findChild<QLabel*>("refusal")->text(), "") << "mended";
    EXPECT_EQ(rows(), (std::vector<double>{1, 5, 2, 3}));
    table->setCurrentCell(2, 1);
    press(*table, Qt::Key_Tab);
    EXPECT_FALSE(table->hasFocus()) << "behind the first blank row";
    table->setFocus();
    press(*table, Qt::Key_Enter, Qt::ControlModifier);
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(ListForm, ReadsAFileAndLeavesTheRowsWhenItDoesNotFit) {
    write_text("shape.txt", "0 0\n1000 2.5\n");
    write_text("wrong.txt", "0 zero\n");
    open_list();
    const auto pick = [](const char* name) { return [name](QDialog& selector) { pick_file(selector, name); }; };
    const auto close_box = [](const char* caption) {
        return [caption](QDialog& box) {
            EXPECT_EQ(box.windowTitle(), caption);
            box.accept();
        };
    };
    hands.then(pick("shape.txt")).then(close_box("Success"));
    click(*dialog, "Read from file");
    EXPECT_EQ(rows(), (std::vector<double>{0, 0, 1000, 2.5}));
    EXPECT_EQ(table->item(1, 1)->text(), "2.5");
    hands.then(pick("wrong.txt")).then(close_box("Error"));
    click(*dialog, "Read from file");
    EXPECT_EQ(rows(), (std::vector<double>{0, 0, 1000, 2.5}));
    EXPECT_TRUE(hands.are_done());
}

}  // namespace
}  // namespace kavrel
