// What the commands without traces tell.
#include <algorithm>
#include <span>

#include "tests/passive/passive_room.h"

namespace kavrel {
namespace {

struct Reports : testing::Test, PassiveRoom {
    void design() {
        filter.designed = true;
        filter.spec.upperPassEdge = 1e3;
        filter.spec.upperStopEdge = 3e3;
        filter.spec.stopbandLoss = 10;
        filter.spec.degree = 1;
        filter.spec.zerosAtInfinity = 1;
        filter.spec.sourceResistance = 50;
        filter.spec.loadResistance = 100;
        filter.background.request = filter.spec;
        filter.background.request.degree = 0;
        filter.background.notes.front.upper_loss_reached = 12.5;
        filter.background.notes.predistortion = {.requested = true, .requested_q = 150, .minimum_q = 100};
        filter.circuit.R1 = 50;
        filter.circuit.R2 = 75;
        TransferFunction& t = filter.transfer;
        t.poleCount = 1;
        t.POLES_RE(1) = -6283.1853071795865;
        t.multiplier = 6283.1853071795865;
        t.normFrequency = 6283.1853071795865;
        t.zerosAtInfinity = 1;
    }
};

// 1/(2 pi sqrt(L C)) of 1 mH and 1 uF.
constexpr std::string_view five_kilohertz = "5.032921 KHz";

TEST_F(Reports, Resonances) {
    insert("r", 1, 50);
    insert("lc", 3, 1e-3, 1e-6);
    insert("l", 4, 1e-3);
    insert("c", 5, 1e-6);
    insert("lcc", 6, 1e-3, 1e-6, 1e-9);
    struct Row {
        const char* first;
        const char* second;
        std::string_view line;  // blank: refused
    };
    const std::string tail = " =   " + std::string(five_kilohertz);
    const std::string rows_3 = " Resonant frequency of branch   3" + tail;
    const std::string rows_45 = " Resonant frequency of branches   4 and   5" + tail;
    const std::string rows_54 = " Resonant frequency of branches   5 and   4" + tail;
    const std::string rows_6 = " Resonant frequency of branch   6" + tail;
    const Row rows[] = {{"3", "0", rows_3}, {"4", "5", rows_45}, {"5", "4", rows_54}, {"6", "0", rows_6},
                        {"4", "0", ""},     {"2", "0", ""},      {"0", "0", ""},      {"1", "3", ""},
                        {"4", "4", ""},     {"4", "2", ""},      {"999", "4", ""}};
    for (const Row& row : rows) {
        send("res ", PASSIVE_RESONANCE_DLG, {{"branch", row.first}, {"branch2", row.second}});
        EXPECT_EQ(boxes(), row.line.empty() ? "Error: Incorrect branch(es) specified" : "") << row.first << row.second;
        EXPECT_TRUE(row.line.empty() || window.lines == std::vector<std::string>{std::string(row.line)})
            << (window.lines.empty() ? "" : window.lines[0]);
    }
}

// A row of the report has 81 characters.
TEST_F(Reports, RowsOfLinesAreNotCutOff) {
    filter.circuit.kind = CircuitKind::microwave;
    filter.circuit.fs = 4e9;
    insert("r", 1, 50);
    insert("lcc", 3, 40, 70, 1100);
    insert("lc", 4, 140, 70);
    send("show");
    EXPECT_TRUE(reported("  70.000000   1.175851 GHz  res. frequency   z3 = 131.823214 K")) << window.lines[3];
    EXPECT_TRUE(reported(" res. frequency   z1 =  46.666667")) << window.lines[4];
}

TEST_F(Reports, DesignAndFunction) {
    send("disp");
    EXPECT_EQ(boxes(), "Error: Data is unavailable");
    send("prf ");
    EXPECT_EQ(boxes(), "Error: Data is unavailable");
    design();
    send("disp");
    EXPECT_TRUE(reported("Low-pass filter"));
    EXPECT_TRUE(reported("Overall filter degree"));
    EXPECT_FALSE(reported("Degree was specified"));
    EXPECT_TRUE(reported("Stop band loss reached                   =  12.500000E+00 dB."));
    EXPECT_TRUE(reported("requested Q = 150.000000E+00"));
    const std::vector<std::string> terminations = {" Input termination                   =  5.0000000D+01",
                                                   " Output termination                  =  7.5000000D+01",
                                                   " Requested termination ratio         =  2.0000000D+00",
                                                   " Nearest available termination ratio =  1.5000000D+00"};
    EXPECT_TRUE(std::ranges::equal(std::span(window.lines).last(4), terminations)) << window.lines.back();
    filter.background.request.degree = 1;
    send("disp");
    EXPECT_TRUE(reported("Degree was specified"));
    send("prf ");
    EXPECT_TRUE(reported("-6.2831853E+03"));
    EXPECT_TRUE(reported("******* Transfer function polynomials *******"));
    EXPECT_TRUE(reported(" normalization frequency =")) << "of 1 kHz";
}

TEST_F(Reports, SpreadListAndPrint) {
    send("sprd");
    EXPECT_EQ(boxes(), "Error: No circuit to analyze");
    send("list");
    EXPECT_TRUE(reported(" no circuit"));
    butterworth();
    send("sprd");
    EXPECT_TRUE(reported("Capacitors:"));
    window.files = {"print.txt"};
    send("pri ", PASSIVE_PRINT_DLG, {{"printing_to", "File"}});
    EXPECT_EQ(boxes(), "Success: *** done ***");
    send("show");
    EXPECT_NE(read_text("print.txt").find("├───R───┤"), std::string::npos);
    send("pri ", PASSIVE_PRINT_DLG, {});
    EXPECT_EQ(boxes(), "") << "no file was chosen";
}

TEST_F(Reports, TheTitleFormOpensWithTheTitle) {
    session.TITLE = "Ladder of three";
    send("show");
    std::string shown;
    window.forms.push_back([&](FormSheet& sheet) {
        shown = sheet.shown(0);
        return sheet.enter(0, "Ladder of four").empty();
    });
    ASSERT_TRUE(run_form(PASSIVE_TITLE_DLG, &command, session.units, reporter));
    send("lbl ");
    EXPECT_EQ(shown, "Ladder of three");
    EXPECT_EQ(session.TITLE, std::string_view("Ladder of four"));
}

}  // namespace
}  // namespace kavrel
