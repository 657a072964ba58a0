// Impedance matching networks and parametric band-passes.
#include <gtest/gtest.h>

#include "tests/synthesis/ladder_cases.h"

namespace kavrel::test {
namespace {

// The terminations are those asked for, and towards f = 0 nothing lies between them.
TEST(BandPass, MatchingNetworks) {
    Tally tally;
    for (const char* passband : {"flat", "ripple"}) {
        for (const double load : {100.0, 25.0, 60.0, 400.0}) {
            for (const int lower : {500, 1000, 1400}) {
                for (const std::string& network :
                     {fmt::format("edges {} 1500", lower), fmt::format("edges {} 1500 stop 2500 30", lower),
                      fmt::format("edges {} 1500 ends 0 4 zeros 2500", lower),
                      fmt::format("edges {} 1500 quarter 5000 stop 2000 30", lower),
                      fmt::format("edges {} {} quarter 4000", lower, 4000 - lower),
                      fmt::format("edges {} 1500 quarter 5000 ends 0 2 lines 4", lower)}) {
                    const std::string text = fmt::format("matching {} loss 0.01 R 50 {} {}", passband, load, network);
                    const Ladder run = run_of(text);
                    tally.take(*run, text);
                    if (!run->verdict.good()) continue;
                    EXPECT_NEAR(run->circuit.R2 / run->circuit.R1 * 50 / load, 1, 1e-9);
                    const double at_zero = 20 * std::log10((50 + load) / (2 * std::sqrt(50 * load)));
                    EXPECT_NEAR(loss_at(run->circuit, 0.1), at_zero, 1e-6);
                }
            }
        }
    }
    EXPECT_EQ(tally.requests, 144);
    EXPECT_EQ(tally.with_negative_elements, 0);
}

// Any counts and zeros. With an even degree a port cannot see its last branch.
TEST(BandPass, Parametric) {
    Tally odd, even;
    for (const char* passband : {"flat", "ripple"}) {
        for (int nz = 0; nz <= 4; ++nz) {
            for (int ni = nz == 0 ? 1 : 0; ni <= 4; ++ni) {
                int count = 0;
                for (const char* zeros : {"", "zeros 4000", "zeros 4000 1500", "zeros 4000 1500 5000"}) {
                    const std::string text = fmt::format("band {} parametric R 50 {} ends {} {} {}", passband,
                                                         (nz + count++) % 2 == 0 ? 50 : 100, nz, ni, zeros);
                    LadderRun run;
                    run.run(asked(text));
                    ((nz + ni) % 2 == 1 ? odd : even).take(run, text);
                }
            }
        }
    }
    EXPECT_GT(odd.requests, 90);
    EXPECT_GT(even.requests, 75);
    EXPECT_LT(even.with_negative_elements, 25);
}

// The output may hide the branch at the input, and a stub that no port sees lies behind lines, too.
TEST(BandPass, ParametricFromEitherEnd) {
    Tally reverse, with_lines;
    for (int nz = 1; nz <= 5; ++nz) {
        for (int ni = 1; ni <= 6; ++ni) {
            for (const char* passband : {"flat", "ripple"}) {
                const std::string text = fmt::format("band {} parametric ends {} {}", passband, nz, ni);
                const Ladder run = run_of(text, Direction::reverse);
                reverse.take(*run, text);
                EXPECT_TRUE(run->state.ladder.selection.output_side);
            }
            for (int lines = 1; lines <= 3 && nz <= 4 && ni <= 4; ++lines) {
                const std::string text =
                    fmt::format("band ripple parametric quarter 20000 ends {} {} lines {}", nz, ni, lines);
                for (const Direction direction : {Direction::forward, Direction::reverse}) {
                    with_lines.take(text, {.direction = direction});
                }
            }
        }
    }
    EXPECT_EQ(reverse.requests, 60);
    EXPECT_EQ(with_lines.requests, 96);
    EXPECT_EQ(with_lines.with_negative_elements, 0);
}

// A low zero without a zero at the origin: shifted from infinity, and the direct current still passes.
TEST(BandPass, LowZeroWithoutOneAtTheOrigin) {
    const Ladder run = run_of("band ripple parametric R 50 50 ends 0 3 zeros 4000 1500");
    ASSERT_TRUE(run->verdict.good());
    for (int k = 1; k != 0; k = unpackBranch(run->circuit, k).kn) {
        const Branch branch = unpackBranch(run->circuit, k);
        EXPECT_FALSE(k % 2 == 0 && branch.id == BranchId::capacitor) << "a series capacitor";
        EXPECT_FALSE(k % 2 == 1 && branch.id == BranchId::inductor) << "a shunt inductor";
    }
    EXPECT_NEAR(loss_at(run->circuit, 1e-6), static_cast<double>(design_loss(run->design.xp, 0)), 1e-9);
}

}  // namespace
}  // namespace kavrel::test
