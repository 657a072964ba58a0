// The time analysis of a filter: its rows, their table and plot, and what it refuses.
#include "iir/time_commands.h"

#include "iir/lattice_form.h"
#include "iir/sampled_response.h"
#include "iir/stored_iir.h"
#include "shell/time_request.h"
#include "tests/iir/filter_of.h"
#include "tests/iir/iir_room.h"

namespace kavrel {
namespace {

// H = 1/(2 - z^-1) at 1 kHz: impulse response 2^-n of sample n, step response 1 - 2^-n.
struct TimeAnalysis : testing::Test, IirRoom {
    TimeAnalysis() {
        filter = filter_of(0.5, {}, {{0.5, 0}});
        filter.fs = 1000;
        filter.T = 1e-3;
        session.TITLE = FixedText<80>("half a pole");
    }
    void time(double start, double stop, double step, Implementation form = Implementation::cascade) {
        command.time = {start, stop, step};
        command.simulated = form;
        send("time");
    }
};

struct Rows {
    double start, stop, step;
    int count;
    int first, every;  // in samples
};

TEST_F(TimeAnalysis, RowsOfARequest) {
    const Rows cases[] = {
        {0, 0.01, 0, 11, 1, 1},           {0, 0.01, 0.001, 11, 1, 1}, {0, 0.01, 0.0004, 11, 1, 1},
        {0.002, 0.0109, 0.0026, 3, 3, 3}, {0, 1, 0.002, 501, 1, 2},   {0.0029999999, 0.004, 0, 2, 4, 1},
        {0, 0.0001, 1, 1, 1, 1000},
    };
    for (const Rows& c : cases) {
        time(c.start, c.stop, c.step);
        ASSERT_EQ(results.time_count, c.count) << c.stop << " " << c.step;
        for (int i = 1; i <= c.count; ++i) {
            const int n = c.first + (i - 1) * c.every;
            EXPECT_EQ(results.TIME(i), static_cast<float>((n - 1) * 1e-3));
            EXPECT_EQ(results.IMPULSE(i), static_cast<float>(std::pow(0.5, n)));
            EXPECT_EQ(results.STEP(i), static_cast<float>(1 - std::pow(0.5, n)));
        }
        EXPECT_EQ(boxes(), "Question: Tabulate? | Success: *** done ***");
        EXPECT_EQ(lines(), "");
    }
    EXPECT_TRUE(results.sampled);
    EXPECT_EQ(results.time_of, fingerprint(filter));
    session.units.frequency_index = session.units.time_index = 2;
    settle_units(session.units);
    time(0, 10, 0);
    EXPECT_EQ(results.time_count, 11) << "milliseconds";
    time(0, 1000, 0);
    EXPECT_EQ(results.time_count, 501);
    EXPECT_EQ(lines(), " Time response: first 501 of 1001 rows\n");
}

TEST_F(TimeAnalysis, TheLatticeIsOneSampleLateAndTheAllpassHasTwoOutputs) {
    time(0, 0.005, 0, Implementation::lattice);
    EXPECT_EQ(boxes(), "Error: Selected implementation is not available");
    ASSERT_TRUE(makeLattice(filter).outcome == LatticeOutcome::made);
    time(0, 0.005, 0, Implementation::lattice);
    EXPECT_EQ(results.IMPULSE(1), 0.0F);
    EXPECT_EQ(results.STEP(1), 0.0F);
    EXPECT_EQ(results.IMPULSE(3), 0.25F);
    EXPECT_EQ(results.STEP(3), 0.75F);
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

TEST_F(TimeAnalysis, TablesAndPlot) {
    send("tabt");
    EXPECT_EQ(boxes(), "Error: No analysis results");
    send("pltt");
    EXPECT_EQ(boxes(), "Error: No analysis results");
    window.answers = {Answer::yes};
    time(0, 0.002, 0);
    EXPECT_EQ(lines(),
              "\n"
              "==== Time response of half a pole\n"
              "cascade  structure ====\n"
              "\n"
              "    Time in sec.    Pulse resp.     Step resp.\n"
              "     0.00000E+00    5.00000E-01    5.00000E-01\n"
              "     1.00000E-03    2.50000E-01    7.50000E-01\n"
              "     2.00000E-03    1.25000E-01    8.75000E-01\n");
    const std::string table =
        "\n"
        "half a pole\n"
        "\n"
        "===== Time-domain response =====\n"
        "\n"
        "    Time in sec.  Impulse resp.     Step resp.\n"
        "     0.00000E+00    5.00000E-01    5.00000E-01\n"
        "     1.00000E-03    2.50000E-01    7.50000E-01\n"
        "     2.00000E-03    1.25000E-01    8.75000E-01\n";
    window.files = {"one", "two"};
    send("lat ");  // which leaves the filter what it is
    send("tabt");
    EXPECT_EQ(read_text("one.tab"), table);
    filter.cascade.CK = 1;
    send("tabt");
    EXPECT_EQ(read_text("two.tab"), " *** analysis of an earlier filter ***\n" + table);
    command.time_plot.y1 = 1;
    send("pltt");
    EXPECT_EQ(boxes(), "Warning: Too few points to plot");
    time(0, 0.004, 0);
    send("pltt");
    EXPECT_EQ(boxes(), "");
    EXPECT_EQ(plot.print_id, 161);
}

TEST_F(TimeAnalysis, WhatIsRefusedLeavesTheResults) {
    struct Wrong {
        double start, stop, step;
        const char* field;
    };
    const double nan = std::nan("");
    const Wrong cases[] = {{-1, 1, 0, "start"},   {nan, 1, 0, "start"},     {0, 0, 0, "stop"},   {2, 1, 0, "stop"},
                           {0, nan, 0, "stop"},   {0, 1, -1, "step"},       {0, 1, nan, "step"}, {0, 1e13, 0, "stop"},
                           {0, 1, 1e150, "step"}, {1e150, 2e150, 0, "stop"}};
    time(0, 0.003, 0);
    for (const Wrong& c : cases) {
        time(c.start, c.stop, c.step);
        EXPECT_EQ(boxes(), "Error: Incorrect time specification") << c.start << " " << c.stop << " " << c.step;
        EXPECT_EQ(results.time_count, 4);
        SampleGrid grid;
        EXPECT_EQ(sample_grid(command.time, session.units, filter.T, grid).field, c.field);
    }
    window.boxes.clear();
    EXPECT_FALSE(fill(IIR_TIME_DLG, {{"start", "2"}, {"stop", "1"}}));
    EXPECT_EQ(boxes(), "Error: Incorrect time specification") << "the form says so at once";

    window.stop_at = 3;
    time(1e9, 1e9 + 1, 0);
    EXPECT_EQ(boxes(), "");
    EXPECT_EQ(lines(), " **** Stopped ****\n");
    window.stop_at = -1;
    filter.cascade.C1D(1) = -2;
    time(0.15, 0.2, 0);
    EXPECT_EQ(boxes(), "Error: Results are out of range");
    EXPECT_EQ(results.time_count, 4);
    filter = {};
    time(0, 1, 0);
    EXPECT_EQ(boxes(), "Error: Data is unavailable");
}

}  // namespace
}  // namespace kavrel
