// The time analysis of a filter: its rows, what its table and plot are of, and what it refuses.
#include "iir/time_commands.h"

#include "iir/stored_iir.h"
#include "tests/iir/filters.h"
#include "tests/iir/iir_room.h"

namespace kavrel {
namespace {

// H = 1/(2 - z^-1) at 1 kHz: impulse response 2^-n of sample n, step response 1 - 2^-n.
struct TimeAnalysis : testing::Test, IirRoom {
    TimeAnalysis() { filter = factored_filter(1000, 0.5, {}, {{-0.5, 0}}); }
    void time(double start, double stop, double step, Implementation form = Implementation::cascade) {
        command.time = {start, stop, step};
        command.simulated = form;
        send("time");
    }
};

TEST_F(TimeAnalysis, RowsOfARequest) {
    const struct {
        double start, stop, step;
        int count, first, every;  // in samples
    } cases[] = {{0, 0.01, 0, 11, 1, 1},           {0, 0.01, 0.001, 11, 1, 1}, {0, 0.01, 0.0004, 11, 1, 1},
                 {0.002, 0.0109, 0.0026, 3, 3, 3}, {0, 1, 0.002, 501, 1, 2},   {0.0029999999, 0.004, 0, 2, 4, 1},
                 {0, 0.0001, 1, 1, 1, 1000}};
    for (const auto& [start, stop, step, count, first, every] : cases) {
        time(start, stop, step);
        ASSERT_EQ(results.time_count, count) << stop << " " << step;
        for (int i = 1; i <= count; ++i) {
            const int n = first + (i - 1) * every;
            EXPECT_EQ(results.TIME(i), static_cast<float>((n - 1) * 1e-3));
            EXPECT_EQ(results.IMPULSE(i), static_cast<float>(std::pow(0.5, n)));
            EXPECT_EQ(results.STEP(i), static_cast<float>(1 - std::pow(0.5, n)));
        }
        EXPECT_EQ(boxes(), "Question: Tabulate? | Success: *** done ***");
    }
    session.units.frequency_index = session.units.time_index = 2;
    settle_units(session.units);
    time(0, 1000, 0);
    EXPECT_EQ(results.time_count, 501);
    EXPECT_EQ(lines(), " Time response: first 501 of 1001 rows\n") << "milliseconds";
}

TEST_F(TimeAnalysis, TheAllpassHasTwoOutputs) {
    // Chains z^-1 and (z^-2 + 1/3)/(1 + z^-2/3) of a high-pass: the filter is the difference.
    filter.kind = DigitalKind::high_pass;
    filter.allpass.NTA = filter.allpass.NTB = 1;
    filter.allpass.TB2(1) = 1.0 / 3;
    for (const auto output : {AllpassOutput::filter, AllpassOutput::sum, AllpassOutput::difference}) {
        command.output = output;
        time(0, 0.005, 0, Implementation::allpass);
        const float sign = output == AllpassOutput::sum ? 1.0F : -1.0F;
        EXPECT_EQ(results.IMPULSE(1), static_cast<float>(1.0 / 6));
        EXPECT_EQ(results.IMPULSE(2), sign * 0.5F);
    }
}

TEST_F(TimeAnalysis, TablesAndPlotAreOfTheirFilter) {
    constexpr std::string_view warning = " *** analysis of an earlier filter ***\n";
    time(0, 0.002, 0);
    command.time_plot.y1 = 1;
    send("pltt");
    EXPECT_EQ(boxes(), "Warning: Too few points to plot");
    window.files = {"one", "two"};
    send("lat ");  // which leaves the filter what it is
    send("tabt");
    EXPECT_FALSE(read_text("one.tab").starts_with(warning));
    filter.cascade.CK = 1;
    send("tabt");
    EXPECT_EQ(read_text("two.tab"), std::string(warning) + read_text("one.tab"));
    time(0, 0.004, 0);
    send("pltt");
    EXPECT_EQ(boxes(), "");
    EXPECT_EQ(plot.print_id, 161);
}

TEST_F(TimeAnalysis, WhatIsRefusedLeavesTheResults) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    const TimeRequest cases[] = {{-1, 1, 0}, {nan, 1, 0}, {0, 0, 0},    {2, 1, 0},     {0, nan, 0},
                                 {0, 1, -1}, {0, 1, nan}, {0, 1e13, 0}, {0, 1, 1e150}, {1e150, 2e150, 0}};
    const std::string_view fields[] = {"start", "start", "stop", "stop", "stop",
                                       "step",  "step",  "stop", "step", "stop"};
    time(0, 0.003, 0);
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        time(cases[i].start, cases[i].stop, cases[i].step);
        EXPECT_EQ(boxes(), "Error: Incorrect time specification") << i;
        SampleGrid grid;
        EXPECT_EQ(sample_grid(command.time, session.units, filter.T, grid).field, fields[i]) << i;
    }
    window.stop_at = 3;
    time(1e9, 1e9 + 1, 0);
    EXPECT_EQ(boxes(), "");
    EXPECT_EQ(lines(), " **** Stopped ****\n");
    window.stop_at = -1;
    filter.cascade.C1D(1) = -2;
    time(0.15, 0.2, 0);
    EXPECT_EQ(boxes(), "Error: Results are out of range");
    EXPECT_EQ(results.time_count, 4);
}

}  // namespace
}  // namespace kavrel
