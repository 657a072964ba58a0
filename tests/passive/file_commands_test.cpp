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

TEST_F(FileCommands, SaveStartAnewRead) {
    send("save");
    EXPECT_EQ(boxes(), "Error: Data is unavailable") << "an empty store";
    butterworth();
    one_pole();
    session.TITLE = "Ladder";
    send("save");
    EXPECT_EQ(boxes(), "Warning: CANCEL");
    window.files = {"ladder"};
    send("save");
    EXPECT_EQ(boxes(), "Success: *** done ***");
    const std::string bytes = read_text("ladder.qfp");
    const PassiveFilter saved = filter;
    send("save");
    EXPECT_EQ(boxes(), "Success: *** done ***") << "its name is known now";
    window.files = {"second.qfp"};
    save_circuit_as(desk);
    EXPECT_EQ(read_text("second.qfp"), bytes);
    EXPECT_EQ(session.filter_file, std::string_view("second.qfp"));

    window.files = {"third.trf"};
    save_circuit_as(desk);
    EXPECT_EQ(read_text("third.trf").substr(0, 10), "Ladder    ") << "the text twin";

    filter = {};
    session.TITLE = "";
    session.filter_file = "ladder.qfp";
    session.entry(SegmentId::passive) = passive_entry::stored_circuit;
    send("read");
    EXPECT_EQ(boxes(), "") << "the name was given";
    EXPECT_TRUE(filter.circuit == saved.circuit);
    EXPECT_EQ(filter.transfer.POLES_RE(1), saved.transfer.POLES_RE(1));
    EXPECT_EQ(session.TITLE, std::string_view("Ladder"));
    EXPECT_FALSE(window.lines.empty()) << "it is shown";
    send("time");
    EXPECT_EQ(boxes(), "Error: Incorrect time specification") << "an ordinary command again";
}

TEST_F(FileCommands, OpenWithinTheSegment) {
    butterworth();
    window.files = {"ladder"};
    send("save");
    insert("c", 9, 3);
    const Circuit edited = filter.circuit;
    const auto open = [&](Answer answer, const char* name) {
        window.answers = {answer};
        window.files.clear();
        if (name != nullptr) window.files = {name};
        send("read");
    };
    constexpr std::string_view warning = "Warning: Current network will be overwritten!";
    open(Answer::no, nullptr);
    EXPECT_EQ(boxes(), warning);
    open(Answer::yes, nullptr);
    EXPECT_EQ(boxes(), std::string(warning) + " | Warning: CANCEL");
    open(Answer::yes, "missing.qfp");
    EXPECT_EQ(boxes(), std::string(warning) + " | Error: File was not found");
    write_text("broken.qfp", "no circuit");
    open(Answer::yes, "broken.qfp");
    EXPECT_EQ(boxes(), std::string(warning) + " | Error: Error encountered in reading the file");
    EXPECT_TRUE(filter.circuit == edited);
    EXPECT_EQ(session.filter_file, std::string_view("ladder"));
    open(Answer::yes, "ladder.qfp");
    EXPECT_EQ(boxes(), warning);
    EXPECT_EQ(filter.circuit.klast, 7);
    send("undo");
    EXPECT_TRUE(filter.circuit == edited);
    const std::string stored = read_text("ladder.qfp");
    send("save");
    EXPECT_EQ(boxes(), "Warning: CANCEL") << "its name is asked for";
    EXPECT_EQ(read_text("ladder.qfp"), stored) << "the file that was opened is not overwritten by another circuit";
}

TEST_F(FileCommands, TextOfCircuitAndParts) {
    butterworth();
    session.TITLE = "Ladder";
    window.files = {"ladder"};
    send("text");
    const std::string text = read_text("ladder.txt");
    EXPECT_EQ(text.substr(0, 8), "Ladder\n\n");
    EXPECT_NE(text.find("├───C───┤"), std::string::npos);
    EXPECT_NE(text.find("*** Parts list ***"), std::string::npos);
    EXPECT_TRUE(window.lines.empty());
}

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

TEST_F(FileCommands, TransferFilesByTypeAndDialect) {
    send("file", PASSIVE_TRANSFER_DLG, {{"file_type", "Spice"}});
    EXPECT_EQ(boxes(), "Error: Data is unavailable") << "an empty store";
    butterworth();
    const auto write = [&](Entries entries) {
        window.files = {"ladder"};
        send("file", PASSIVE_TRANSFER_DLG, entries);
        return boxes();
    };
    constexpr std::string_view done = "Success: *** done ***";
    EXPECT_EQ(write({{"file_type", "Spice"}}), done);
    const std::string classic = read_text("ladder.ckt");
    EXPECT_EQ(write({{"dialect", "ngspice"}}), done);
    EXPECT_NE(read_text("ladder.ckt"), classic);
    EXPECT_EQ(write({{"file_type", "Touchstone"}}), done) << "which has no dialect of that name: classic";
    EXPECT_NE(read_text("ladder.ckt").find("xfer") != std::string::npos, true);
    EXPECT_EQ(write({{"dialect", "S-parameters"}}), done);
    EXPECT_TRUE(std::filesystem::exists("ladder.s2p"));
    EXPECT_EQ(write({{"file_type", "Matlab"}}), "Error: Data is unavailable") << "without a design";
    one_pole();
    EXPECT_EQ(write({}), done);
    EXPECT_TRUE(std::filesystem::exists("ladder.m"));
    window.files = {};
    send("file");
    EXPECT_EQ(boxes(), "Warning: CANCEL");
    window.files = {"no/such/folder"};
    send("file");
    EXPECT_EQ(boxes(), "Error: File could not be opened");
    filter.circuit.kind = CircuitKind::microwave;
    for (const char* type : {"Spice", "SStar"}) {
        EXPECT_EQ(write({{"file_type", type}}), "Error: Microwave filter, file type is not available");
    }
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
    ASSERT_EQ(insert_values(filter.circuit, k, 11, arms), CircuitVerdict::done);
    window.answers = {Answer::yes, Answer::no};
    window.files = {"half", "whole"};
    send("file", PASSIVE_TRANSFER_DLG, {{"file_type", "Scompact"}});
    EXPECT_EQ(boxes(), "Question: Lattices are present, do you want half-lattices? | Success: *** done ***");
    send("file");
    EXPECT_NE(read_text("half.ckt"), read_text("whole.ckt"));
}

}  // namespace
}  // namespace kavrel
