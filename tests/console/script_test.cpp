// Whole conversations by script: what answers what, what fails, and with which exit status.
#include <gtest/gtest.h>

#include "tests/console/script_run.h"

namespace kavrel {
namespace {

TEST(Script, LinesAreSplitIntoWords) {
    const auto words = [](std::string_view text) {
        std::vector<std::string> list;
        for (const auto& word : split_line("f", 1, text).words) list.push_back(word.text);
        return list;
    };
    using List = std::vector<std::string>;
    EXPECT_EQ(words("  set a\t1k # comment"), (List{"set", "a", "1k"}));
    EXPECT_EQ(words("set \"# of zeros\" 3"), (List{"set", "# of zeros", "3"}));
    EXPECT_EQ(words("choose #166"), (List{"choose", "#166"}));
    EXPECT_EQ(words("echo #166"), (List{"echo"}));
    EXPECT_EQ(words("expect \"\""), (List{"expect", ""}));
    EXPECT_EQ(words("# all comment"), List{});
    EXPECT_TRUE(split_line("f", 1, "echo \"open").open_quote);
    EXPECT_EQ(path_of(split_line("f", 1, "choose A>B > \"C > D\"")), (List{"A", "B", "C > D"}));
    EXPECT_EQ(path_of(split_line("f", 1, "choose \"A > B C\"")), (List{"A", "B C"}));
    EXPECT_EQ(path_of(split_line("f", 1, "choose Design > FIR Filter > New")), (List{"Design", "FIR Filter", "New"}));
}

// Scripts of one line of interest, with the status they end with and the words that tell why.
TEST(Script, EndsWithTheStatusOfWhatWentWrong) {
    const struct {
        std::string script;
        int status;
        const char* error;
    } rows[] = {
        {"", 0, ""},
        {"echo hello\n", 0, ""},
        {"frobnicate\n", 2, "test.kav:1: unknown verb 'frobnicate'"},
        {"\n# comment\nok\n", 2, "test.kav:3: 'ok' has nothing to answer"},
        {"answer yes\n", 2, "'answer' has nothing to answer"},
        {"file x\n", 2, "'file' has nothing to answer"},
        {"echo \"open\n", 2, "a double quote is missing"},
        {"choose\n", 2, "'choose' needs more words"},
        {"choose Design > FIR Filter\n", 2, "'Design > FIR Filter' only opens a submenu"},
        {"choose Design > Nothing\n", 2, "there is no menu item 'Design > Nothing' here"},
        {"choose View > Show\n", 2, "there is no menu item"},
        {"choose #x1\n", 2, "'choose' needs more words"},
        {"choose #195\n", 1, "Default: Command not implemented"},
        {"choose #5\n", 1, "Default: Command not implemented"},
        {"choose #99999999999\n", 2, "is no item id"},
        {"choose File > Circuit\n", 1, "Default: Command not implemented"},
        {"do freq\n", 2, "'freq' is no command of this Segment"},
        {"expect nothing\n", 1, "'nothing' was not told"},
        {"include \"missing.kav\n", 2, "a double quote is missing"},
        {"include\n", 2, "'include' needs more words"},
        {"\xEF\xBB\xBF"
         "echo a byte order mark is no word\n",
         0, ""},
        {"include missing.kav\n", 3, "'missing.kav' could not be read"},
        {"dump missing/x.json\n", 3, "'missing/x.json' could not be written"},
        {"table x.csv\n", 1, "No analysis results"},
        {"plot x.svg\n", 1, "No analysis results"},
        {open_fir + "set nothing 1\n", 2, "test.kav:2: FIR_DESIGN_DLG has no field 'nothing'"},
        {open_fir + "set filter_length\n", 2, "set FIELD VALUE"},
        {open_fir + "set filter_length 513\n", 2, "test.kav:2: filter_length: 513 is outside 0 to 512"},
        {open_fir + "set slope steep\n", 2, "slope: 'steep' is not a number"},
        {open_fir + "set slope nan\n", 2, "slope: 'nan' is not a number"},
        {open_fir + "set fir_type Lattice\n", 2, "fir_type: 'Lattice' is none of its choices"},
        {open_fir + "row 1 2 3 4\n", 2, "FIR_DESIGN_DLG has no list"},
        {open_fir + "button Details\nrow 1 2 3\n", 2, "a row has 4 numbers, not 3"},
        {open_fir + "button Details\nrow 1 2 x 4\n", 2, "'x' is not a number"},
        {open_fir + "button slope\n", 2, "'slope' is no button"},
        {open_fir + "ok now\n", 2, "'ok' stands alone"},
        {open_fir + "ok\n", 1, "test.kav:2: Error: Incorrect frequency band specification"},
        {open_fir, 1, "test.kav:1: Error: Incorrect frequency band specification"},
        {open_fir + "cancel\n", 0, ""},
    };
    const ScratchFolder folder;
    for (const auto& row : rows) {
        const ScriptRun run(row.script);
        EXPECT_EQ(run.status(), row.status) << row.script << run.errors.str();
        EXPECT_NE(run.errors.str().find(row.error), std::string::npos) << row.script << run.errors.str();
        EXPECT_EQ(run.bench.design, DesignOutcome::none) << row.script;
    }
}

TEST(Script, ARefusedFormIsCorrectedOrFails) {
    const ScratchFolder folder;
    const std::string refused = open_fir + "set filter_length 21\nok\n";
    const ScriptRun corrected(refused + low_pass_bands + "ok\nexpect \"Bandpass filter\"\n");
    EXPECT_EQ(corrected.status(), 0) << corrected.errors.str();
    EXPECT_EQ(corrected.bench.fir_request.filter_length, 21) << "the refusal lost nothing";
    ASSERT_EQ(corrected.bench.journal.boxes.size(), 1U);

    const ScriptRun left(refused + "expect anything\n");
    EXPECT_EQ(left.status(), 1);
    EXPECT_EQ(left.errors.str(), "test.kav:3: Error: Incorrect frequency band specification\n");
    EXPECT_EQ(left.bench.fir_request.filter_length, 0) << "a cancelled form changes nothing";

    const ScriptRun cancelled(refused + "set filter_length 22\ncancel\n");
    EXPECT_EQ(cancelled.status(), 1);
    const ScriptRun twice(refused + "ok\nset slope 1\n" + low_pass_bands + "ok\n");
    EXPECT_EQ(twice.status(), 0) << twice.errors.str();
}

TEST(Script, KeepGoingGoesOnAndStillTells) {
    const ScratchFolder folder;
    const ScriptRun run("frobnicate\n" + open_fir + "set nothing 1\nset filter_length 21\n" + low_pass_bands +
                            "ok\nexpect never\ntable out.csv\nok\n",
                        true);
    EXPECT_EQ(run.status(), 2) << "the first failure gives the status";
    EXPECT_EQ(run.bench.design, DesignOutcome::done);
    EXPECT_TRUE(std::filesystem::exists("out.csv"));
    for (const char* told : {"test.kav:1: ", "test.kav:3: ", "'never' was not told", "'ok' has nothing to answer"}) {
        EXPECT_NE(run.errors.str().find(told), std::string::npos) << told;
    }
}

TEST(Script, BoxesAndSelectorsTakeTheNextLinesOrDefaults) {
    const ScratchFolder folder;
    const std::string design = open_fir + "set filter_length 21\n" + low_pass_bands + "ok\n";
    const ScriptRun stays(design + "choose File > Exit\necho still here\n");
    EXPECT_EQ(stays.status(), 0);
    EXPECT_FALSE(stays.bench.session.stopped) << "nothing is ended unasked";
    const ScriptRun leaves(design + "choose File > Exit\nanswer yes\nfrobnicate\n");
    EXPECT_EQ(leaves.status(), 0) << "what follows the end of the program is not read";
    EXPECT_TRUE(leaves.bench.session.stopped);
    const ScriptRun neither(design + "choose File > Exit\nanswer maybe\n");
    EXPECT_EQ(neither.status(), 2);
    const ScriptRun no_file("choose File > Recall\n");
    EXPECT_EQ(no_file.status(), 0);
    EXPECT_EQ(no_file.bench.journal.boxes.back().text, "CANCEL");
    EXPECT_EQ(no_file.bench.journal.boxes.back().caption, "Warning");
    const ScriptRun closes("choose File > Exit\nfrobnicate\n");
    EXPECT_EQ(closes.status(), 0) << "the main menu's Exit closes the window";
}

TEST(Script, MenusAreLookedUpHereAndThenInTheMainMenu) {
    const ScratchFolder folder;
    const std::string design = open_fir + "set filter_length 21\n" + low_pass_bands + "ok\n";
    const ScriptRun run(design + "choose view > show\nexpect \"Function number  1\"\n" +
                        "choose design > fir filter > new\n" +
                        "set filter_length 23\nok\nexpect \"Filter length =  23\"\n" +
                        "choose #1139\nexpect H( 12)\ndo show\n" + "set \"Function number\" 2\nok\n");
    EXPECT_EQ(run.errors.str(), "test.kav:19: Error: Function does not exist\n");
    const ScriptRun several(design + "do save\n");
    EXPECT_NE(several.errors.str().find("several items share the word 'save', use choose"), std::string::npos);
    const ScriptRun unknown(design + "do zzzz\n");
    EXPECT_EQ(unknown.status(), 2);
    EXPECT_NE(unknown.errors.str().find("'zzzz' is no command of this Segment"), std::string::npos);
    const ScriptRun unbuilt(design + "do sqr\n");
    EXPECT_NE(unbuilt.errors.str().find("Default: Command not implemented"), std::string::npos);
}

TEST(Script, IncludedFilesAnswerInPlace) {
    const ScratchFolder folder;
    write_text("bands.kav", low_pass_bands + "frobnicate\n");
    const ScriptRun run(open_fir + "set filter_length 21\ninclude bands.kav\nok\n");
    EXPECT_EQ(run.errors.str(), "bands.kav:6: unknown verb 'frobnicate'\n");
    write_text("fix.kav", low_pass_bands + "ok\n");
    const ScriptRun fixed(open_fir + "set filter_length 21\nok\ninclude fix.kav\n");
    EXPECT_EQ(fixed.status(), 0) << fixed.errors.str() << "a file may correct a refused form";
    write_text("loop.kav", "include loop.kav\n");
    const ScriptRun loop("include loop.kav\n");
    EXPECT_EQ(loop.status(), 2) << "a file that includes itself ends";
    EXPECT_EQ(loop.errors.str(), "loop.kav:1: 'loop.kav' is included by too many files within files\n");
}

TEST(Script, FieldsShowTheFormAndFieldsThatAreOffKeepTheirValues) {
    const ScratchFolder folder;
    const ScriptRun run(open_fir + "set parameter 12.5\nset filter_length 21\nfields\n" + low_pass_bands + "ok\n");
    EXPECT_EQ(run.status(), 0) << run.errors.str();
    EXPECT_EQ(run.bench.fir_request.parameter, 12.5);
    EXPECT_NE(run.screen.str().find("filter_length        Filter length                        21"), std::string::npos)
        << run.screen.str();
    EXPECT_NE(run.screen.str().find("parameter            Enter loss value or parameter        12.500000E+00    off"),
              std::string::npos)
        << run.screen.str();
}

}  // namespace
}  // namespace kavrel
