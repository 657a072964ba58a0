// Filters of stubs and lines, against losses in closed form.
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "tests/synthesis/ladder_cases.h"

namespace kavrel::test {
namespace {

// Quarter wave at 10 kHz, edges at 2 and 3 kHz; stubs of either kind for a band-pass.
std::string line_filter(std::string_view type, std::string_view passband, int stubs, int lines, int load = 50) {
    return fmt::format("{} {} quarter 20000 R 50 {} ends {} {} lines {}", type, passband, load,
                       type == "low" ? 0 : stubs, type == "high" ? 0 : stubs, lines);
}

TEST(Microwave, LossesInClosedForm) {
    std::ifstream file(std::string(TEST_DATA) + "/synthesis/microwave_losses.txt");
    int filters = 0;
    for (std::string row; std::getline(file, row);) {
        if (row.starts_with('#')) continue;
        std::istringstream words(row);
        std::string kind;
        int flat = 0, stubs = 0, lines = 0;
        words >> kind >> flat >> stubs >> lines;
        const char* type = kind == "lp" ? "low" : kind == "hp" ? "high" : "band";
        const Ladder run = run_of(line_filter(type, flat == 1 ? "flat" : "ripple", stubs, lines));
        ASSERT_TRUE(run->verdict.good()) << row;
        EXPECT_EQ(run->state.negative_elements, 0) << row;
        EXPECT_EQ(run->circuit.mode_count, 0);
        for (double hz = 0, loss = 0; words >> hz >> loss;) {
            EXPECT_NEAR(loss_at(run->circuit, hz), loss, 1e-9 * std::fmax(1.0, loss)) << row << " at " << hz;
        }
        ++filters;
    }
    EXPECT_GT(filters, 90);
}

// High degrees with unequal terminations, the zeros of f by turns on either side and all on one side.
TEST(Microwave, ManyLines) {
    Tally by_turns, one_sided;
    for (const char* type : {"low", "high", "band"}) {
        for (const char* passband : {"flat", "ripple"}) {
            for (const int lines : {20, 21, 35, 47}) {
                const std::string text =
                    line_filter(type, passband, lines % 3 == 0 ? 2 : 0, lines, lines < 35 ? 500 : 75);
                const Ladder run = run_of(text);
                by_turns.take(*run, text);
                if (*type == 'b' || run->design.spec.degreeParity == 0) continue;
                ASSERT_TRUE(run->take_hurwitz_f()) << lines;
                one_sided.take(*run, "one-sided f, " + text);
            }
        }
    }
    EXPECT_EQ(by_turns.requests, 24);
    EXPECT_EQ(one_sided.requests, 12);
}

// With one termination the source is of voltage or of current, as the function asks: the number of the last line says
// which.
TEST(Microwave, LinesAtAnOpenEnd) {
    Tally tally;
    for (const char* type : {"low", "high", "band"}) {
        for (int stubs = *type == 'b' ? 1 : 0; stubs <= 4; ++stubs) {
            for (int lines = 1; lines <= 5; ++lines) {
                tally.take(line_filter(type, stubs % 2 == 0 ? "ripple" : "flat", stubs, lines, 0));
            }
        }
    }
    EXPECT_EQ(tally.requests, 70);
}

}  // namespace
}  // namespace kavrel::test
