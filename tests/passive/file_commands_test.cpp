// Files that commands write and read.
#include "passive/file_commands.h"

#include "tests/passive/passive_room.h"

namespace kavrel {
namespace {

struct FileCommands : testing::Test, PassiveRoom {
    void one_pole() {
        filter.designed = true;
        filter.transfer.poleCount = 1;
        filter.transfer.POLES_RE(1) = -6283.1853071795865;
        filter.transfer.multiplier = 6283.1853071795865;
        filter.transfer.normFrequency = 6283.1853071795865;
    }
};

TEST_F(FileCommands, PoleZeroFile) {
    send("pz  ");
    EXPECT_EQ(boxes(), "Error: Data is unavailable");
    one_pole();
    window.files = {"one", "two.dat"};
    send("pz  ");
    send("pz  ");
    EXPECT_NE(read_text("one.pz").find("-1.000000000E+03"), std::string::npos);
    EXPECT_EQ(read_text("one.pz"), read_text("two.dat"));
    filter.mod = 1.0F;
    send("pz  ");
    EXPECT_EQ(boxes(), "Question: Data is for the original filter, not the current (modified) one \nWish to continue?");
}

// A point on a pole has no row, but a simulator runs the frequencies that were asked for.
TEST_F(FileCommands, NetlistsSweepWhatTheAnalysisWasAskedFor) {
    insert("r", 1, 1);
    insert("lc", 4, 1, 1);
    insert("r", 7, 1);
    send("freq", PASSIVE_FREQUENCY_DLG,
         {{"start", "0.5"}, {"end", "2"}, {"increment", "0.5"}, {"frequency_unit", "rad/sec"}});
    ASSERT_EQ(results.frequency_count, 3) << "all but the trap's";
    window.files = {"trap"};
    send("file", PASSIVE_TRANSFER_DLG, {{"file_type", "Spice"}, {"dialect", "ngspice"}});
    const std::string text = read_text("trap.ckt");
    EXPECT_NE(text.find(".ac lin 4 7.957747154594767e-02 3.183098861837907e-01\n"), std::string::npos) << text;
}

TEST_F(FileCommands, LatticesAreAskedFor) {
    insert("r", 1, 50);
    insert("r", 5, 50);
    int k = 3;
    const double arms[] = {1e-3, 1e-9, 1e-9, 2e-3, 2e-9, 2e-9};
    ASSERT_EQ(insert_values(filter.circuit, k, BranchId::lattice_c, arms), CircuitVerdict::done);
    window.answers = {Answer::yes, Answer::no};
    window.files = {"half", "whole"};
    send("file", PASSIVE_TRANSFER_DLG, {{"file_type", "Scompact"}});
    EXPECT_EQ(boxes(), "Question: Lattices are present, do you want half-lattices? | Success: *** done ***");
    send("file");
    EXPECT_NE(read_text("half.ckt"), read_text("whole.ckt"));
}

}  // namespace
}  // namespace kavrel
