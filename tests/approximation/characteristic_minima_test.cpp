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
    FilterSpec s;
    s.upperPassEdge = 1;
    s.upperStopEdge = omega;
    s.bandEdgeLoss = edge_loss;
    s.stopbandLoss = s.upperStopLoss = loss;
    s.passbandType = passband;
    s.stopbandType = equal_minima;
    s.symmetryFlag = symmetry;
    s.degree = degree;
    return s;
}

TEST(EqualMinima, ZerosOfEllipticAndInverseChebyshevFilters) {
    std::ifstream file(TEST_DATA "/approximation/characteristic_zeros_golden.txt");
    std::string line;
    int cases = 0;
    while (std::getline(file, line)) {
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
        EXPECT_LT(std::fabs(b.notes.upper_loss_reached / loss - 1), 1e-13L);
        EXPECT_LT(std::fabs(loss_at(b.xp, omega) / loss - 1), 1e-13L);
        EXPECT_LT(std::fabs(stopbandFloor(b.xp).upper / loss - 1), 1e-12L);
        EXPECT_EQ(b.spec.zerosAtInfinity, n - 2 * count);
        ++cases;
    }
    EXPECT_EQ(cases, 152);
}

// The losses are met, a degree less (two for band-pass) does not meet them, and all minima are the same.
void expect_least_degree(const FilterSpec& request) {
    const Built b = build(request);
    ASSERT_TRUE(b.verdict.good()) << static_cast<int>(b.verdict.fault);
    const bool band = request.filterType == band_pass;
    const StopbandFloor floor = stopbandFloor(b.xp);
    const double asked = band ? std::max(request.stopbandLoss, request.upperStopLoss) : request.stopbandLoss;
    // The estimate rounds up from 1e-4 of a degree.
    const double shortage = 1e-4 * asked;
    EXPECT_GT(static_cast<double>(floor.upper), asked - shortage);
    EXPECT_NEAR(static_cast<double>(floor.upper), b.notes.upper_loss_reached, 1e-6);
    if (band) {
        EXPECT_NEAR(static_cast<double>(floor.lower), b.notes.lower_loss_reached, 1e-6);
    }

    FilterSpec less = request;
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
    FilterSpec s = low_pass_request(equal_ripple, -1, 1400, 0.05, 50);
    s.filterType = band_pass;
    s.lowerPassEdge = 800, s.upperPassEdge = 1100, s.lowerStopEdge = 700;
    for (const auto medium : {lumped, sampled_data, microwave}) {
        for (const auto passband : {maximally_flat, equal_ripple}) {
            for (const int symmetry : {-1, 0}) {
                SCOPED_TRACE(testing::Message() << medium << ' ' << passband << ' ' << symmetry);
                s.medium = medium, s.passbandType = passband, s.symmetryFlag = symmetry, s.sampleFrequency = 6000;
                expect_least_degree(s);
            }
        }
    }
    s.stopbandLoss = 30;
    const Built b = build(s);
    EXPECT_GE(b.notes.lower_loss_reached, 50) << "the larger loss rules";
}

// Unit elements and a parametric point are no part of the prototype; the loss is there all the same.
TEST(EqualMinima, LossesHoldBesideUnitElements) {
    FilterSpec s = low_pass_request(equal_ripple, 0, 1350, 0.1, 42);
    s.filterType = band_pass, s.bandpassType = parametric, s.medium = microwave, s.sampleFrequency = 5000;
    s.lowerPassEdge = 800, s.upperPassEdge = 1200, s.lowerStopEdge = 700;
    for (const int unit_elements : {0, 1, 2}) {
        for (const auto passband : {maximally_flat, equal_ripple}) {
            s.unitElements = unit_elements, s.passbandType = passband;
            const Built b = build(s);
            ASSERT_TRUE(b.verdict.good());
            const StopbandFloor floor = stopbandFloor(b.xp);
            EXPECT_GE(static_cast<double>(std::min(floor.lower, floor.upper)), 42 - 1e-8) << unit_elements;
        }
    }
    FilterSpec low = low_pass_request(equal_ripple, 1, 1.3, 0.1, 50);
    low.medium = microwave, low.sampleFrequency = 4, low.unitElements = 2;
    const Built b = build(low);
    ASSERT_TRUE(b.verdict.good());
    EXPECT_GE(static_cast<double>(stopbandFloor(b.xp).upper), 50 - 1e-8);
    EXPECT_EQ(b.spec.degree % 2, 0);
    EXPECT_LT(static_cast<double>(loss_at(b.xp, 0)), 1e-15) << "shifted with the unit elements in their place";
}

