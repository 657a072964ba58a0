// The variable x: edges, zeros there and back, Freal, given functions.
#include <cmath>
#include <complex>
#include <numbers>

#include <gtest/gtest.h>

#include "approximation/frequency_variable.h"
#include "tests/approximation/characteristic_build.h"

namespace kavrel {
namespace {

using Real = XPlane::Real;
using Point = std::complex<Real>;

constexpr Real pi = std::numbers::pi_v<Real>;

FilterSpec request_of(FilterType type, Medium medium = lumped) {
    FilterSpec s = request(
        "lowerPassEdge 800 upperPassEdge 1000 lowerStopEdge 600 upperStopEdge 1300 bandEdgeLoss 0.1 stopbandLoss 30 "
        "upperStopLoss 30");
    s.filterType = type;
    s.medium = medium;
    s.sampleFrequency = medium == lumped ? 0 : 5000;
    return s;
}

TEST(FrequencyVariable, HighPassIsALowPassTurnedOver) {
    const FilterSpec elliptic = request("equal_ripple equal_minima bandEdgeLoss 0.5 stopbandLoss 45");
    const FilterSpec high = request("high_pass lowerPassEdge 100 lowerStopEdge 50", elliptic);
    const Built h = build(high), l = build(request("upperPassEdge 100 upperStopEdge 200", elliptic));
    EXPECT_EQ(h.spec.degree, l.spec.degree);
    EXPECT_EQ(h.xp.ARR, l.xp.ARR);
    EXPECT_EQ(h.xp.FS.re, l.xp.FS.re);
    EXPECT_EQ(h.spec.upperStopEdge, 200);
    for (int i = 1; i <= h.xp.zeroCount; ++i) EXPECT_NEAR(h.spec.FZI(i) * l.spec.FZI(i), 1e4, 1e-10);

    const Built b = build(request("specified_zeros zerosAtZero 3", high));
    EXPECT_EQ(b.spec.zerosAtInfinity, 3);
    EXPECT_EQ(b.spec.zerosAtZero, 0);
    EXPECT_EQ(b.spec.lowerPassEdge, 0);
    EXPECT_EQ(b.spec.upperPassEdge, 100);
}

TEST(FrequencyVariable, PlacesOfTheBands) {
    EXPECT_EQ(x_of_frequency(0, 0.25L), 0.25L);
    EXPECT_EQ(x_of_frequency(0.5L, 0.25L), 0);
    EXPECT_LT(x_of_frequency(0.7L, 0.25L), 0);
    EXPECT_GT(x_of_frequency(1.5L, 0.25L), 1);
    EXPECT_EQ(x_of_frequency(0, 0), 0);
    EXPECT_LT(gap(x_of_frequency(1e12L, 0), 1), 1e-18);
}

TEST(FrequencyVariable, EdgesOfWarpedMedia) {
    const Real theta = pi / 5000;
    for (const auto medium : {sampled_data, microwave}) {
        const Built b = build(request_of(band_pass, medium));
        EXPECT_TRUE(b.notes.preshifted);
        EXPECT_LT(gap(std::sqrt(b.xp.a), std::tan(theta * 800) / std::tan(theta * 1000)), 1e-16);
        for (const double hertz : {400.0, 800.0, 900.0, 1300.0}) {
            const Real w = normalised_frequency(b.spec, b.xp, hertz);
            EXPECT_LT(gap(w, std::tan(theta * hertz) / std::tan(theta * 1000)), 1e-16);
            EXPECT_LT(gap(true_frequency(b.spec, b.xp, w), hertz), 1e-12);
        }
        EXPECT_LT(gap(b.spec.upperStopEdge / 1000, b.xp.upper_stop), 1e-15) << "warped once";
    }
    // Unit elements have S = 1: in x of the low-pass cos^2 theta.
    const Real s = std::sin(theta * 1000), c = std::cos(theta * 1000);
    EXPECT_LT(gap(build(request_of(low_pass, microwave)).xp.ueX, c * c), 1e-15);
    // A placed design has its edges mapped already.
    const Built placed = build(request("runFlag -1", request_of(band_pass, microwave)));
    EXPECT_FALSE(placed.notes.preshifted);
    EXPECT_LT(gap(placed.xp.a, 0.64L), 1e-16);
    EXPECT_LT(gap(placed.xp.ueX, 0.64L * s * s + c * c), 1e-15);
}

// f -> x -> f, and for warped media against tanh of the complex frequency.
TEST(FrequencyVariable, ZerosThereAndBack) {
    for (const auto type : {low_pass, high_pass, band_pass}) {
        for (const auto medium : {lumped, sampled_data, microwave}) {
            FilterSpec s = request("FZR 0 0 250 100 40 -70 FZI 1500 300 0 1200 950 2000", request_of(type, medium));
            XPlane xp;
            FrontNotes notes;
            ASSERT_TRUE(normaliseEdges(s, xp, notes).good());
            zerosToX(s, xp);
            FilterSpec back = s;
            back.FZR = {}, back.FZI = {};
            zerosToFrequency(back, xp);
            for (int i = 1; i <= s.zeroCount; ++i) {
                const Point f(s.FZR(i), s.FZI(i));
                const Real scale = pi / 5000, edge = type == high_pass ? 800 : 1000;
                Point p = medium == lumped ? f / edge : std::tanh(scale * f) / std::tan(scale * edge);
                if (type == high_pass) p = Real{1} / p;
                const Point x = (p * p + xp.a) / (p * p + Real{1});
                EXPECT_LT(std::abs(x - Point(xp.ARR(i), x.imag() < 0 ? -xp.ARI(i) : xp.ARI(i))), 1e-17L * std::abs(x));
                EXPECT_EQ(xp.ARI(i) == 0, s.FZR(i) == 0 || s.FZI(i) == 0);
                EXPECT_GE(xp.ARI(i), 0);
                EXPECT_NEAR(back.FZR(i), std::fabs(s.FZR(i)), 1e-11) << type << ' ' << medium;
                EXPECT_NEAR(back.FZI(i), s.FZI(i), 1e-11);
            }
            EXPECT_EQ(overall_degree(s, xp), 3 * 2 + 3 * 4 + s.zerosAtZero + s.zerosAtInfinity);
        }
    }
}

TEST(FrequencyVariable, Freal) {
    FilterSpec s = request("specified_zeros zerosAtZero 2 zerosAtInfinity 3", request_of(band_pass));
    Built b = build(s);
    EXPECT_TRUE(b.notes.reset_to_parametric) << "odd";
    EXPECT_EQ(b.spec.bandpassType, parametric);
    EXPECT_LT(gap(b.xp.xReal, 0.8L), 1e-16) << "sqrt a";
    EXPECT_NEAR(b.spec.freal, std::sqrt(8e5), 1e-10);

    s = request("parametric freal 500", s);
    b = build(s);
    EXPECT_FALSE(b.notes.reset_to_parametric);
    EXPECT_LT(gap(b.xp.xReal, (0.64L + 0.25L) / 1.25L), 1e-16);
    EXPECT_EQ(b.spec.freal, 500) << "outside the pass band, kept";

    // Odd number of unit elements: xReal moves, and Freal with it; entered again it gives the same point.
    s = request("microwave sampleFrequency 5000 unitElements 1 zerosAtInfinity 2 zerosAtZero 1", s);
    b = build(s);
    EXPECT_TRUE(b.notes.freal_modified);
    const Real ratio = normalised_frequency(b.spec, b.xp, b.spec.freal);
    EXPECT_LT(gap((b.xp.a + ratio * ratio) / (1 + ratio * ratio), b.xp.xReal), 1e-15);
    b = build(request("zerosAtInfinity 3 zerosAtZero 2", s));
    EXPECT_LT(gap(b.xp.xReal, std::sqrt(b.xp.ueX)), 1e-18);
}

Point factor_product(const Table<double, factor_limit>& t, int degree, Point s) {
    Point p = 1;
    for (int i = 2; i <= degree; i += 2) p *= s * s + Real{t(i - 1)} * s + Real{t(i)};
    return degree % 2 == 1 ? p * (s + Real{t(degree)}) : p;
}

// K = mult f/q is the same function after the inversion.
TEST(FrequencyVariable, HighPassInvertsGivenFactors) {
    const FilterSpec before = request(
        "functional_passband specified_zeros functionMultiplier 0.7 numeratorFactors 0.4 1.3 0 2 0.9 "
        "FZR 0 100 FZI 400 500",
        request_of(high_pass));
    FilterSpec s = before;
    XPlane xp;
    FrontNotes notes;
    ASSERT_TRUE(normaliseEdges(s, xp, notes).good());
    const Point p(0.3L, 1.7L);
    const auto zeros = [&](Point v, bool inverted) {
        Point q = 1;
        for (int i = 1; i <= 2; ++i) {
            Point z(Real{before.FZR(i)} / 800, Real{before.FZI(i)} / 800);
            if (inverted) z = Real{1} / z;
            q *= v * v - z * z;
            if (i == 2) q *= v * v - std::conj(z * z);
        }
        return q;
    };
    // Both degrees are brought to 6 by powers of s' = 1/s: q of degree 6 leaves s'^6/s'^5.
    const Point original =
        Real{before.functionMultiplier} * factor_product(before.numeratorFactors, 5, p) / zeros(p, false);
    const Point turned =
        Real{s.functionMultiplier} * factor_product(s.numeratorFactors, 5, Real{1} / p) / zeros(Real{1} / p, true) / p;
    EXPECT_LT(gap(std::abs(original / turned), 1), 1e-14);

    s = before, s.numeratorFactors(2) = 0;
    EXPECT_EQ(build(s).verdict.fault, FrontFault::polynomial_incomplete) << "a root at zero would lower the degree";
}

TEST(FrequencyVariable, RescalingMovesPolesAndEdgesAlike) {
    for (const auto type : {low_pass, high_pass, band_pass}) {
        const Built b = build(request(
            "functional_passband specified_zeros zerosAtInfinity 1 zerosAtZero 1 denominatorFactors 1 9 2 FZI 1700",
            request_of(type)));
        ASSERT_TRUE(b.verdict.good());
        const bool high = type == high_pass;
        // The poles as given: s^2 + s + 9, of the inverted high-pass the larger pole is 1/2.
        EXPECT_TRUE(b.notes.rescaled);
        const Real before = high ? 800 : 1000, p = high ? 1.1L / 4 : 0.9L * 9;
        EXPECT_LT(gap(b.xp.normFrequency, before * std::pow(p, high ? -0.5L : 0.5L)), 1e-10);
        EXPECT_LT(gap(b.spec.denominatorFactors(2), (high ? 1.0L / 9 : 9) / p), 1e-14);
        const Real w = 1700 / b.xp.normFrequency;
        EXPECT_LT(gap(b.xp.ARR(1), x_of_frequency(high ? 1 / w : w, b.xp.a)), 1e-14);
        FilterSpec again = b.spec;
        XPlane same = b.xp;
        FrontNotes notes;
        EXPECT_FALSE(rescaleForPrecision(again, same, notes)) << "once is enough";
    }
}

TEST(FrontMessages, EachFaultHasOneRow) {
    for (const FrontMessage& m : front_messages) EXPECT_EQ(&messageOf(m.fault), &m);
}

}  // namespace
}  // namespace kavrel
