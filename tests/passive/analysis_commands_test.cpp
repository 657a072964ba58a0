// Analyses against closed forms, their tables and plots, and what is told where there is nothing to tell of.
#include <cmath>
#include <numbers>

#include "passive/phase_line.h"
#include "tests/passive/passive_room.h"

namespace kavrel {
namespace {

struct Analyses : testing::Test, PassiveRoom {
    void frequency(Entries entries, Answer tabulate = Answer::no) {
        window.answers = {tabulate};
        send("freq", PASSIVE_FREQUENCY_DLG, entries);
    }

    // 1/(s^2 + 2 s + 2): a pair of poles at -1 +- j.
    void second_order() {
        filter.designed = true;
        TransferFunction& t = filter.transfer;
        t.poleCount = 2;
        t.POLES_RE(1) = t.POLES_RE(2) = -1;
        t.POLES_IM(1) = 1;
        t.POLES_IM(2) = -1;
        t.multiplier = 2;
        t.normFrequency = 1;
    }
};

TEST_F(Analyses, ButterworthLadderByTheClosedForm) {
    butterworth();
    frequency({{"start", "0"}, {"end", "2"}, {"count", "21"}, {"frequency_unit", "rad/sec"}});
    EXPECT_EQ(boxes(), "Question: Tabulate? | Success: *** done ***");
    ASSERT_EQ(results.frequency_count, 21);
    for (int i = 1; i <= 21; ++i) {
        const double w = 0.1 * (i - 1);
        EXPECT_NEAR(static_cast<double>(results.LOSS(i)), 10 * std::log10(1 + std::pow(w, 6)), 1e-5) << w;
    }
    EXPECT_TRUE(results.has_return_loss);
    EXPECT_TRUE(window.lines.empty()) << "no table was wanted";
}

// A coil of 1 mH before a load of 100 ohm, its Q 20 at every frequency: H = 1 + w L (j + 1/Q)/R.
TEST_F(Analyses, QAndUnits) {
    session.units = {.frequency_index = 2, .inductor_index = 2};
    settle_units(session.units);
    insert("r", 1, 100);
    insert("l", 2, 1);
    EXPECT_EQ(filter.circuit.VALUE(2), 1e-3);
    frequency({{"start", "1"}, {"end", "100"}, {"increment", "33"}, {"inductor_q", "20"}}, Answer::yes);
    ASSERT_EQ(results.frequency_count, 4);
    for (int i = 1; i <= 4; ++i) {
        const double f = 1e3 + 33e3 * (i - 1);
        EXPECT_EQ(results.FREQ(i), static_cast<float>(f));
        const double x = 2 * std::numbers::pi * f * 1e-3 / 100;
        EXPECT_NEAR(static_cast<double>(results.LOSS(i)), 20 * std::log10(std::hypot(1 + x / 20, x)), 1e-5);
    }
    EXPECT_TRUE(reported("Voltage  loss")) << window.lines.at(5);
    EXPECT_TRUE(reported("1.00000D+03"));
    frequency({{"count", "3"}, {"inductor_q", "0"}});
    EXPECT_EQ(results.frequency_count, 3) << "start and end are those of the last time, the increment is not";
    frequency({{"increment", "9"}});
    EXPECT_EQ(results.frequency_count, 12);
    frequency({{"count", "0"}});
    EXPECT_EQ(results.frequency_count, 12) << "no count takes nothing's place";
}

TEST_F(Analyses, WhatCannotBeAnalysedIsTold) {
    frequency({{"end", "10"}, {"increment", "1"}});
    EXPECT_EQ(boxes(), "Error: No circuit to analyze");
    butterworth();
    command.frequency = {};
    send("freq");
    EXPECT_EQ(boxes(), "Error: Frequency specification incorrect");
    window.boxes.clear();
    EXPECT_FALSE(fill(PASSIVE_FREQUENCY_DLG, {{"start", "10"}, {"end", "1"}, {"increment", "1"}}));
    EXPECT_EQ(boxes(), "Error: Frequency specification incorrect") << "the form says so at once";
    filter.circuit.kind = CircuitKind::wave_digital;
    frequency({{"end", "10"}, {"increment", "1"}});
    EXPECT_EQ(boxes(), "Error: Wave digital filters cannot be analyzed");
    send("time");
    EXPECT_EQ(boxes(), "Error: Time domain analysis to be done in digital segment");
    filter.circuit.kind = CircuitKind::microwave;
    send("time");
    EXPECT_EQ(boxes(), "Error: Microwave filter, time domain analysis not possible");
    filter.circuit.kind = CircuitKind::lumped;
    send("time");
    EXPECT_EQ(boxes(), "Error: Incorrect time specification");
    command.time = {0, 10, 1};
    send("time");
    EXPECT_EQ(boxes(), "Error: Natural modes are unavailable");
}

// A line between load and source: driven by a voltage its input is in series, driven by a current across it.
TEST_F(Analyses, ACircuitThatEndsInALineIsAskedHowItIsDriven) {
    filter.circuit.kind = CircuitKind::microwave;
    filter.circuit.fs = 2e9;
    insert("r", 1, 100);
    insert("ue", 3, 50);
    const int last = filter.circuit.klast;
    const auto loss = [&](Answer driven) {
        window.answers = {driven, Answer::no};
        command.frequency = {.start = 5e8, .count = 1};
        send("freq");
        EXPECT_EQ(window.boxes.front(), "Question: Is the circuit voltage-driven?");
        return static_cast<double>(results.LOSS(1));
    };
    // At half the quarter-wave frequency cos = sin = 1/sqrt(2): V = c + j s Z0/R, I R = c + j s R/Z0.
    const double by_voltage = loss(Answer::yes);
    EXPECT_NEAR(by_voltage, 10 * std::log10(0.5 * (1 + 0.25)), 1e-5);
    EXPECT_EQ(filter.circuit.klast % 2, 0);
    const double by_current = loss(Answer::no);
    EXPECT_NEAR(by_current, 10 * std::log10(0.5 * (1 + 4.0)), 1e-5);
    EXPECT_EQ(filter.circuit.klast % 2, 1);
    EXPECT_LE(filter.circuit.klast, last + 2);
    const Circuit settled = filter.circuit;
    EXPECT_EQ(loss(Answer::no), by_current);
    EXPECT_TRUE(filter.circuit == settled) << "the number agrees with the answer";
}

TEST_F(Analyses, TimeResponseAndItsTable) {
    second_order();
    session.TITLE = "One pair";
    window.answers = {Answer::yes};
    send("time", PASSIVE_TIME_DLG, {{"start", "0"}, {"stop", "4"}, {"step", "2"}});
    EXPECT_EQ(boxes(), "Question: Tabulate? | Success: *** done ***");
    ASSERT_EQ(results.time_count, 3);
    // h = 2 exp(-t) sin t, its integral 1 - exp(-t) (cos t + sin t).
    EXPECT_NEAR(static_cast<double>(results.IMPULSE(2)), 2 * std::exp(-2.0) * std::sin(2.0), 1e-7);
    EXPECT_NEAR(static_cast<double>(results.STEP(3)), 1 - std::exp(-4.0) * (std::cos(4.0) + std::sin(4.0)), 1e-7);
    const std::vector<std::string> table = {"",
                                            "One pair",
                                            "",
                                            "===== Time-domain response =====",
                                            "",
                                            "   Time in sec  Impulse resp.    Step resp.",
                                            "     0.00000D+00    0.00000D+00    0.00000D+00",
                                            "     2.00000D+00    2.46120D-01    9.33259D-01",
                                            "     4.00000D+00   -2.77226D-02    1.02583D+00"};
    EXPECT_EQ(window.lines, table);
    window.files = {"pulse"};
    send("tabt");
    EXPECT_NE(read_text("pulse.tab").find("Impulse resp."), std::string::npos);

    filter.mod = 1.0F;
    results.time_count = 0;
    window.answers = {Answer::no};
    send("time");
    EXPECT_EQ(boxes(),
              "Question: Analysis is for the original filter, not the current (modified) one \nWish to continue?");
    EXPECT_EQ(results.time_count, 0);
    window.answers = {Answer::yes, Answer::no};
    send("time");
    EXPECT_EQ(results.time_count, 3);
}

// A line of constant delay, its phase wrapped many times between the points, with one point moved aside.
TEST(PhaseLine, FollowsAPhaseThatWraps) {
    AnalysisResult results;
    results.has_phase = results.has_delay = true;
    results.frequency_count = 11;
    const double delay = 0.9201;
    for (int i = 1; i <= 11; ++i) {
        const double f = 10.0 + 3 * i;
        results.FREQ(i) = static_cast<float>(f);
        results.DELA(i) = static_cast<float>(delay);
        results.PHASE(i) = static_cast<float>(std::remainder(-360 * delay * f + 12, 360.0));
    }
    PhaseLine line;
    ASSERT_TRUE(fit_phase_line(results, line));
    EXPECT_NEAR(line.delay, delay, 1e-7);
    EXPECT_NEAR(line.largest, 0, 1e-3) << "the single precision of the delay at the last frequency";
    results.PHASE(6) += 1.1F;
    ASSERT_TRUE(fit_phase_line(results, line));
    EXPECT_NEAR(line.delay, delay, 1e-7) << "the middle point does not turn the line";
    EXPECT_NEAR(line.deviation(6), 1.0, 1e-3);
    EXPECT_NEAR(line.deviation(1), -0.1, 1e-3);
    double sum = 0, moment = 0;
    for (int i = 1; i <= 11; ++i) {
        sum += line.deviation(i);
        moment += line.deviation(i) * line.frequency(i);
    }
    EXPECT_NEAR(sum, 0, 1e-9) << "least squares leave no mean";
    EXPECT_NEAR(moment, 0, 1e-7) << "and no slope";
    const auto lines = phase_line_lines(line, false, "Line");
    ASSERT_EQ(lines.size(), 7U + 11U + 3U);
    EXPECT_EQ(lines[5], "  Frequency         Phase  Straight line    Deviation");
    EXPECT_EQ(lines[6], "     in Hz         in deg        in deg        in deg");
    EXPECT_EQ(lines[7].substr(0, 14), "  1.300000D+01");
    EXPECT_EQ(lines[7].size(), lines[17].size());
    results.frequency_count = 1;
    EXPECT_FALSE(fit_phase_line(results, line));
}

}  // namespace
}  // namespace kavrel
