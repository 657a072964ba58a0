// The state file reports what is shown, whatever was tried since.
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/console/script_run.h"
#include "workbench/state_json.h"

namespace kavrel {
namespace {

using Json = nlohmann::json;

const std::string notch = "include " TEST_DATA "/conversations/files/notch.kav\n";
const std::string form = "choose Design > Filter > New\n";
const std::string typed = "choose Analysis > Filter > New\nok\n";
const std::string detune = "choose Branch > Change\nset branch 4\nset first 100m\nok\n";

const std::vector<std::string> of_design = {"spec", "transfer", "check"};
const std::vector<std::string> of_synthesis = {"x_plane", "immittance", "terminations", "synthesis"};

struct StateFile : testing::Test {
    ScratchFolder folder;
    ScriptRun run{true};

    Json after(const std::string& script) {
        run.run(script);
        return Json::parse(state_json(run.bench));
    }
    static void expect_same(const Json& now, const Json& then, std::vector<std::string> keys) {
        for (const auto& key : keys) EXPECT_EQ(now.value(key, Json()), then.value(key, Json())) << key;
    }
    static void expect_none(const Json& now, const std::vector<std::string>& keys) {
        for (const auto& key : keys) EXPECT_FALSE(now.contains(key)) << key;
    }
};

TEST_F(StateFile, IsTheFormerOneAfterADesignOrASynthesisThatFailed) {
    const Json before = after(notch);
    EXPECT_EQ(before["check"].size(), 3U);
    const std::string too_steep = "set stopband_type Monotonic\nset upper_stopband 0.90001k\nok\n";
    const std::string real_zero =
        "set stopband_type Specified\nset zeros_at_infinity 3\nbutton \"Detail Parameters\"\nrow 900 0\nok\nok\nok\n";
    for (const std::string& fails : {too_steep, real_zero}) {
        const Json now = after(form + "set upper_passband 0.9k\n" + fails);
        EXPECT_EQ(now["design"], "discontinued") << run.shown.str();
        EXPECT_EQ(now["request"]["upperPassEdge"], 900);
        expect_same(now, before, {"title", "segment", "circuit", "parts"});
        expect_same(now, before, of_design);
        expect_same(now, before, of_synthesis);
    }
    const Json again = after(form + "set stopband_type \"Equal min\"\nset upper_stopband 1.5k\nok\nok\n");
    EXPECT_EQ(again["design"], "done");
    expect_none(again, {"request"});
    EXPECT_EQ(again["spec"]["upperPassEdge"], 900);
}

TEST_F(StateFile, HasTheSynthesisOfTheCircuitThatIsShownAlone) {
    const Json designed = after(notch + "choose File > Save\nfile notch.qfp\n");
    const Json edited = after(detune);
    expect_same(edited, designed, {"spec", "transfer"});
    EXPECT_FALSE(edited["check"][0]["met"]);
    expect_none(edited, of_synthesis);
    const Json undone = after("do undo\n");
    expect_same(undone, designed, of_design);
    expect_same(undone, designed, of_synthesis);

    // A design whose synthesis is left changes nothing of the circuit that is shown.
    const Json left = after(form + "set band_edge_loss 0.2\nok\ncancel\n");
    expect_same(left, designed, of_design);
    expect_same(left, designed, of_synthesis);

    const Json another = after(form + "set band_edge_loss 0.5\nok\nok\n");
    EXPECT_EQ(another["spec"]["bandEdgeLoss"], 0.5);
    const Json opened = after("choose File > Open\nanswer yes\nfile notch.qfp\n");
    expect_same(opened, designed, of_design);
    expect_none(opened, of_synthesis);

    const Json by_hand = after(typed);
    expect_none(by_hand, of_design);
    expect_none(by_hand, of_synthesis);
}

// Work that is stopped at its first question, in its middle or at its last one.
TEST(State, StoppedWorkLeavesTheFormerState) {
    const std::string insert = "choose Branch > Insert\n";
    const std::string sweep = "choose View > Frequency\nset start 0\nset end 2k\nset increment 10\nok\n";
    const std::string later = "choose View > Time\nset stop 9m\nset step 1m\nok\n";
    const std::string line =
        "choose Analysis > Filter > New\nset analysis_kind Microwave\nset upper_passband 1G\n"
        "set sampling_or_qw 2G\nok\n" +
        insert + "set element r\nset branch 1\nset value1 50\nok\n" + insert +
        "set element lc\nset branch 4\nset value1 140\nok\n" + insert + "set element ue\nset branch 5\nok\n";
    const struct {
        std::string prepared, command;
        std::string_view said;
        bool stands = false;  // what was done stands, only its check was stopped
    } rows[] = {{notch + sweep, "choose View > Frequency\nset end 1k\nok\n", " **** Stopped ****"},
                {line, sweep + "answer no\n", " **** Stopped ****"},
                {line, sweep + "answer yes\n", " **** Stopped ****"},
                {notch + later, "choose View > Time\nset stop 8m\nok\n", " **** Stopped ****"},
                {notch, detune, "  *** check of the request stopped ***", true},
                {notch + detune, "do undo\n", "  *** check of the request stopped ***", true},
                {notch, "check\n", "check of the request stopped"},
                {notch, "dump state.json\n", "check of the request stopped"},
                {"include " EXAMPLES "/fir_lowpass.kav\n", "check\n", "check of the request stopped"}};
    const auto state = [](ScriptRun& run) {
        Json now = Json::parse(state_json(run.bench));
        for (const char* of_the_run : {"design", "request", "boxes", "report"}) now.erase(of_the_run);
        return now;
    };
    for (const auto& row : rows) {
        const ScratchFolder folder;
        ScriptRun whole(true, true);
        whole.run(row.prepared);
        const Json before = state(whole);
        whole.window.questions = 0;
        whole.run(row.command);
        const int questions = whole.window.questions;
        ASSERT_GT(questions, 1) << row.command;
        const Json expected = row.stands ? state(whole) : before;
        for (const int stop_at : {1, questions / 2, questions}) {
            const ScratchFolder other;
            ScriptRun run(true, true);
            run.run(row.prepared);
            run.shown.str("");
            run.window.questions = 0;
            run.window.stop_at = stop_at;
            run.run(row.command);
            run.window.stop_at = 0;
            EXPECT_NE(run.shown.str().find(row.said), std::string::npos) << row.command << stop_at << run.shown.str();
            EXPECT_TRUE(state(run) == expected) << row.command << stop_at;
            EXPECT_FALSE(std::filesystem::exists("state.json"));
        }
    }
}

// Ctrl-C just before the last line of the form: the design begins, and stops at its first question.
TEST(State, AnInterruptedDesignLeavesTheFormerState) {
    class Interrupted : public std::stringbuf {
        using std::stringbuf::stringbuf;
        int_type underflow() override {
            if (gptr() == egptr() && !last_) {
                last_ = true;
                str("ok\n");
                std::raise(SIGINT);
            }
            return std::stringbuf::underflow();
        }
        bool last_ = false;
    };
    const ScratchFolder folder;
    const StopSignals signals(StopSignals::Second::waits);
    ScriptRun run(true, false, &signals);
    run.run(read_text(EXAMPLES "/fir_lowpass.kav"));
    const Json before = Json::parse(state_json(run.bench));
    Interrupted rest("choose Design > FIR Filter > New\nset filter_length 99\nset symmetry 1\n");
    run.script.push("rest", std::make_unique<std::istream>(&rest));
    run.runner.run();
    const Json after = Json::parse(state_json(run.bench));
    EXPECT_EQ(after["design"], "discontinued");
    EXPECT_TRUE(after["fir"] == before["fir"]);
    run.bench.session.TITLE.assign("\xc2\x9b\x7fµ");  // a terminal obeys these, JSON does not mind
    EXPECT_NE(state_json(run.bench).find("\"title\": \"\\u009b\\u007fµ\""), std::string::npos);
}

}  // namespace
}  // namespace kavrel
