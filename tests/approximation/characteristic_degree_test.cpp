// Degree estimates: the losses are reached, and by no filter of lower degree or, of that degree, of more even counts.
// Matching networks: the loss at s = 0.
#include <array>
#include <cmath>
#include <numbers>
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
    s.lowerPassEdge = pick(random, 700, 950);
    s.upperPassEdge = pick(random, 1000, 1400);
    s.lowerStopEdge = s.lowerPassEdge / pick(random, 1.1, 2);
    s.upperStopEdge = s.upperPassEdge * pick(random, 1.1, 2);
    s.sampleFrequency = s.upperStopEdge * pick(random, 2.1, 20);
    s.bandEdgeLoss = std::array{0.001, 0.1, 1.0, 3.0}[random() % 4];
    s.stopbandLoss = pick(random, 5, 70);
    s.upperStopLoss = pick(random, 5, 70);
    return s;
}

bool meets(FilterSpec spec, int at_zero, int at_infinity) {
    spec.stopbandType = specified_zeros;
    spec.zerosAtZero = at_zero;
    spec.zerosAtInfinity = at_infinity;
    const bool band = spec.filterType == band_pass;
    if (spec.filterType == high_pass) std::swap(spec.zerosAtZero, spec.zerosAtInfinity);
    const Built b = build(spec);
    if (!b.verdict.good()) return false;
    const auto loss = [&](Real w) { return static_cast<double>(loss_at(b.xp, w)); };
    if (!band) return loss(b.xp.upper_stop) >= spec.stopbandLoss;
    return loss(b.xp.upper_stop) >= spec.upperStopLoss && loss(b.xp.lower_stop) >= spec.stopbandLoss;
}

TEST(DegreeEstimate, MonotonicIsTheLeastThatMeets) {
    std::mt19937 random(11);
    int designed = 0;
    for (int k = 1; k <= 400; ++k) {
        const FilterSpec asked = random_request(random);
        const bool band = asked.filterType == band_pass;
        SCOPED_TRACE(testing::Message() << k << ": type " << asked.filterType << ' ' << asked.passbandType << " medium "
                                        << asked.medium << " ue " << asked.unitElements << " parametric "
                                        << asked.bandpassType);
        const Built b = build(asked);
        if (b.verdict.fault == FrontFault::degree_too_high) {
            EXPECT_GT(b.verdict.number, 50);
            continue;
        }
        ASSERT_TRUE(b.verdict.good()) << static_cast<int>(b.verdict.fault);
        ++designed;
        EXPECT_TRUE(meets(asked, b.spec.zerosAtZero, b.spec.zerosAtInfinity));
        EXPECT_LT(gap(b.notes.upper_loss_reached, loss_at(b.xp, b.xp.upper_stop)), 1e-9);
        if (!band) {
            EXPECT_FALSE(b.spec.zerosAtInfinity > 0 && b.spec.degree > 1 &&
                         meets(asked, 0, b.spec.zerosAtInfinity - 1));
            continue;
        }
        EXPECT_LT(gap(b.notes.lower_loss_reached, loss_at(b.xp, b.xp.lower_stop)), 1e-9);
        EXPECT_EQ(b.spec.degree % 2, asked.bandpassType == conventional ? 0 : 1);
        const int zeros = b.spec.zerosAtZero + b.spec.zerosAtInfinity;
        const int apart = std::abs(b.spec.zerosAtZero - b.spec.zerosAtInfinity);
        for (int at_zero = (zeros - apart) / 2 + 1; at_zero < (zeros + apart) / 2; ++at_zero) {
            EXPECT_FALSE(meets(asked, at_zero, zeros - at_zero)) << at_zero << " is more even";
        }
        const int fewer = zeros - 2;
        for (int at_zero = 0; at_zero <= fewer && b.spec.degree > 3; ++at_zero) {
            EXPECT_FALSE(meets(asked, at_zero, fewer - at_zero)) << at_zero << " of " << fewer;
        }
    }
    EXPECT_GT(designed, 300);
}

// Butterworth of n at twice the edge: 10 log10(1 + 4^n).
TEST(DegreeEstimate, DegreeFiftyIsTheLast) {
    FilterSpec s = request("upperPassEdge 1 upperStopEdge 2");
    s.bandEdgeLoss = 10 * std::log10(2.0);
    const auto number = [&](const std::string& change) { return build(request(change, s)).verdict.number; };
    s.stopbandLoss = 10 * std::log10(1 + std::pow(4.0, 50)) - 0.01;
    EXPECT_EQ(build(s).spec.degree, 50);
    s.stopbandLoss += 0.02;
    EXPECT_EQ(number(""), 51);
    EXPECT_EQ(messageOf(FrontFault::degree_too_high).first,
              " **** Required degree {} is too high, design discontinued ****");

    // log10(1e4 - 1)/(2 log10 1.001) = 4607.4...
    EXPECT_EQ(number("stopbandLoss 40 upperStopEdge 1.001"),
              static_cast<int>(std::ceil(std::log(9999.0) / 2 / std::log(1.001))));
    EXPECT_GT(number("stopbandLoss 40 upperStopEdge 1.000000000000001"), 100'000'000) << "as far as an int reaches";
    for (const std::string passband : {"maximally_flat", "equal_ripple"}) {
        const std::string band = passband + " band_pass lowerPassEdge 0.999 lowerStopEdge 0.998 upperStopEdge 1.001 ";
        EXPECT_NEAR(number(band + "stopbandLoss 3000 upperStopLoss 3000") / 3.0,
                    number(band + "stopbandLoss 1000 upperStopLoss 1000"), 10)
            << "each zero adds the same";
        EXPECT_GT(number(band + "stopbandLoss 3000 upperStopLoss 3000 lowerStopEdge 0.9989999 upperStopEdge 1.0000001"),
                  2000);
    }
    expect_refusals(s, {{"upperStopEdge 0.5 stopbandLoss 40", FrontFault::stopband_incorrect},
                        {"stopbandLoss 0", FrontFault::stopband_incorrect},
                        {"band_pass lowerPassEdge 0.5 lowerStopEdge 0.6 stopbandLoss 40 upperStopLoss 40",
                         FrontFault::stopband_incorrect}});
    EXPECT_EQ(build(request("degree 5", s)).spec.zerosAtInfinity, 5) << "a degree given";
}

