#include "shell/reporter.h"

#include <gtest/gtest.h>

#include "shell/print_form.h"
#include "shell/shown_text.h"
#include "tests/support/fake_window.h"
#include "tests/support/scratch_folder.h"

namespace kavrel {
namespace {

struct Reports : testing::Test {
    FakeWindow window;
    Journal journal;
    PrintState print;
    Reporter reporter{window, journal, print};

    void report(int count) {
        for (int i = 1; i <= count; ++i) reporter.report_line("line " + std::to_string(i));
    }
};

TEST_F(Reports, TextIsCutAtLineFeedsAndAtEightyOneCharacters) {
    reporter.report_line("one\n\ntwo\n");
    reporter.report_line(std::string(90, 'x'));
    std::string box;
    for (int i = 0; i < 90; ++i) box += "─";
    reporter.report_line(box);
    ASSERT_EQ(window.lines.size(), 6U);
    EXPECT_EQ(window.lines[1], "");
    EXPECT_EQ(window.lines[3], "");
    EXPECT_EQ(window.lines[4].size(), 81U);
    EXPECT_EQ(window.lines[5].size(), 3U * 81U) << "characters count, not bytes";
    EXPECT_EQ(journal.lines, window.lines);
}

// A title may come from anywhere: what is shown and printed does nothing to a terminal, what is kept is what came.
TEST_F(Reports, TextFromOutsideIsShownWithoutControlCharacters) {
    const struct {
        std::string_view text, shown;
    } rows[] = {
        {"\x1b[31mred\a\x7f\tµ─\xf0\x9f\x98\x80", " [31mred  \tµ─\xf0\x9f\x98\x80"},
        {"\xc2\x9b"
         "31m \xe2\x80\xae\xe2\x81\xa6\xe2\x80\xa8",
         " 31m    "},  // C1, directions, ends of line
        {"\xff\xc0\xaf\xed\xa0\x80\xef\xbf\xbe\xe2\x82",
         "??????????"
         "?"},  // no UTF-8, no XML
        {"one\rtwo\r", "one two "},
    };
    for (const auto& row : rows) {
        reporter.report_line(row.text);
        reporter.message(row.text, "Advice");
        EXPECT_EQ(window.lines.back(), row.shown);
        EXPECT_EQ(window.boxes.back(), "Advice: " + std::string(row.shown));
        EXPECT_EQ(journal.lines.back(), row.text);
        EXPECT_EQ(journal.boxes.back().text, row.text);
        EXPECT_EQ(shown_text(row.shown, ShownAs::lines), row.shown);
    }
}

TEST_F(Reports, PagesLeaveBeforeTheirFiftyEighthLine) {
    reporter.set_print_mode(PrintMode::printer);
    report(57);
    EXPECT_TRUE(window.pages.empty());
    report(1);
    ASSERT_EQ(window.pages.size(), 1U);
    EXPECT_EQ(window.pages[0].size(), 57U);
    EXPECT_EQ(window.pages[0].back(), "line 57");
    reporter.set_print_mode(PrintMode::screen);
    EXPECT_EQ(window.pages.size(), 1U);
    report(1);
    ASSERT_EQ(window.pages.size(), 2U) << "what waits is printed with the next line";
    EXPECT_EQ(window.pages[1], std::vector<std::string>{"line 1"});
    report(60);
    EXPECT_EQ(window.pages.size(), 2U);
}

TEST_F(Reports, AMissingPrinterIsToldOnceAndOneThatIsCancelledNotAtAll) {
    for (const PrintOutcome outcome : {PrintOutcome::cancelled, PrintOutcome::failed}) {
        window.printer = outcome;
        reporter.set_print_mode(PrintMode::printer);
        report(200);
        EXPECT_EQ(print.print_mode, PrintMode::screen);
        EXPECT_EQ(window.boxes.size(), outcome == PrintOutcome::failed ? 1U : 0U);
    }
    EXPECT_EQ(window.boxes, std::vector<std::string>{"Error: Printer is not available"});
    EXPECT_EQ(window.lines.size(), 400U);
}

TEST_F(Reports, FileModeAppendsAndTellsWhenItCannot) {
    const ScratchFolder folder;
    write_text("out.txt", "before\n");
    reporter.set_print_mode(PrintMode::file, "out.txt");
    reporter.report_line("a\nb");
    EXPECT_EQ(read_text("out.txt"), "before\na\nb\n");
    reporter.set_print_mode(PrintMode::file, "missing/out.txt");
    report(3);
    EXPECT_EQ(window.boxes, std::vector<std::string>{"Error: File could not be written"});

    window.files = {"other.txt", "missing/out.txt"};
    EXPECT_TRUE(choose_print_mode(PrintTarget::file, reporter));
    EXPECT_FALSE(choose_print_mode(PrintTarget::file, reporter)) << "told when it is chosen";
    EXPECT_FALSE(choose_print_mode(PrintTarget::file, reporter)) << "no name";
    EXPECT_EQ(window.boxes.size(), 2U);
    EXPECT_EQ(window.boxes.back(), "Error: File could not be written");
    report(1);
    EXPECT_EQ(read_text("other.txt"), "line 1\n") << "all stays as it was";
}

TEST_F(Reports, TheJournalKeepsBoxesWithTheirAnswers) {
    window.answers = {Answer::yes};
    EXPECT_EQ(reporter.message("Are you sure?", "Warning", Buttons::yes_no), Answer::yes);
    EXPECT_EQ(reporter.message("Are you sure?", "Warning", Buttons::yes_no), Answer::no);
    EXPECT_EQ(reporter.message("Edge missing", "Error"), Answer::ok);
    ASSERT_EQ(journal.boxes.size(), 3U);
    EXPECT_EQ(journal.boxes[0].answer, "yes");
    EXPECT_EQ(journal.boxes[1].answer, "no");
    EXPECT_EQ(journal.boxes[2].answer, "ok");
}

}  // namespace
}  // namespace kavrel
