// Whole conversations: what the window's report says is, byte for byte, what the console's says to the same choices.
#include "desktop/plot_view.h"
#include "desktop/plot_viewer.h"
#include "tests/desktop/script_hands.h"
#include "tests/support/examples.h"

namespace kavrel {
namespace {

class Conversations : public testing::TestWithParam<std::string> {};

TEST_P(Conversations, LeaveTheConsolesReport) {
    DesktopRun run;
    const std::string script = read_text(EXAMPLES "/" + GetParam() + ".kav");
    ScriptHands(run, script).work();
    EXPECT_EQ(run.report(), read_text(TEST_DATA "/console/" + GetParam() + ".txt"));
    const bool plots = script.find("> Plot") != std::string::npos || script.find("nonlinearity") != std::string::npos;
    EXPECT_EQ(run.window.plot().isVisible(), plots);
    EXPECT_EQ(run.window.plot().view().shown().point_count > 1, plots);
}

INSTANTIATE_TEST_SUITE_P(Examples, Conversations, testing::ValuesIn(example_files()),
                         [](const auto& test) { return test.param; });

TEST(Conversation, BeginsWithTheStoredFilterOfTheCommandLine) {
    DesktopRun run(false);
    std::filesystem::copy_file(EXAMPLES "/stored_lowpass.qfp", "a.qfp");
    run.start("a.qfp");
    EXPECT_EQ(run.bench().session.segment, SegmentId::passive);
    ScriptHands(run, "choose View > Spread\nexpect Capacitors:\n").work();
    EXPECT_TRUE(run.report().starts_with("  1 ├")) << run.report();
}

// Ten designs in a row, each of which opens forms, boxes and menus: a run with the address sanitizer finds what is
// lost.
TEST(Conversation, TenDesignsInARow) {
    DesktopRun run;
    const std::string script = read_text(EXAMPLES "/fir_lowpass.kav");
    std::size_t length = 0;
    for (int i = 0; i < 10; ++i) {
        ScriptHands(run, i == 0 ? script : "choose Design > FIR Filter > New\nok\nchoose View > Show\nok\n").work();
        EXPECT_GT(run.report().size(), length);
        length = run.report().size();
    }
    EXPECT_EQ(run.window.main().menuBar()->actions().size(), 10) << "designs and analyses among them";
}

}  // namespace
}  // namespace kavrel
