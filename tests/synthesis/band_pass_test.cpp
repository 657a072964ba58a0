// Impedance matching networks and parametric band-passes.
#include <gtest/gtest.h>

#include "tests/synthesis/ladder_cases.h"

namespace kavrel::test {
namespace {

enum class Network { lumped, with_stop_edge, with_trap, stubs, stepped_line, lines_and_stubs };

FilterSpec matching(Network network, PassbandType passband, double load, double lower) {
    FilterSpec s;
    s.filterType = band_pass;
    s.bandpassType = impedance_matching;
    s.passbandType = passband;
    s.sourceResistance = 50;
    s.loadResistance = load;
    s.lowerPassEdge = lower;
    s.upperPassEdge = 1500;
    s.bandEdgeLoss = 0.01;
    if (network >= Network::stubs) {
        s.medium = microwave;
        s.implementation = 'M';
        s.sampleFrequency = 5000;
    }
    switch (network) {
        case Network::lumped: break;
        case Network::with_stop_edge: s.upperStopEdge = 2500, s.upperStopLoss = 30; break;
        case Network::with_trap:
            s.stopbandType = specified_zeros;
            s.zerosAtInfinity = 4, s.zeroCount = 1, s.FZI(1) = 2500;
            break;
        case Network::stubs: s.upperStopEdge = 2000, s.upperStopLoss = 30; break;
        case Network::stepped_line: s.sampleFrequency = 4000, s.upperPassEdge = 4000 - lower; break;
        case Network::lines_and_stubs:
            s.stopbandType = specified_zeros;
            s.zerosAtInfinity = 2, s.unitElements = 4;
            break;
    }
    return s;
}

// The terminations are those asked for, and at f = 0 nothing stands between them.
TEST(BandPass, MatchingNetworks) {
    Tally tally;
    for (const auto passband : {maximally_flat, equal_ripple}) {
        for (const double load : {100.0, 25.0, 60.0, 400.0}) {
            for (const double lower : {500.0, 1000.0, 1400.0}) {
                for (const Network network : {Network::lumped, Network::with_stop_edge, Network::with_trap,
                                              Network::stubs, Network::stepped_line, Network::lines_and_stubs}) {
                    const FilterSpec s = matching(network, passband, load, lower);
                    auto run = std::make_unique<LadderRun>();
                    run->run(s);
                    tally.take(s, "matching", *run);
                    if (!run->approximated || !run->verdict.good()) continue;
                    EXPECT_NEAR(run->circuit.R2 / run->circuit.R1 * 50 / load, 1, 1e-9);
                    EXPECT_EQ(run->state.negative_elements, 0) << run->words();
                    const double at_zero = chain_loss(run->circuit, 1e-9);
                    EXPECT_NEAR(at_zero, 20 * std::log10((50 + load) / (2 * std::sqrt(50 * load))), 1e-9);
                }
            }
        }
    }
    tally.tell();
    EXPECT_EQ(tally.requests, 144);
}

// Any counts and zeros. With an even degree a port cannot see its last branch.
TEST(BandPass, Parametric) {
    Tally odd, even;
    for (const auto passband : {maximally_flat, equal_ripple}) {
        for (int nz = 0; nz <= 4; ++nz) {
            for (int ni = 0; ni <= 4; ++ni) {
                for (int zeros = 0; zeros <= 3; ++zeros) {
                    if (nz + ni == 0) continue;
                    FilterSpec s = all_pole(band_pass, passband, 2);
                    s.bandpassType = parametric;
                    s.loadResistance = (nz + zeros) % 2 == 0 ? 50 : 100;
                    s.zerosAtZero = nz, s.zerosAtInfinity = ni;
                    s.zeroCount = zeros;
                    s.FZI(1) = 4000, s.FZI(2) = 1500, s.FZI(3) = 5000;
                    s.degree = nz + ni + 2 * zeros;
                    s.degreeParity = s.degree % 2;
                    Tally& tally = s.degreeParity == 1 ? odd : even;
                    tally.take(s, "parametric");
                }
            }
        }
    }
    odd.tell();
    even.tell();
    EXPECT_GT(odd.requests, 90);
    EXPECT_GT(even.requests, 75);
    EXPECT_LT(even.with_negative_elements, 25);
}

// The output may hide the branch at the input.
TEST(BandPass, ParametricFromTheOutput) {
    Tally tally;
    for (const auto passband : {maximally_flat, equal_ripple}) {
        for (int nz = 1; nz <= 5; ++nz) {
            for (int ni = 1; ni <= 6; ++ni) {
                FilterSpec s = all_pole(band_pass, passband, nz + ni);
                s.bandpassType = parametric;
                s.zerosAtZero = nz, s.zerosAtInfinity = ni;
                auto run = std::make_unique<LadderRun>();
                run->request.direction = Direction::reverse;
                run->run(s);
                tally.take(s, "reverse", *run);
                EXPECT_TRUE(run->state.ladder.selection.output_side);
            }
        }
    }
    tally.tell();
    EXPECT_EQ(tally.requests, 60);
}

// Behind lines, too, stands the stub that no port sees.
TEST(BandPass, ParametricWithLines) {
    Tally tally;
    for (const Direction direction : {Direction::forward, Direction::reverse}) {
        for (int nz = 1; nz <= 4; ++nz) {
            for (int ni = 1; ni <= 4; ++ni) {
                for (int lines = 1; lines <= 3; ++lines) {
                    FilterSpec s = all_pole(band_pass, equal_ripple, nz + ni + lines);
                    s.bandpassType = parametric;
                    s.medium = microwave;
                    s.implementation = 'M';
                    s.sampleFrequency = 20000;
                    s.zerosAtZero = nz, s.zerosAtInfinity = ni, s.unitElements = lines;
                    auto run = std::make_unique<LadderRun>();
                    run->request.direction = direction;
                    run->run(s);
                    tally.take(s, "lines", *run);
                    if (!run->approximated) continue;
                    EXPECT_EQ(run->state.negative_elements, 0) << run->words();
                }
            }
        }
    }
    tally.tell();
    EXPECT_EQ(tally.requests, 96);
}

// A low zero without a zero at the origin: shifted from infinity, and the direct current still passes.
TEST(BandPass, LowZeroWithoutOneAtTheOrigin) {
    FilterSpec s = all_pole(band_pass, equal_ripple, 2);
    s.bandpassType = parametric;
    s.loadResistance = 50;
    s.zerosAtZero = 0, s.zerosAtInfinity = 3;
    s.zeroCount = 2;
    s.FZI(1) = 4000, s.FZI(2) = 1500;
    s.degree = 7, s.degreeParity = 1;
    auto run = std::make_unique<LadderRun>();
    run->run(s);
    ASSERT_TRUE(run->approximated && run->verdict.good());
    for (int k = 1; k != 0; k = unpackBranch(run->circuit, k).kn) {
        const Branch branch = unpackBranch(run->circuit, k);
        EXPECT_FALSE(k % 2 == 0 && branch.id == BranchId::capacitor) << "a series capacitor";
        EXPECT_FALSE(k % 2 == 1 && branch.id == BranchId::inductor) << "a shunt inductor";
    }
    EXPECT_NEAR(chain_loss(run->circuit, 1e-6), static_cast<double>(design_loss(run->design.xp, 0)), 1e-9);
}

}  // namespace
}  // namespace kavrel::test
