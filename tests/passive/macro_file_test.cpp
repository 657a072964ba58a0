// The macro of a session, byte for byte.
#include "passive/macro_file.h"

#include "tests/passive/passive_room.h"

namespace kavrel {
namespace {

struct Macros : testing::Test, PassiveRoom {};

TEST_F(Macros, ASessionWithEveryRecordedCommand) {
    window.files = {"session"};
    send("writ");
    EXPECT_TRUE(state.recording);
    insert("r", 1, 50);
    insert("l", 2, 1.5e-6);
    insert("c", 3, 1e-9);
    insert("lc", 4, 1e-6, 2e-9);
    insert("lcc", 5, 1e-6, 2e-9, 3e-9);
    insert("lcl", 6, 1e-6, 2e-9, 3e-6);
    insert("eqa", 2, 1e-6, 75, 2e-9);
    insert("eqb", 2, 1e-6, 75, 2e-9);
    insert("r", 98, 50);
    EXPECT_EQ(boxes(), "") << "all of them were inserted";
    send("ins ", PASSIVE_INSERT_DLG, {{"element", "copy"}, {"branch", "12"}, {"copy_of", "1"}});
    send("del ", PASSIVE_DELETE_DLG, {{"branch", "12"}});
    send("ch  ", PASSIVE_CHANGE_DLG, {{"branch", "1"}, {"first", "75"}, {"second", "0"}});
    send("undo");
    send("redo");
    filter.circuit.kind = CircuitKind::microwave;
    insert("ue", 4, 60);
    send("del ", PASSIVE_DELETE_DLG, {{"branch", "99"}});
    EXPECT_NE(boxes(), "") << "what is refused is not recorded";
    send("show");
    send("clos");
    EXPECT_FALSE(state.recording);
    send("undo");
    EXPECT_EQ(read_text("session.wbt"), read_text(TEST_DATA "/passive/session.wbt"));
    send("clos");
    EXPECT_EQ(boxes(), "Error: No macro file to close");
}

// Two digits do not take the number of the last slot.
TEST_F(Macros, NoNumberBecomesStars) {
    window.files = {"hundred"};
    send("writ");
    insert("r", 1, 50);
    insert("l", 100, 1);
    send("ins ", PASSIVE_INSERT_DLG, {{"element", "copy"}, {"branch", "100"}, {"copy_of", "1"}});
    const std::string text = read_text("hundred.wbt");
    EXPECT_NE(text.find("\"{UP 9} {DOWN} {TAB} 100 {TAB}   1.000000E+00 ~\""), std::string::npos) << text;
    EXPECT_NE(text.find("\"{DOWN 9} {TAB} 100 {TAB}  1 ~\""), std::string::npos) << text;
}

TEST_F(Macros, AFileThatCannotBeWrittenEndsTheRecording) {
    window.files = {"gone.wbt"};
    send("writ");
    std::filesystem::remove("gone.wbt");
    std::filesystem::create_directory("gone.wbt");
    insert("r", 1, 50);
    EXPECT_EQ(boxes(), "Error: File could not be written");
    EXPECT_FALSE(state.recording);
    EXPECT_EQ(filter.circuit.klast, 1) << "the edit itself stands";
}

TEST_F(Macros, ATerminalObeysNoneThatIsPlayed) {
    write_text("loud.wbt", "a\x1b[2Jb\n");
    window.files = {"loud.wbt"};
    play_macro(desk);
    EXPECT_EQ(window.lines.back(), "a [2Jb\n");
}

}  // namespace
}  // namespace kavrel
