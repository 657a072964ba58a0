// Files that users have: written by an earlier program (tests/data/stored/make.kav) and opened by this one, which shows
// what was in them and stores it again with the same bytes.
#include "tests/console/script_run.h"
#include "tests/support/golden.h"

namespace kavrel {
namespace {

const std::string stored = TEST_DATA "/stored/";

struct StoredFiles : testing::Test {
    ScratchFolder folder;
    StoredFiles() { std::filesystem::copy(stored, "."); }
};

TEST_F(StoredFiles, AreReadAndWrittenAgain) {
    ScriptRun run(true, true);
    run.run(read_text("read.kav"));
    expect_golden(stored + "read.txt", run.shown.str());
    for (const auto& entry : std::filesystem::directory_iterator(stored)) {
        const std::string name = entry.path().filename();
        const bool of_a_circuit = name.ends_with(".qfp") || name.ends_with(".trf");
        EXPECT_TRUE(read_text((of_a_circuit ? "again_" : "") + name) == read_text(entry.path())) << name;
    }
}

TEST_F(StoredFiles, OfUndoAndStoreGiveTheirCircuitsBack) {
    ScriptRun run(false, true);
    run.run("choose #130\nfile low_pass.qfp\nchoose Branch > Change\nset branch 3\nset second 1\nok\ndo sto\n");
    std::filesystem::rename("undo.bin", "_xxx0.tmp");
    std::filesystem::rename("store.bin", "~xxx.tmp");
    run.shown.str("");
    EXPECT_EQ(run.run("do undo\ndo list\ndo rcl\ndo list\n"), 0);
    expect_golden(stored + "undo.txt", run.shown.str());
}

}  // namespace
}  // namespace kavrel
