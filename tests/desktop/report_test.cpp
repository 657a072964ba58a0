// The report: what is on the screen, marked, found, enlarged, saved.
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QTextBlock>

#include "desktop/check_badge.h"
#include "desktop/text_viewer.h"
#include "tests/desktop/script_hands.h"

namespace kavrel {
namespace {

// Rows of a ladder, and a level line through each of its crossings.
const QStringList ladder{"┌┬─┬┐", "├┼─┼┤", "│││││", "├┼─┼┤", "├┼─┼┤"};

class BoxDrawing : public testing::TestWithParam<int> {};

// Without gaps: the picture of the ladder has ink along every line that its characters draw, whatever the size.
TEST_P(BoxDrawing, LinesJoinAtEverySize) {
    ReportView view;
    view.set_font({}, GetParam());
    view.resize(900, 600);
    for (const QString& line : ladder) view.append_line(line);
    view.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
    const QImage picture = view.viewport()->grab().toImage();
    const QRect first = view.cursorRect(QTextCursor(view.document()->findBlockByNumber(0)));
    const QRect second = view.cursorRect(QTextCursor(view.document()->findBlockByNumber(1)));
    QTextCursor beside(view.document()->findBlockByNumber(0));
    beside.movePosition(QTextCursor::Right);
    const int width = view.cursorRect(beside).x() - first.x();
    const int height = second.y() - first.y();
    const auto has_ink = [&](int x, int y) { return qGray(picture.pixel(x, y)) < 128; };

    // The upright lines of columns 0, 1, 3 and 4 run from the middle of the first row to that of the last.
    for (const int column : {0, 1, 3, 4}) {
        int line = -1;
        const int left = first.x() + column * width;
        for (int x = left; x < left + width && line < 0; ++x) {
            if (has_ink(x, first.y() + 2 * height + height / 2)) line = x;
        }
        ASSERT_GE(line, 0) << "column " << column;
        for (int y = first.y() + height / 2 + 1; y < first.y() + 4 * height + height / 2 - 1; ++y) {
            ASSERT_TRUE(has_ink(line, y)) << "gap in column " << column << ", row " << (y - first.y()) / height;
        }
    }
    const int below = first.y() + 5 * height;
    for (int x = first.x(); x < first.x() + 5 * width; ++x) {
        for (int y = below; y < below + height / 2; ++y) ASSERT_FALSE(has_ink(x, y)) << "below the last row";
    }
    // The level lines of rows 0, 1, 3 and 4 run from the middle of the first column to that of the last.
    for (const int row : {0, 1, 3, 4}) {
        int line = -1;
        const int top = first.y() + row * height;
        for (int y = top; y < top + height && line < 0; ++y) {
            if (has_ink(first.x() + 2 * width + width / 2, y)) line = y;
        }
        ASSERT_GE(line, 0) << "row " << row;
        for (int x = first.x() + width / 2 + 1; x < first.x() + 4 * width + width / 2 - 1; ++x) {
            ASSERT_TRUE(has_ink(x, line)) << "gap in row " << row << ", column " << (x - first.x()) / width;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Points, BoxDrawing, testing::Values(6, 7, 8, 9, 10, 11, 12, 13, 14, 16, 18, 20, 24, 28));

TEST(Report, LinesCopyAndSaveAreTheLinesThatWereShown) {
    DesktopRun run;
    for (const char* line : {"", " R1 =   50.0", "", "  │  ├─┤"}) run.window.show_line(line);
    EXPECT_EQ(run.report(), "\n R1 =   50.0\n\n  │  ├─┤\n") << "blank lines at the head among them";
    run.window.main().report().selectAll();
    run.window.copy_text();
    EXPECT_EQ(utf8_text(QApplication::clipboard()->text()) + "\n", run.report());
    run.hands.then([](QDialog& selector) { pick_file(selector, "report"); });
    emit run.window.main().save_report_wanted();
    EXPECT_EQ(read_text("report.txt"), run.report());
    run.hands.then([](QDialog& selector) { pick_file(selector, "report"); });
    emit run.window.main().pdf_report_wanted();
    EXPECT_TRUE(read_text("report.pdf").starts_with("%PDF"));
}

TEST(Report, FindsByKeysAndGoesRound) {
    DesktopRun run;
    for (const char* line : {"alpha", "Beta 1", "gamma", "beta 2"}) run.window.show_line(line);
    press(run.window.main(), Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
    auto* bar = run.window.main().findChild<QLineEdit*>("find_text");
    ASSERT_TRUE(bar->isVisible());
    QTest::keyClicks(bar, "beta");
    const auto marked_row = [&] { return run.window.main().report().textCursor().blockNumber(); };
    const int found = marked_row();
    EXPECT_TRUE(found == 1 || found == 3);
    press(*bar, Qt::Key_Return);
    EXPECT_EQ(marked_row(), 4 - found);
    press(*bar, Qt::Key_Return);
    EXPECT_EQ(marked_row(), found);
    press(*bar, Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(marked_row(), 4 - found);
    const auto* outcome = run.window.main().findChild<QLabel*>("find_outcome");
    EXPECT_TRUE(outcome->text().isEmpty());
    QTest::keyClicks(bar, "x");
    EXPECT_EQ(outcome->text(), "Not found");
    press(*bar, Qt::Key_Escape);
    EXPECT_FALSE(bar->isVisible());
}

TEST(Report, ZoomIsRememberedAndMenuKeysReachTheMenu) {
    {
        DesktopRun run;
        press(run.window.main(), Qt::Key_Plus, Qt::ControlModifier);
        press(run.window.main(), Qt::Key_Plus, Qt::ControlModifier);
        EXPECT_EQ(run.window.main().report().points(), usual_report_points + 2);
    }
    DesktopRun run;
    EXPECT_EQ(run.window.main().report().points(), usual_report_points + 2);
    press(run.window.main(), Qt::Key_0, Qt::ControlModifier);
    EXPECT_EQ(run.window.main().report().points(), usual_report_points);

    enter_segment(run.bench(), SegmentId::passive);
    run.window.main().report().setFocus();
    std::vector<int> chosen;
    QObject::connect(&run.window.main(), &MainWindow::item_chosen, &run.window.main(),
                     [&](int id) { chosen.push_back(id); });
    run.hands.always([](QDialog& box) { box.reject(); });
    press(run.window.main().report(), Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(chosen, std::vector<int>{330}) << "Save as, not Select all";
}

TEST(CheckBadge, FollowsWhatIsShownAndOpensTheList) {
    DesktopRun run;
    CheckBadge& badge = run.window.main().badge();
    EXPECT_EQ(badge.text(), "no request");
    ScriptHands(run, read_text(TEST_DATA "/conversations/files/notch.kav")).work();
    EXPECT_EQ(badge.text(), "meets the request (+12.1 dB)");
    ScriptHands(run, "choose Branch > Change\nset branch 4\nset first 100m\nok\n").work();
    EXPECT_EQ(badge.text(), "1 of 3 not met");
    click(run.window.main(), "1 of 3 not met");
    ASSERT_NE(run.window.text_viewer(), nullptr);
    EXPECT_TRUE(run.window.text_viewer()->view().toPlainText().contains("not met"));
    run.program->send(477);
    EXPECT_EQ(badge.text(), "meets the request (+12.1 dB)");
}

TEST(TextViewer, ShowsAFileClosesAndKeepsItsSize) {
    for (const bool again : {false, true}) {
        DesktopRun run;
        write_text("notes.txt", "first\nsecond ├┤\n");
        run.hands.then([](QDialog& selector) { pick_file(selector, "notes.txt"); });
        run.program->send(129);
        ASSERT_NE(run.window.text_viewer(), nullptr);
        TextViewer& viewer = *run.window.text_viewer();
        EXPECT_EQ(viewer.windowTitle(), "notes.txt");
        ASSERT_TRUE(wait_for(viewer));
        EXPECT_EQ(viewer.size() == QSize(555, 444), again);
        viewer.resize(555, 444);
        press(viewer, Qt::Key_F, Qt::ControlModifier);
        QApplication::processEvents();
        const QWidget& bar = *viewer.findChild<QLineEdit*>("find_text")->parentWidget();
        EXPECT_TRUE(bar.isVisible());
        EXPECT_EQ(bar.geometry().top(), viewer.view().geometry().bottom() + 1);
        run.program->send(131);
        EXPECT_FALSE(viewer.isVisible());
    }
}

}  // namespace
}  // namespace kavrel
