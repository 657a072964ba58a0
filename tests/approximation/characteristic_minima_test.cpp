// Equal minima stopbands against elliptic functions at 50 digits, and as masks.
#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "approximation/characteristic.h"
#include "approximation/equal_minima.h"
#include "approximation/frequency_variable.h"
#include "approximation/stopband_floor.h"
#include "numeric/sum_roots.h"
#include "tests/approximation/characteristic_build.h"

namespace kavrel {
namespace {

using Real = XPlane::Real;

FilterSpec low_pass_request(PassbandType passband, int symmetry, double omega, double edge_loss, double loss,
                            int degree = 0) {
    FilterSpec s = request("equal_minima upperPassEdge 1");
    s.upperStopEdge = omega;
    s.bandEdgeLoss = edge_loss;
    s.stopbandLoss = s.upperStopLoss = loss;
    s.passbandType = passband;
    s.symmetryFlag = symmetry;
    s.degree = degree;
    return s;
}

TEST(EqualMinima, ZerosOfEllipticAndInverseChebyshevFilters) {
    std::ifstream file(TEST_DATA "/approximation/characteristic_zeros_golden.txt");
    int cases = 0;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#') continue;
        SCOPED_TRACE(line.substr(0, 60));
        std::istringstream in(line);
        int flat = 0, flag = 0, n = 0, count = 0;
        double omega = 0, edge_loss = 0;
        Real loss = 0;
        in >> flat >> flag >> n >> omega >> edge_loss >> loss >> count;
        const Built b =
            build(low_pass_request(flat == 1 ? maximally_flat : equal_ripple, flag, omega, edge_loss, 1, n));
        ASSERT_TRUE(b.verdict.good());
        ASSERT_EQ(b.xp.zeroCount, count);
        Table<Real, 26> mine = b.xp.ARR;
        std::sort(mine.begin(), mine.begin() + count);
        for (int i = 1; i <= count; ++i) {
            Real beyond = 0;
            in >> beyond;
            EXPECT_LT(std::fabs((mine(i) - 1) / beyond - 1), 1e-15L + 1e-18L / beyond) << i;
        }
        EXPECT_LT(gap(b.notes.upper_loss_reached / loss, 1), 1e-13);
        EXPECT_LT(gap(loss_at(b.xp, omega) / loss, 1), 1e-13);
        EXPECT_LT(gap(stopbandFloor(b.xp).upper / loss, 1), 1e-12);
        EXPECT_EQ(b.spec.zerosAtInfinity, n - 2 * count);
        ++cases;
    }
    EXPECT_EQ(cases, 152);
}

// The losses are met, a degree less (two for band-pass) does not meet them, and all minima are the same.
void expect_least_degree(const FilterSpec& asked_for) {
    const Built b = build(asked_for);
    ASSERT_TRUE(b.verdict.good()) << static_cast<int>(b.verdict.fault);
    const bool band = asked_for.filterType == band_pass;
    const StopbandFloor floor = stopbandFloor(b.xp);
    const double asked = band ? std::max(asked_for.stopbandLoss, asked_for.upperStopLoss) : asked_for.stopbandLoss;
    EXPECT_GT(static_cast<double>(floor.upper), asked * (1 - 1e-4));  // rounded up from 1e-4 of a degree
    EXPECT_LT(gap(floor.upper, b.notes.upper_loss_reached), 1e-6);
    EXPECT_LT(gap(floor.lower, band ? b.notes.lower_loss_reached : 0), 1e-6);

    FilterSpec less = asked_for;
    less.degree = b.spec.degree - (band ? 2 : 1);
    if (less.degree < (band ? 2 : 1)) return;
    EXPECT_LT(build(less).notes.upper_loss_reached, asked);
}

TEST(EqualMinima, DegreeIsTheLeast) {
    for (const auto passband : {maximally_flat, equal_ripple}) {
        for (const int symmetry : {-1, 0, 1}) {
            for (const double omega : {1.03, 1.2, 2.0, 5.0}) {
                for (const double loss : {20.0, 47.0, 70.0}) {
                    if (passband == maximally_flat && omega == 1.03 && loss > 20) continue;
                    SCOPED_TRACE(testing::Message() << passband << ' ' << symmetry << ' ' << omega << ' ' << loss);
                    FilterSpec s = low_pass_request(passband, symmetry, omega, 0.1, loss);
                    expect_least_degree(s);
                    s.filterType = high_pass;
                    std::swap(s.upperPassEdge, s.lowerPassEdge);
                    s.lowerPassEdge = omega, s.lowerStopEdge = 1, s.upperStopEdge = 0;
                    for (const auto medium : {lumped, sampled_data, microwave}) {
                        s.medium = medium, s.sampleFrequency = 12;
                        expect_least_degree(s);
                    }
                }
            }
        }
    }
    const FilterSpec band =
        request("band_pass lowerPassEdge 800 upperPassEdge 1100 lowerStopEdge 700 sampleFrequency 6000",
                low_pass_request(equal_ripple, -1, 1400, 0.05, 50));
    for (const std::string medium : {"lumped", "sampled_data", "microwave"}) {
        for (const std::string passband : {" maximally_flat", " equal_ripple"}) {
            for (const std::string symmetry : {" symmetryFlag -1", " symmetryFlag 0"}) {
                SCOPED_TRACE(medium + passband + symmetry);
                expect_least_degree(request(medium + passband + symmetry, band));
            }
        }
    }
    EXPECT_GE(build(request("stopbandLoss 30", band)).notes.lower_loss_reached, 50) << "the larger loss rules";
}

// Least losses on dense grids of both stopbands, beside unit elements and parametric points, too. The farther stop edge
// lies beyond the last minima, or between them.
TEST(EqualMinima, EachEdgeHasTheLossOfItsStopband) {
    RandomNumbers random(3);
    for (int k = 1; k <= 40; ++k) {
        FilterSpec s = request("band_pass lowerPassEdge 1000 sampleFrequency 12000",
                               low_pass_request(k % 2 == 0 ? equal_ripple : maximally_flat, k % 3 - 1, 0, 0.5, 40));
        s.upperPassEdge = random.between(1050, 2000);
        s.lowerStopEdge = random.between(50, 980);
        s.upperStopEdge = s.upperPassEdge * random.between(1.02, 2.5);
        s.medium = static_cast<Medium>(k % 3);
        s.unitElements = s.medium == microwave ? random.integer(0, 2) : 0;
        s.bandpassType = random.coin() ? conventional : parametric;
        SCOPED_TRACE(k);
        const Built b = build(s);
        if (b.verdict.fault == FrontFault::degree_too_high) continue;
        ASSERT_TRUE(b.verdict.good()) << b.verdict.fault;
        constexpr int points = 20000;
        Real lower = squared_from_roots(b.xp, b.xp.lower_stop), upper = squared_from_roots(b.xp, b.xp.upper_stop);
        for (int i = 1; i < points; ++i) {
            const Real part = static_cast<Real>(i) / points;
            lower = std::fmin(lower, squared_from_roots(b.xp, part * b.xp.lower_stop));
            upper = std::fmin(upper, squared_from_roots(b.xp, b.xp.upper_stop / part));
        }
        EXPECT_GT(std::fmin(b.notes.lower_loss_reached, b.notes.upper_loss_reached), 40 * (1 - 1e-4)) << "asked";
        EXPECT_NEAR(b.notes.lower_loss_reached, static_cast<double>(10 * std::log10(1 + lower)), 1e-3);
        EXPECT_NEAR(b.notes.upper_loss_reached, static_cast<double>(10 * std::log10(1 + upper)), 1e-3);
    }
}

// Unit elements are no part of the prototype; the loss is there all the same.
TEST(EqualMinima, LossHoldsBesideUnitElements) {
    const Built b =
        build(request("microwave sampleFrequency 4 unitElements 2", low_pass_request(equal_ripple, 1, 1.3, 0.1, 50)));
    ASSERT_TRUE(b.verdict.good());
    EXPECT_GE(stopbandFloor(b.xp).upper, 50 - 1e-8L);
    EXPECT_EQ(b.spec.degree % 2, 0);
    EXPECT_LT(loss_at(b.xp, 0), 1e-15L) << "shifted with the unit elements in their place";
}

TEST(EqualMinima, Refusals) {
    constexpr auto too_high = FrontFault::degree_too_high;
    expect_refusals(low_pass_request(equal_ripple, 0, 1.3, 0.1, 40),
                    {{"upperStopEdge 1.0001 bandEdgeLoss 0.0001 stopbandLoss 200", too_high},
                     {"degree 51", too_high, 51},
                     {"upperStopEdge 0.9", FrontFault::stopband_incorrect},
                     {"stopbandLoss 0", FrontFault::stopband_incorrect}});
    const Built b = build(request("band_pass lowerPassEdge 900 upperPassEdge 1000 lowerStopEdge 899.9 stopbandLoss 150",
                                  low_pass_request(equal_ripple, 0, 1200, 0.1, 40)));
    EXPECT_EQ(b.verdict.fault, too_high);
    EXPECT_EQ(b.verdict.number % 2, 0) << "the degree of the band-pass, not of its low-pass";
}

// E of a filter whose zeros are known gives these zeros back.
TEST(EqualMinima, IterationFindsTheZerosOfE) {
    SumWorkspace ws;
    for (const auto passband : {maximally_flat, equal_ripple}) {
        for (const int symmetry : {-1, 0, 1}) {
            for (const int n : {1, 2, 3, 4, 6, 7, 12, 20}) {
                SCOPED_TRACE(testing::Message() << passband << ' ' << symmetry << ' ' << n);
                Built b = build(low_pass_request(passband, symmetry, 1.25, 0.1, 1, n));
                ASSERT_TRUE(b.verdict.good());
                ASSERT_TRUE(solveSum(b.xp.FS, b.xp.QS, b.xp.ES, ws).good());
                const XPlane before = b.xp;
                b.xp.ARR = {}, b.xp.zeroCount = 0, b.xp.QS = {};
                ASSERT_TRUE(equalMinimaIteration(b.spec, b.xp, b.notes).good());
                ASSERT_EQ(b.xp.zeroCount, before.zeroCount);
                EXPECT_EQ(b.spec.zerosAtInfinity, n - 2 * before.zeroCount);
                Table<Real, 26> mine = b.xp.ARR, wanted = before.ARR;
                std::sort(mine.begin(), mine.begin() + before.zeroCount);
                std::sort(wanted.begin(), wanted.begin() + before.zeroCount);
                for (int i = 1; i <= before.zeroCount; ++i) EXPECT_LT(gap(mine(i) / wanted(i), 1), 1e-14) << i;
                EXPECT_EQ(b.xp.QS.count, n);
                // F in place of E.
                ASSERT_TRUE(equalMinimaIteration(before.FS, b.spec, b.xp, b.notes).good());
                const int last = before.zeroCount;
                if (last > 0) {
                    EXPECT_LT(gap(b.xp.ARR(last) / mine(last), 1), 1e-12);
                }
            }
        }
    }
}

// The other two faults are those of whole designs.
TEST(EqualMinima, IterationNeedsAStopEdge) {
    FilterSpec s = low_pass_request(functional_passband, 0, 1.25, 0.1, 40);
    XPlane xp;
    FrontNotes notes;
    EXPECT_EQ(equalMinimaIteration(s, xp, notes).fault, FrontFault::stopband_incorrect);
}

}  // namespace
}  // namespace kavrel
