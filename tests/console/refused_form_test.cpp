// Forms that are refused with a warning: as with an error, nothing is accepted by default after it.
#include <gtest/gtest.h>

#include "tests/console/script_run.h"

namespace kavrel {
namespace {

struct RefusedForm : testing::Test {
    ScratchFolder folder;
    const std::string short_table =
        "choose Design > Delayline/equ. > New\nset delay_type Equalizer\nbutton Data\nrow 1 1\nrow 2 1\nrow 3 1\nok\n";
};

TEST_F(RefusedForm, ACorrectedFormIsNoFailure) {
    ScriptRun run(short_table + "row 4 1\nok\ncancel\necho over\n");
    EXPECT_EQ(run.status(), 0) << run.errors.str();
    EXPECT_NE(run.screen.str().find("[Warning] Not enough data"), std::string::npos);
}

TEST_F(RefusedForm, TheNextLineDoesNotAcceptIt) {
    for (const char* next : {"echo over\n", "cancel\ncancel\n", ""}) {
        ScriptRun run(short_table + next);
        EXPECT_EQ(run.status(), 1) << next;
        EXPECT_EQ(run.bench.delay_request.DELAY_DATA.rows, 0) << next;
    }
}

TEST_F(RefusedForm, AnEarlierFailureStands) {
    ScriptRun run("choose #195\n" + short_table + "row 4 1\nok\ncancel\n", true);
    EXPECT_EQ(run.status(), 1) << "the warning is no failure that could be taken back";
    EXPECT_NE(run.errors.str().find("Command not implemented"), std::string::npos) << run.errors.str();
}

}  // namespace
}  // namespace kavrel
