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

}  // namespace
}  // namespace kavrel
