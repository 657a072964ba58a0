// Filters of stubs and lines, against losses in closed form and against an analysis of the lines.
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "synthesis/synthesis_report.h"
#include "tests/synthesis/ladder_cases.h"

namespace kavrel::test {
namespace {

// Quarter wave at 10 kHz, edges at 2 and 3 kHz; stubs of either kind for a band-pass.
FilterSpec line_filter(FilterType type, PassbandType passband, int stubs, int lines, double load = 50) {
    FilterSpec s = all_pole(type, passband, 1);
    s.medium = microwave;
    s.implementation = 'M';
    s.sampleFrequency = 20000;
    s.loadResistance = load;
    s.unitElements = lines;
    s.zerosAtInfinity = type == high_pass ? 0 : stubs;
    s.zerosAtZero = type == low_pass ? 0 : stubs;
    s.degree = s.zerosAtZero + s.zerosAtInfinity + lines;
    s.degreeParity = s.degree % 2;
    return s;
}

TEST(Microwave, LossesInClosedForm) {
    std::ifstream file(std::string(TEST_DATA) + "/synthesis/microwave_losses.txt");
    int filters = 0;
    double worst = 0;
    for (std::string row; std::getline(file, row);) {
        if (row.starts_with('#')) continue;
        std::istringstream words(row);
        std::string kind;
        int flat = 0, stubs = 0, lines = 0;
        words >> kind >> flat >> stubs >> lines;
        const FilterType type = kind == "lp" ? low_pass : kind == "hp" ? high_pass : band_pass;
        auto run = std::make_unique<LadderRun>();
        run->run(line_filter(type, flat == 1 ? maximally_flat : equal_ripple, stubs, lines));
        ASSERT_TRUE(run->approximated && run->verdict.good()) << row;
        EXPECT_EQ(run->state.negative_elements, 0) << row;
        EXPECT_EQ(run->circuit.mode_count, 0);
        for (double hz = 0, loss = 0; words >> hz >> loss;) {
            const double error = std::fabs(chain_loss(run->circuit, hz) - loss) / std::fmax(1.0, loss);
            EXPECT_LT(error, 1e-9) << row << " at " << hz;
            worst = std::fmax(worst, error);
        }
        ++filters;
    }
    EXPECT_GT(filters, 90);
    std::printf("%d filters, worst %.2g\n", filters, worst);
}

// High degrees with unequal terminations, the zeros of f by turns on either side and all on one side.
TEST(Microwave, ManyLines) {
    Tally by_turns, one_sided;
    for (const auto type : {low_pass, high_pass, band_pass}) {
        for (const auto passband : {maximally_flat, equal_ripple}) {
            for (const int lines : {20, 21, 35, 47}) {
                const FilterSpec s = line_filter(type, passband, lines % 3 == 0 ? 2 : 0, lines, lines < 35 ? 500 : 75);
                auto run = std::make_unique<LadderRun>();
                run->run(s);
                by_turns.take(s, "many lines", *run);
                if (!run->approximated || type == band_pass || s.degreeParity == 0) continue;
                ASSERT_TRUE(run->take_hurwitz_f()) << lines;
                one_sided.take(s, "one-sided f", *run);
            }
        }
    }
    by_turns.tell();
    one_sided.tell();
    EXPECT_EQ(by_turns.requests, 24);
    EXPECT_EQ(one_sided.requests, 12);
    // The store has room for 47 lines.
    auto run = std::make_unique<LadderRun>();
    run->run(line_filter(low_pass, equal_ripple, 0, 48));
    ASSERT_TRUE(run->approximated);
    EXPECT_EQ(run->verdict.fault, SynthesisFault::storage_full);
    EXPECT_EQ(failure_report(run->verdict, run->state)[0], "Storage is full");
}

// With one termination the source is of voltage or of current, as the function asks: the number of the last line tells.
TEST(Microwave, LinesAtAnOpenEnd) {
    Tally tally;
    for (const auto type : {low_pass, high_pass, band_pass}) {
        for (int stubs = type == band_pass ? 1 : 0; stubs <= 4; ++stubs) {
            for (int lines = 1; lines <= 5; ++lines) {
                tally.take(line_filter(type, stubs % 2 == 0 ? equal_ripple : maximally_flat, stubs, lines, 0),
                           "single termination");
            }
        }
    }
    tally.tell();
    EXPECT_EQ(tally.requests, 70);
}

// Stubs are told as impedances: what the first branch of a low-pass is, an open stub across the rails.
TEST(Microwave, ResultReportTellsImpedances) {
    auto run = std::make_unique<LadderRun>();
    run->run(line_filter(low_pass, equal_ripple, 2, 1));
    ASSERT_TRUE(run->verdict.good());
    const std::vector<std::string> lines = result_report("", run->state);
    EXPECT_EQ(lines[2], " **** All values are impedances ****");
    const double stub = 1 / run->circuit.VALUE(2);
    const double edge = std::tan(std::numbers::pi * 3000 / 20000);
    std::istringstream row(lines[5]);
    std::string normalised, drawing, denormalised;
    row >> normalised >> drawing >> denormalised;
    EXPECT_EQ(drawing, "├───c───┤");
    const auto value = [](std::string text) { return std::stod(text.replace(text.find('D'), 1, "e")); };
    EXPECT_NEAR(value(denormalised), stub, stub * 1e-7);
    // The normalised susceptance at the edge is that of s = j.
    EXPECT_NEAR(value(normalised), stub / (50 * edge), stub * 1e-8);
}

}  // namespace
}  // namespace kavrel::test