TEST(EqualMinima, Refusals) {
    FilterSpec s = low_pass_request(equal_ripple, 0, 1.0001, 0.0001, 200);
    Built b = build(s);
    EXPECT_EQ(b.verdict.fault, FrontFault::degree_too_high);
    EXPECT_GT(b.verdict.number, 50);
    EXPECT_EQ(build(low_pass_request(equal_ripple, 0, 1.3, 0.1, 1, 51)).verdict.number, 51);
    EXPECT_EQ(build(low_pass_request(equal_ripple, 0, 0.9, 0.1, 40)).verdict.fault, FrontFault::stopband_incorrect);
    EXPECT_EQ(build(low_pass_request(equal_ripple, 0, 1.3, 0.1, 0)).verdict.fault, FrontFault::stopband_incorrect);

    s = low_pass_request(equal_ripple, 0, 1200, 0.1, 40);
    s.filterType = band_pass, s.lowerPassEdge = 900, s.upperPassEdge = 1000, s.lowerStopEdge = 950;
    EXPECT_EQ(build(s).verdict.fault, FrontFault::bandpass_stopband_incorrect);
    s.lowerStopEdge = 899.9, s.stopbandLoss = 150;
    b = build(s);
    EXPECT_EQ(b.verdict.fault, FrontFault::degree_too_high);
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
                for (int i = 1; i <= before.zeroCount; ++i) {
                    EXPECT_NEAR(static_cast<double>(mine(i) / wanted(i)), 1, 1e-14) << i;
                }
                EXPECT_EQ(b.xp.QS.count, n);
                // F in place of E.
                ASSERT_TRUE(equalMinimaIteration(before.FS, b.spec, b.xp, b.notes).good());
                if (before.zeroCount > 0) {
                    EXPECT_NEAR(static_cast<double>(b.xp.ARR(before.zeroCount)),
                                static_cast<double>(mine(before.zeroCount)),
                                1e-12 * static_cast<double>(mine(before.zeroCount)));
                }
            }
        }
    }
}

TEST(EqualMinima, IterationRefusals) {
    FilterSpec s = low_pass_request(functional_passband, 0, 1.25, 0.1, 40);
    XPlane xp;
    FrontNotes notes;
    xp.normFrequency = 1;
    xp.upper_stop = 1.25L;
    xp.ES.multiplier = 1;
    for (const Real x : {1.5L, 1.2L, -0.5L, 0.4L}) xp.ES.append({x, 0});
    EXPECT_EQ(equalMinimaIteration(s, xp, notes).fault, FrontFault::minima_roots_missing) << "a pole at w = sqrt 3";
    EXPECT_EQ(s.designError, 1);
    xp.upper_stop = 0;
    EXPECT_EQ(equalMinimaIteration(s, xp, notes).fault, FrontFault::stopband_incorrect);

    // Poles beside the stopband's axis, where the extremum hardly moves with the zero at infinity.
    xp.upper_stop = 1.0028748L;
    xp.ES.count = 0;
    for (const Real im : {4.46316e-3L, -4.46316e-3L}) xp.ES.append({1.07001L, im});
    for (const Real im : {1.62353e-3L, -1.62353e-3L}) xp.ES.append({-0.0746473L, im});
    EXPECT_EQ(equalMinimaIteration(s, xp, notes).fault, FrontFault::minima_not_settled);
}

}  // namespace
}  // namespace kavrel
