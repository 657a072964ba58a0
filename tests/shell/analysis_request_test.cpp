// Grids of frequencies and times, and the choice of curves for a plot.
#include <gtest/gtest.h>

#include "shell/frequency_request.h"
#include "shell/plot_form.h"
#include "shell/time_request.h"

namespace kavrel {
namespace {

TEST(FrequencyRequest, GoodAndBadRequests) {
    struct Row {
        FrequencyRequest request;
        int count;  // 0: refused
        double last;
        const char* what;
    };
    const Row rows[] = {
        {{0, 1000, 100, 0}, 11, 1000, "both ends belong to it"},
        {{0, 1050, 100, 0}, 11, 1000, "a last short step is left out"},
        {{0, 0.3, 0.1, 0}, 4, 0.3, "0.3/0.1 is below 3 in binary"},
        {{10, 20, 0, 5}, 5, 20, "by their number"},
        {{10, 20, 5, 100}, 3, 20, "the increment comes before the number"},
        {{7, 0, 0, 1}, 1, 7, "a single frequency"},
        {{7, 7, 1, 0}, 1, 7, "a range of one"},
        {{0, 500, 1, 0}, 501, 500, "as many as there is room for"},
        {{0, 501, 1, 0}, 0, 0, "one too many"},
        {{0, 1e30, 1e-30, 0}, 0, 0, "beyond counting"},
        {{0, 0, 0, 0}, 0, 0, "a fresh form"},
        {{0, 1000, 0, 0}, 0, 0, "neither increment nor number"},
        {{20, 10, 1, 0}, 0, 0, "falls"},
        {{20, 10, 0, 3}, 0, 0, "falls"},
        {{0, 1000, -100, 0}, 0, 0, "a step back"},
        {{-10, 10, 1, 0}, 0, 0, "a negative frequency"},
    };
    UnitSet units;
    units.frequency_multiplier = 1e3;
    for (const Row& row : rows) {
        EXPECT_EQ(frequency_refusal(row.request).text, row.count > 0 ? "" : frequency_incorrect) << row.what;
        if (row.count == 0) continue;
        const FrequencyGrid grid = frequency_grid(row.request, units);
        EXPECT_EQ(grid.count, row.count) << row.what;
        EXPECT_NEAR(grid.frequencies(grid.count), row.last * 1e3, 1e-9 * row.last * 1e3) << row.what;
        EXPECT_EQ(grid.frequencies(1), row.request.start * 1e3) << row.what;
        EXPECT_EQ(grid.values().size(), static_cast<std::size_t>(row.count));
    }
    const FrequencyGrid radians = frequency_grid({1, 3, 1, 0, FrequencyUnitChoice::radians}, units);
    EXPECT_TRUE(radians.radians);
    EXPECT_EQ(radians.frequencies(3), 3.0) << "the unit of frequency is one of Hz";
}

TEST(TimeRequest, GoodAndBadRequests) {
    struct Row {
        TimeRequest request;
        int count;
    };
    const Row rows[] = {{{0, 10, 1}, 11}, {{-1, 1, 0.5}, 5}, {{0, 5, 0.01}, 501}, {{0, 5.01, 0.01}, 0}, {{0, 0, 0}, 0},
                        {{5, 5, 1}, 0},   {{5, 4, 1}, 0},    {{0, 5, 0}, 0},      {{0, 5, -1}, 0}};
    UnitSet units;
    units.time_multiplier = 1e-3;
    for (const Row& row : rows) {
        EXPECT_EQ(time_refusal(row.request).text, row.count > 0 ? "" : time_incorrect) << row.request.stop;
        if (row.count == 0) continue;
        const TimeGrid grid = time_grid(row.request, units);
        EXPECT_EQ(grid.count, row.count);
        EXPECT_DOUBLE_EQ(grid.times(2), (row.request.start + row.request.step) * 1e-3);
    }
}

struct PlotForm : testing::Test {
    AnalysisResult results;
    PlotWindow window;
    UnitSet units;
    PlotChoice choice;
    static constexpr CurveRow curves[] = {
        {&AnalysisResult::LOSS, &AnalysisResult::has_loss, "Loss (dB)"},
        {&AnalysisResult::DELA, &AnalysisResult::has_delay, "Delay (sec)"},
        {&AnalysisResult::RETUR, &AnalysisResult::has_return_loss, "Return loss (dB)"}};

    PlotForm() {
        results.frequency_count = 5;
        results.has_loss = results.has_delay = true;
        for (int i = 1; i <= 5; ++i) {
            results.FREQ(i) = static_cast<float>(1000 * i);
            results.LOSS(i) = static_cast<float>(i * i);
            results.DELA(i) = static_cast<float>(i) * 1e-3F;
        }
    }
    std::string_view plot() {
        const PlotSource source{AnalysisResult::Kind::frequency, curves, "Frequency Hz", 1e3, 154};
        const PlotVerdict verdict = plot_results(choice, source, units, results, window);
        return verdict.text;
    }
};

TEST_F(PlotForm, LimitsAndCurvesReachTheWindow) {
    choice = {.y1 = 2, .y2 = 1, .lower = 2, .upper = 4};
    EXPECT_EQ(plot(), "");
    EXPECT_EQ(window.point_count, 3);
    EXPECT_EQ(window.X_DATA(1), 2000.0F);
    EXPECT_EQ(window.Y1_DATA(3), results.DELA(4));
    EXPECT_EQ(window.Y2_DATA(3), 16.0F);
    EXPECT_EQ(window.print_id, 154);
    choice = {.y1 = no_curve, .y2 = 1, .lower = 3, .upper = 0};
    EXPECT_EQ(plot(), "");
    EXPECT_EQ(window.point_count, 5) << "without an upper limit there is no lower one";
    EXPECT_FALSE(window.has_y2) << "a second curve alone is the first";
    EXPECT_EQ(results.y1_label, std::string_view("Loss (dB)"));
}

TEST_F(PlotForm, WhatCannotBePlottedIsTold) {
    choice = {.y1 = no_curve};
    EXPECT_EQ(plot(), "No plot specified");
    choice = {.y1 = 3};
    EXPECT_EQ(plot(), "No analysis results") << "a singly terminated circuit has no return loss";
    choice = {.y1 = 1, .lower = 4.5, .upper = 5};
    EXPECT_EQ(plot(), "Too few points to plot");
    choice = {.y1 = 1, .y2 = 2};
    results.DELA.fill(1e-3F);
    EXPECT_EQ(plot(), "Delay constant, no plot");
    results.frequency_count = 0;
    EXPECT_EQ(plot(), "No analysis results");
    EXPECT_FALSE(window.open) << "nothing of it came to the window";
}

}  // namespace
}  // namespace kavrel
