// Degree estimates: the losses are reached, and by no filter of lower degree. Matching networks: the loss at s = 0.
#include <array>
#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "approximation/degree_estimate.h"
#include "approximation/frequency_variable.h"
#include "tests/approximation/characteristic_build.h"

namespace kavrel {
namespace {

using Real = XPlane::Real;

double pick(std::mt19937& random, double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
}

FilterSpec random_request(std::mt19937& random) {
    FilterSpec s;
    s.filterType = std::array{low_pass, high_pass, band_pass, band_pass}[random() % 4];
    s.passbandType = static_cast<PassbandType>(random() % 2);
    s.medium = static_cast<Medium>(random() % 3);
    s.unitElements = s.medium == microwave ? static_cast<int>(random() % 6) : 0;
    s.symmetryFlag = static_cast<int>(random() % 3) - 1;
    s.bandpassType = random() % 4 == 0 ? parametric : conventional;
    s.sampleFrequency = 6000;
    s.lowerPassEdge = pick(random, 700, 950);
    s.upperPassEdge = pick(random, 1000, 1400);
    s.lowerStopEdge = s.lowerPassEdge / pick(random, 1.1, 2);
    s.upperStopEdge = s.upperPassEdge * pick(random, 1.1, 2);
    s.bandEdgeLoss = std::array{0.001, 0.1, 1.0, 3.0}[random() % 4];
    s.stopbandLoss = pick(random, 5, 70);
    s.upperStopLoss = pick(random, 5, 70);
    return s;
}

bool meets(FilterSpec request, int at_zero, int at_infinity) {
    request.stopbandType = specified_zeros;
    request.zerosAtZero = at_zero;
    request.zerosAtInfinity = at_infinity;
    const bool band = request.filterType == band_pass;
    if (request.filterType == high_pass) std::swap(request.zerosAtZero, request.zerosAtInfinity);
    const Built b = build(request);
    if (!b.verdict.good()) return false;
    const double upper = static_cast<double>(loss_at(b.xp, b.xp.upper_stop));
    if (!band) return upper >= request.stopbandLoss;
    return upper >= request.upperStopLoss &&
           static_cast<double>(loss_at(b.xp, b.xp.lower_stop)) >= request.stopbandLoss;
}

TEST(DegreeEstimate, MonotonicIsTheLeastThatMeets) {
    std::mt19937 random(11);
    int designed = 0;
    for (int k = 1; k <= 400; ++k) {
        const FilterSpec request = random_request(random);
        const bool band = request.filterType == band_pass;
        SCOPED_TRACE(testing::Message() << k << ": type " << request.filterType << ' ' << request.passbandType
                                        << " medium " << request.medium << " ue " << request.unitElements
                                        << " parametric " << request.bandpassType);
        const Built b = build(request);
        if (b.verdict.fault == FrontFault::degree_too_high) {
            EXPECT_GT(b.verdict.number, 50);
            continue;
        }
        ASSERT_TRUE(b.verdict.good()) << static_cast<int>(b.verdict.fault);
        ++designed;
        EXPECT_TRUE(meets(request, b.spec.zerosAtZero, b.spec.zerosAtInfinity));
        EXPECT_NEAR(b.notes.upper_loss_reached, static_cast<double>(loss_at(b.xp, b.xp.upper_stop)), 1e-9);
        if (!band) {
            EXPECT_FALSE(b.spec.zerosAtInfinity > 0 && b.spec.degree > 1 &&
                         meets(request, 0, b.spec.zerosAtInfinity - 1));
            continue;
        }
        EXPECT_NEAR(b.notes.lower_loss_reached, static_cast<double>(loss_at(b.xp, b.xp.lower_stop)), 1e-9);
        EXPECT_EQ(b.spec.degree % 2, request.bandpassType == conventional ? 0 : 1);
        const int fewer = b.spec.zerosAtZero + b.spec.zerosAtInfinity - 2;
        for (int at_zero = 0; at_zero <= fewer && b.spec.degree > 3; ++at_zero) {
            EXPECT_FALSE(meets(request, at_zero, fewer - at_zero)) << at_zero << " of " << fewer;
        }
    }
    EXPECT_GT(designed, 300);
}

FilterSpec steep(double loss) {
    FilterSpec s;
    s.upperPassEdge = 1;
    s.upperStopEdge = 2;
    s.bandEdgeLoss = 10 * std::log10(2.0);
    s.stopbandLoss = loss;
    return s;
}

// Butterworth of n at twice the edge: 10 log10(1 + 4^n).
TEST(DegreeEstimate, DegreeFiftyIsTheLast) {
    Built b = build(steep(10 * std::log10(1 + std::pow(4.0, 50)) - 0.01));
    ASSERT_TRUE(b.verdict.good());
    EXPECT_EQ(b.spec.degree, 50);
    b = build(steep(10 * std::log10(1 + std::pow(4.0, 50)) + 0.01));
    EXPECT_EQ(b.verdict.fault, FrontFault::degree_too_high);
    EXPECT_EQ(b.verdict.number, 51);
    EXPECT_EQ(messageOf(b.verdict.fault).first, " **** Required degree {} is too high, design discontinued ****");

    // log10(1e4 - 1)/(2 log10 1.001) = 4607.4...
    FilterSpec far = steep(40);
    far.upperStopEdge = 1.001;
    EXPECT_EQ(build(far).verdict.number, static_cast<int>(std::ceil(std::log(9999.0) / 2 / std::log(1.001))));
    far.upperStopEdge = 1 + 1e-15;
    EXPECT_GT(build(far).verdict.number, 100'000'000) << "as far as an int reaches";
    for (const auto passband : {maximally_flat, equal_ripple}) {
        far = steep(1000), far.upperStopLoss = 1000, far.passbandType = passband;
        far.filterType = band_pass, far.lowerPassEdge = 0.999, far.lowerStopEdge = 0.998, far.upperStopEdge = 1.001;
        const int needed = build(far).verdict.number;
        far.stopbandLoss = far.upperStopLoss = 3000;
        EXPECT_NEAR(build(far).verdict.number / 3.0, needed, 10) << "each zero adds the same";
        far.lowerStopEdge = 0.9989999, far.upperStopEdge = 1.0000001;
        EXPECT_GT(build(far).verdict.number, 2000);
    }

    FilterSpec s = steep(40);
    s.upperStopEdge = 0.5;
    EXPECT_EQ(build(s).verdict.fault, FrontFault::stopband_incorrect);
    s = steep(0);
    EXPECT_EQ(build(s).verdict.fault, FrontFault::stopband_incorrect);
    s = steep(40), s.degree = 5;
    EXPECT_EQ(build(s).spec.zerosAtInfinity, 5) << "a degree given";
    s.filterType = band_pass, s.lowerPassEdge = 0.5, s.lowerStopEdge = 0.6, s.degree = 0, s.upperStopLoss = 40;
    EXPECT_EQ(build(s).verdict.fault, FrontFault::stopband_incorrect);
}

FilterSpec matching_request(PassbandType passband) {
    FilterSpec s;
    s.filterType = band_pass;
    s.bandpassType = impedance_matching;
    s.passbandType = passband;
    s.sourceResistance = 1, s.loadResistance = 2;
    s.lowerPassEdge = 500, s.upperPassEdge = 1500;
    s.bandEdgeLoss = 0.01;
    return s;
}

// c^2 = (R2 - R1)^2/(4 R1 R2) at s = 0, the reached band-edge loss at the edges and nowhere more.
void expect_matched(const FilterSpec& request, const Built& b) {
    ASSERT_TRUE(b.verdict.good()) << static_cast<int>(b.verdict.fault);
    const double r1 = request.sourceResistance, r2 = request.loadResistance;
    const double at_zero = b.spec.filterType == high_pass ? static_cast<double>(squared_characteristic(b.xp, Real{1}))
                                                          : static_cast<double>(squared_characteristic(b.xp, b.xp.a));
    EXPECT_NEAR(at_zero / ((r2 - r1) * (r2 - r1) / (4 * r1 * r2)), 1, 1e-15);
    EXPECT_NEAR(static_cast<double>(loss_at(b.xp, 1)), b.spec.bandEdgeLoss, 1e-16);
    EXPECT_TRUE(b.xp.matched);
    EXPECT_EQ(b.spec.bandpassType, conventional);
    EXPECT_EQ(b.spec.stopbandType, specified_zeros);
    EXPECT_EQ(b.spec.zerosAtZero, 0);
    EXPECT_TRUE(request.stopbandType == specified_zeros || b.spec.bandEdgeLoss <= request.bandEdgeLoss);
}

TEST(Matching, LossAtZeroIsThatOfTheTerminations) {
    for (const auto passband : {maximally_flat, equal_ripple}) {
        FilterSpec s = matching_request(passband);
        Built b = build(s);
        expect_matched(s, b);
        EXPECT_EQ(b.spec.degree % 2, 0);
        EXPECT_EQ(b.spec.unitElements, 0);

        s.stopbandType = specified_zeros, s.zerosAtInfinity = b.spec.degree - 2;
        const Built less = build(s);
        expect_matched(s, less);
        EXPECT_GT(less.spec.bandEdgeLoss, s.bandEdgeLoss) << "two zeros less miss the loss";

        s.zerosAtInfinity = 4, s.zeroCount = 2, s.FZI(1) = 2500, s.FZR(2) = 300, s.FZI(2) = 1900;
        expect_matched(s, build(s));

        for (const auto medium : {lumped, microwave}) {
            s = matching_request(passband);
            s.medium = medium, s.sampleFrequency = 5000, s.upperStopEdge = 2000, s.upperStopLoss = 30;
            b = build(s);
            expect_matched(s, b);
            EXPECT_GE(static_cast<double>(loss_at(b.xp, b.xp.upper_stop)), 30);
            EXPECT_EQ(b.spec.unitElements > 0, medium == microwave);
        }
    }
}

// Quarter-wave sections alone: eps2 = c^2/T_n^2(1/cos theta), the band even about the quarter-wave frequency.
TEST(Matching, SteppedLine) {
    FilterSpec s = matching_request(equal_ripple);
    s.medium = microwave, s.sampleFrequency = 4000;
    s.lowerPassEdge = 1200, s.upperPassEdge = 2800;
    const Real b = 1 / std::cos(3.14159265358979323846264L * 0.3L);
    Built three = build(s);
    expect_matched(s, three);
    EXPECT_EQ(three.spec.unitElements, 3);
    EXPECT_EQ(three.spec.filterType, high_pass);
    const Real chebyshev = 4 * b * b * b - 3 * b;
    EXPECT_NEAR(static_cast<double>(three.xp.eps2 * chebyshev * chebyshev), 0.125, 1e-15);

    FilterSpec upper_alone = s;
    upper_alone.lowerPassEdge = 0;
    EXPECT_EQ(build(upper_alone).xp.eps2, three.xp.eps2);

    s.passbandType = maximally_flat;
    const Built flat = build(s);
    expect_matched(s, flat);
    EXPECT_NEAR(static_cast<double>(flat.xp.eps2 * std::pow(b, 2.0L * flat.spec.unitElements)), 0.125, 1e-15);
    s.stopbandType = specified_zeros, s.unitElements = flat.spec.unitElements - 1;
    EXPECT_GT(build(s).spec.bandEdgeLoss, 0.01);
}

TEST(Matching, Refusals) {
    FilterSpec s = matching_request(equal_ripple);
    s.loadResistance = 1;
    EXPECT_EQ(build(s).verdict.fault, FrontFault::terminations_unfit);
    s.loadResistance = 0;
    EXPECT_EQ(build(s).verdict.fault, FrontFault::terminations_unfit);
    s.loadResistance = 1.01;
    const Built b = build(s);
    EXPECT_EQ(b.verdict.fault, FrontFault::matching_not_needed) << "the mismatch alone loses less";
    EXPECT_EQ(b.spec.designError, 2);
    s = matching_request(maximally_flat);
    s.loadResistance = 1e4, s.lowerPassEdge = 50;
    EXPECT_EQ(build(s).verdict.fault, FrontFault::degree_too_high);
    s.medium = microwave, s.sampleFrequency = 4000;
    EXPECT_EQ(build(s).verdict.fault, FrontFault::degree_too_high);
    s.upperStopEdge = 1400, s.upperStopLoss = 20;
    EXPECT_EQ(build(s).verdict.fault, FrontFault::stopband_incorrect);
}

}  // namespace
}  // namespace kavrel
