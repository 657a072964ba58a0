// Whole conversations: what the window's report says is, byte for byte, what the console's says to the same choices.
#include <cstdlib>

#include "desktop/plot_view.h"
#include "desktop/plot_viewer.h"
#include "tests/desktop/script_hands.h"

namespace kavrel {
namespace {

// What the console reports, opening a stored filter first where one is named.
std::string console_report(const std::string& script, const std::string& stored = {}) {
    std::filesystem::create_directory("console");
    if (!stored.empty()) std::filesystem::copy_file(stored, "console/" + stored);
    write_text("script.kav", script);
    const std::string command = std::string(CONSOLE_PATH) + " -C console -o report.txt --quiet --date " + fixed_date +
                                (stored.empty() ? " script.kav" : " " + stored + " <script.kav") + " >screen.txt 2>&1";
    EXPECT_EQ(std::system(command.c_str()), 0) << read_text("screen.txt");
    return read_text("console/report.txt");
}

std::vector<std::string> example_files() {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(EXAMPLES)) {
        if (entry.path().extension() == ".kav") files.push_back(entry.path().stem());
    }
    std::ranges::sort(files);
    return files;
}

class Conversations : public testing::TestWithParam<std::string> {};

TEST_P(Conversations, LeaveTheConsolesReport) {
    DesktopRun run(false);
    const std::string script = read_text(EXAMPLES "/" + GetParam() + ".kav");
    // An example that stands beside a stored filter begins with opening it.
    std::string stored = GetParam() + ".qfp";
    if (std::filesystem::exists(EXAMPLES "/" + stored)) {
        std::filesystem::copy_file(EXAMPLES "/" + stored, stored);
    } else {
        stored.clear();
    }
    run.start(stored);
    ScriptHands(run, script).work();
    EXPECT_EQ(run.report(), console_report(script, stored));
    EXPECT_FALSE(run.report().empty());
}

INSTANTIATE_TEST_SUITE_P(Examples, Conversations, testing::ValuesIn(example_files()),
                         [](const auto& test) { return test.param; });

constexpr const char* design_to_reopened_file = R"(
choose Design > Filter > New
  set filter_type "Low pass"
  set upper_passband 1k
  set passband_type "Equal ripple"
  set band_edge_loss 0.1
  set stopband_type "Equal min"
  set upper_stopband 1.5k
  set upper_stop_loss 60
  set r1 600
  set r2 600
ok
ok
choose View > Frequency
  set start 0
  set end 3k
  set increment 10
ok
answer yes
choose View > Plot > Frequency
  set y1 Loss
  set y2 Delay
ok
choose View > Time
  set stop 5m
  set step 10u
ok
answer no
choose File > Save
file lowpass.qfp
choose File > Open
answer yes
file lowpass.qfp
choose View > Show
)";

// A low-pass is designed, synthesised, analysed, plotted, stored and opened again.
TEST(Conversation, FromTheDesignToTheReopenedFile) {
    DesktopRun run;
    ScriptHands(run, design_to_reopened_file).work();
    EXPECT_EQ(run.report(), console_report(design_to_reopened_file));
    EXPECT_EQ(read_text("lowpass.qfp"), read_text("console/lowpass.qfp"));
    EXPECT_TRUE(run.window.plot().isVisible());
    EXPECT_EQ(run.window.plot().view().shown().point_count, 301);
    EXPECT_NE(run.report().find("├"), std::string::npos) << "the circuit is drawn";
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
    EXPECT_EQ(run.window.main().menuBar()->actions().size(), 8);
}

}  // namespace
}  // namespace kavrel
