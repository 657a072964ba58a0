// Whole conversations by script: all that they show, the status that they end with and the files that they leave are
// golden.
#include <set>

#include <fmt/format.h>

#include "tests/console/script_run.h"
#include "tests/support/examples.h"
#include "tests/support/golden.h"

namespace kavrel {
namespace {

const std::string conversations = TEST_DATA "/conversations/";

// Runs a script among the files that it may include.
std::string conversation(const std::string& head, const std::string& script) {
    const ScratchFolder folder;
    std::filesystem::copy(conversations + "files", ".");
    const auto files = [] {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(".")) names.insert(entry.path().filename());
        return names;
    };
    const std::set<std::string> before = files();
    ScriptRun run(head.ends_with("--keep-going"));
    const int status = run.run(script);
    run.bench.temporaries.give_up();
    std::string text = fmt::format("{}\n{}-- status {}", head, run.shown.str(), status);
    for (const std::string& name : files()) text += before.contains(name) ? "" : ", " + name;
    return text + "\n\n";
}

class Conversations : public testing::TestWithParam<std::string> {};

TEST_P(Conversations, GoAsTheyDid) {
    std::istringstream lines(read_text(conversations + GetParam() + ".kav"));
    std::string head, script, text;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("=== ")) {
            if (!head.empty()) text += conversation(head, script);
            head = line;
            script.clear();
        } else {
            script += line + '\n';
        }
    }
    expect_golden(conversations + GetParam() + ".txt", text + conversation(head, script));
}

INSTANTIATE_TEST_SUITE_P(All, Conversations, testing::ValuesIn(scripts_of(TEST_DATA "/conversations")),
                         [](const auto& test) { return test.param; });

TEST(Plots, SayWhereTheirFilterIsAnEarlierOne) {
    const ScratchFolder folder;
    std::filesystem::copy(conversations + "files", ".");
    ScriptRun run;
    run.run(
        "include ladder.kav\nchoose View > Frequency\n set end 2k\n set count 9\nok\nplot then.svg\n"
        "choose View > Plot > Frequency\n set y1 1\nok\nchoose Branch > Delete\n set branch 4\nok\n"
        "plot window.svg\ndump state.json\ndo undo\nplot again.svg\n");
    for (const std::string name : {"then.svg", "window.svg", "again.svg", "state.json"}) {
        const std::string text = read_text(name);
        const bool marked = text.find("(of an earlier filter)") != std::string::npos ||
                            text.find("\"earlier\": true") != std::string::npos;
        EXPECT_EQ(marked, name == "window.svg" || name == "state.json") << name;
        EXPECT_FALSE(text.empty()) << name;
    }
    EXPECT_FALSE(run.bench.plot.earlier);
}

TEST(Plots, NameTheirAxes) {
    const ScratchFolder folder;
    std::filesystem::copy(conversations + "files", ".");
    const std::pair<const char*, std::vector<const char*>> rows[] = {
        {"ladder.kav\nchoose View > Frequency\n set end 2k\n set count 9", {">Frequency", ">Loss (dB)"}},
        {"notch.kav\nchoose View > Time\n set stop 1m\n set step 10u",
         {">Time", ">Impulse response", ">Step response"}}};
    for (const auto& [analysis, labels] : rows) {
        ScriptRun().run(fmt::format("include {}\nok\nanswer no\nplot axes.svg\n", analysis));
        const std::string picture = read_text("axes.svg");
        for (const char* label : labels) EXPECT_NE(picture.find(label), std::string::npos) << label;
    }
}

}  // namespace
}  // namespace kavrel