const FilterSpec matching = request(
    "band_pass impedance_matching sourceResistance 1 loadResistance 2 lowerPassEdge 500 upperPassEdge 1500 "
    "bandEdgeLoss 0.01");

// c^2 = (R2 - R1)^2/(4 R1 R2) at s = 0, the reached band-edge loss at the edges and nowhere more.
void expect_matched(const FilterSpec& asked, const Built& b) {
    ASSERT_TRUE(b.verdict.good()) << static_cast<int>(b.verdict.fault);
    const double r1 = asked.sourceResistance, r2 = asked.loadResistance;
    const Real at_zero = squared_characteristic(b.xp, b.spec.filterType == high_pass ? Real{1} : b.xp.a);
    EXPECT_LT(gap(at_zero / ((r2 - r1) * (r2 - r1) / (4 * r1 * r2)), 1), 1e-15);
    EXPECT_LT(gap(loss_at(b.xp, 1), b.spec.bandEdgeLoss), 1e-16);
    EXPECT_TRUE(b.xp.matched);
    EXPECT_EQ(b.spec.bandpassType, conventional);
    EXPECT_EQ(b.spec.stopbandType, specified_zeros);
    EXPECT_EQ(b.spec.zerosAtZero, 0);
    EXPECT_TRUE(asked.stopbandType == specified_zeros || b.spec.bandEdgeLoss <= asked.bandEdgeLoss);
}

TEST(Matching, LossAtZeroIsThatOfTheTerminations) {
    for (const char* passband : {"maximally_flat", "equal_ripple"}) {
        const FilterSpec s = request(passband, matching);
        const Built b = build(s);
        expect_matched(s, b);
        EXPECT_EQ(b.spec.degree % 2, 0);
        EXPECT_EQ(b.spec.unitElements, 0);

        FilterSpec given = request("specified_zeros", s);
        given.zerosAtInfinity = b.spec.degree - 2;
        const Built less = build(given);
        expect_matched(given, less);
        EXPECT_GT(less.spec.bandEdgeLoss, s.bandEdgeLoss) << "two zeros less miss the loss";

        given = request("zerosAtInfinity 4 FZR 0 300 FZI 2500 1900", given);
        expect_matched(given, build(given));

        for (const std::string medium : {"lumped", "microwave"}) {
            const FilterSpec stop = request(medium + " sampleFrequency 5000 upperStopEdge 2000 upperStopLoss 30", s);
            const Built m = build(stop);
            expect_matched(stop, m);
            EXPECT_GE(loss_at(m.xp, m.xp.upper_stop), 30);
            EXPECT_EQ(m.spec.unitElements > 0, medium == "microwave");
        }
    }
}

// Quarter-wave sections alone: eps2 = c^2/T_n^2(1/cos theta), the band even about the quarter-wave frequency.
TEST(Matching, SteppedLine) {
    const FilterSpec s =
        request("equal_ripple microwave sampleFrequency 4000 lowerPassEdge 1200 upperPassEdge 2800", matching);
    const Real b = 1 / std::cos(0.3L * std::numbers::pi_v<Real>);
    const Built three = build(s);
    expect_matched(s, three);
    EXPECT_EQ(three.spec.unitElements, 3);
    EXPECT_EQ(three.spec.filterType, high_pass);
    const Real chebyshev = 4 * b * b * b - 3 * b;
    EXPECT_LT(gap(three.xp.eps2 * chebyshev * chebyshev, 0.125L), 1e-15);
    EXPECT_EQ(build(request("lowerPassEdge 0", s)).xp.eps2, three.xp.eps2);

    FilterSpec flat = request("maximally_flat", s);
    const Built f = build(flat);
    expect_matched(flat, f);
    EXPECT_LT(gap(f.xp.eps2 * std::pow(b, 2.0L * f.spec.unitElements), 0.125L), 1e-15);
    flat.stopbandType = specified_zeros, flat.unitElements = f.spec.unitElements - 1;
    EXPECT_GT(build(flat).spec.bandEdgeLoss, 0.01);
}

TEST(Matching, Refusals) {
    expect_refusals(
        matching,
        {{"loadResistance 0", FrontFault::terminations_unfit},
         {"loadResistance 100 lowerPassEdge 50 equal_ripple", FrontFault::degree_too_high},
         {"loadResistance 10000 lowerPassEdge 50 microwave sampleFrequency 4000", FrontFault::degree_too_high},
         {"upperStopEdge 1510 upperStopLoss 300 bandEdgeLoss 0.12 equal_ripple", FrontFault::matching_not_needed},
         {"upperStopEdge 1400 upperStopLoss 20", FrontFault::stopband_incorrect}});
    // The mismatch alone loses less than the band edge may.
    EXPECT_EQ(build(request("loadResistance 1.01", matching)).spec.designError, 2);
}

}  // namespace
}  // namespace kavrel
