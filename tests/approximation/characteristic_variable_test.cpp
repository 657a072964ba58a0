// The variable x: edges, zeros there and back, Freal, given functions, the checks of a request.
#include <cmath>
#include <complex>
#include <random>

#include <gtest/gtest.h>

#include "approximation/frequency_variable.h"
#include "tests/approximation/characteristic_build.h"

namespace kavrel {
namespace {

using Real = XPlane::Real;
using Point = std::complex<Real>;

FilterSpec request_of(FilterType type, Medium medium = lumped) {
    FilterSpec s;
    s.filterType = type;
    s.medium = medium;
    s.sampleFrequency = medium == lumped ? 0 : 5000;
    s.lowerPassEdge = 800, s.upperPassEdge = 1000;
    s.lowerStopEdge = 600, s.upperStopEdge = 1300;
    s.bandEdgeLoss = 0.1, s.stopbandLoss = s.upperStopLoss = 30;
    return s;
}

TEST(FrequencyVariable, HighPassIsALowPassTurnedOver) {
    FilterSpec high, low;
    high.filterType = high_pass, high.lowerPassEdge = 100, high.lowerStopEdge = 50;
    low.upperPassEdge = 100, low.upperStopEdge = 200;
    for (FilterSpec* s : {&high, &low}) {
        s->bandEdgeLoss = 0.5, s->stopbandLoss = 45, s->passbandType = equal_ripple, s->stopbandType = equal_minima;
    }
    const Built h = build(high), l = build(low);
    EXPECT_EQ(h.spec.degree, l.spec.degree);
    EXPECT_EQ(h.xp.ARR, l.xp.ARR);
    EXPECT_EQ(h.xp.FS.re, l.xp.FS.re);
    EXPECT_EQ(h.spec.upperStopEdge, 200);
    for (int i = 1; i <= h.xp.zeroCount; ++i) EXPECT_NEAR(h.spec.FZI(i) * l.spec.FZI(i), 1e4, 1e-10);

    high.stopbandType = specified_zeros, high.zerosAtZero = 3, high.zerosAtInfinity = 0;
    const Built b = build(high);
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
    EXPECT_NEAR(static_cast<double>(x_of_frequency(1e12L, 0)), 1, 1e-18);
}

TEST(FrequencyVariable, EdgesOfWarpedMedia) {
    const Real theta = 3.14159265358979323846264L / 5000;
    for (const auto medium : {sampled_data, microwave}) {
        const Built b = build(request_of(band_pass, medium));
        EXPECT_TRUE(b.notes.preshifted);
        EXPECT_NEAR(static_cast<double>(std::sqrt(b.xp.a)),
                    static_cast<double>(std::tan(theta * 800) / std::tan(theta * 1000)), 1e-16);
        for (const double hertz : {400.0, 800.0, 900.0, 1300.0}) {
            const Real w = normalised_frequency(b.spec, b.xp, hertz);
            EXPECT_NEAR(static_cast<double>(w), static_cast<double>(std::tan(theta * hertz) / std::tan(theta * 1000)),
                        1e-16);
            EXPECT_NEAR(static_cast<double>(true_frequency(b.spec, b.xp, w)), hertz, 1e-12);
        }
        EXPECT_NEAR(b.spec.upperStopEdge / 1000, static_cast<double>(b.xp.upper_stop), 1e-15) << "warped once";
    }
    // Unit elements have S = 1: in x of the low-pass cos^2 theta.
    const Built low = build(request_of(low_pass, microwave));
    EXPECT_NEAR(static_cast<double>(low.xp.ueX), std::pow(std::cos(static_cast<double>(theta) * 1000), 2), 1e-15);
    // A placed design has its edges mapped already.
    FilterSpec placed = request_of(band_pass, microwave);
    placed.runFlag = -1;
    const Built b = build(placed);
    EXPECT_FALSE(b.notes.preshifted);
    EXPECT_NEAR(static_cast<double>(b.xp.a), 0.64, 1e-16);
    const Real s = std::sin(theta * 1000), c = std::cos(theta * 1000);
    EXPECT_NEAR(static_cast<double>(b.xp.ueX), static_cast<double>(0.64L * s * s + c * c), 1e-15);
}

// f -> x -> f, and for warped media against tanh of the complex frequency.
TEST(FrequencyVariable, ZerosThereAndBack) {
    for (const auto type : {low_pass, high_pass, band_pass}) {
        for (const auto medium : {lumped, sampled_data, microwave}) {
            FilterSpec s = request_of(type, medium);
            const double zeros[][2] = {{0, 1500}, {0, 300}, {250, 0}, {100, 1200}, {40, 950}, {-70, 2000}};
            for (const auto& z : zeros) ++s.zeroCount, s.FZR(s.zeroCount) = z[0], s.FZI(s.zeroCount) = z[1];
            XPlane xp;
            FrontNotes notes;
            ASSERT_TRUE(normaliseEdges(s, xp, notes).good());
            zerosToX(s, xp);
            for (int i = 1; i <= s.zeroCount; ++i) {
                const Point f(s.FZR(i), s.FZI(i));
                const Real scale = 3.14159265358979323846264L / 5000, edge = type == high_pass ? 800 : 1000;
                Point p = medium == lumped ? f / edge : std::tanh(scale * f) / std::tan(scale * edge);
                if (type == high_pass) p = Real{1} / p;
                const Point x = (p * p + xp.a) / (p * p + Real{1});
                EXPECT_LT(std::abs(x - Point(xp.ARR(i), x.imag() < 0 ? -xp.ARI(i) : xp.ARI(i))), 1e-17L * std::abs(x));
                EXPECT_EQ(xp.ARI(i) == 0, s.FZR(i) == 0 || s.FZI(i) == 0);
                EXPECT_GE(xp.ARI(i), 0);
            }
            FilterSpec back = s;
            back.FZR = {}, back.FZI = {};
            zerosToFrequency(back, xp);
            for (int i = 1; i <= s.zeroCount; ++i) {
                EXPECT_NEAR(back.FZR(i), std::fabs(s.FZR(i)), 1e-11) << type << ' ' << medium;
                EXPECT_NEAR(back.FZI(i), s.FZI(i), 1e-11);
            }
            EXPECT_EQ(overall_degree(s, xp), 3 * 2 + 3 * 4 + s.zerosAtZero + s.zerosAtInfinity);
        }
    }
}

TEST(FrequencyVariable, Freal) {
    FilterSpec s = request_of(band_pass);
    s.stopbandType = specified_zeros, s.zerosAtZero = 2, s.zerosAtInfinity = 3;
    Built b = build(s);
    EXPECT_TRUE(b.notes.reset_to_parametric) << "odd";
    EXPECT_EQ(b.spec.bandpassType, parametric);
    EXPECT_NEAR(static_cast<double>(b.xp.xReal), 0.8, 1e-16) << "sqrt a";
    EXPECT_NEAR(b.spec.freal, std::sqrt(8e5), 1e-10);

    s.bandpassType = parametric, s.freal = 500;
    b = build(s);
    EXPECT_FALSE(b.notes.reset_to_parametric);
    EXPECT_NEAR(static_cast<double>(b.xp.xReal), (0.64 + 0.25) / 1.25, 1e-16);
    EXPECT_EQ(b.spec.freal, 500) << "outside the pass band, kept";

    // Odd number of unit elements: xReal moves, and Freal with it; entered again it gives the same point.
    s.medium = microwave, s.sampleFrequency = 5000, s.unitElements = 1, s.zerosAtInfinity = 2, s.zerosAtZero = 1;
    b = build(s);
    EXPECT_TRUE(b.notes.freal_modified);
    const Real ratio = normalised_frequency(b.spec, b.xp, b.spec.freal);
    EXPECT_NEAR(static_cast<double>((b.xp.a + ratio * ratio) / (1 + ratio * ratio)), static_cast<double>(b.xp.xReal),
                1e-15);
    s.zerosAtInfinity = 3, s.zerosAtZero = 2;
    b = build(s);
    EXPECT_NEAR(static_cast<double>(b.xp.xReal), static_cast<double>(std::sqrt(b.xp.ueX)), 1e-18);
}

Point factor_product(const Table<double, factor_limit>& t, int degree, Point s) {
    Point p = 1;
    for (int i = 2; i <= degree; i += 2) p *= s * s + Real{t(i - 1)} * s + Real{t(i)};
    return degree % 2 == 1 ? p * (s + Real{t(degree)}) : p;
}

// K = mult f/q is the same function after the inversion.
TEST(FrequencyVariable, HighPassInvertsGivenFactors) {
    FilterSpec s = request_of(high_pass);
    s.passbandType = functional_passband, s.stopbandType = specified_zeros, s.functionMultiplier = 0.7;
    s.numeratorDegree = 5;
    const double factors[] = {0.4, 1.3, 0.0, 2.0, 0.9};
    for (int i = 1; i <= 5; ++i) s.numeratorFactors(i) = factors[i - 1];
    s.zeroCount = 2, s.FZI(1) = 400, s.FZR(2) = 100, s.FZI(2) = 500;
    const FilterSpec before = s;
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
    EXPECT_NEAR(static_cast<double>(std::abs(original / turned)), 1, 1e-14);

    s = before, s.numeratorFactors(2) = 0;
    EXPECT_EQ(build(s).verdict.fault, FrontFault::polynomial_incomplete) << "a root at zero would lower the degree";
}

TEST(FrequencyVariable, RescalingMovesPolesAndEdgesAlike) {
    for (const auto type : {low_pass, high_pass, band_pass}) {
        FilterSpec s = request_of(type);
        s.passbandType = functional_passband, s.stopbandType = specified_zeros, s.zerosAtInfinity = s.zerosAtZero = 1;
        s.denominatorDegree = 3;
        s.denominatorFactors(1) = 1.0, s.denominatorFactors(2) = 9.0, s.denominatorFactors(3) = 2.0;
        s.zeroCount = 1, s.FZI(1) = 1700;
        const Built b = build(s);
        ASSERT_TRUE(b.verdict.good());
        const bool high = type == high_pass;
        // The poles as given: s^2 + s + 9, of the inverted high-pass the larger pole is 1/2.
        EXPECT_TRUE(b.notes.rescaled);
        const Real before = high ? 800 : 1000, p = high ? 1.1L / 4 : 0.9L * 9;
        EXPECT_NEAR(static_cast<double>(b.xp.normFrequency),
                    static_cast<double>(before * std::pow(p, high ? -0.5L : 0.5L)), 1e-10);
        const Real pole2 = high ? 1.0L / 9 : 9;
        EXPECT_NEAR(b.spec.denominatorFactors(2), static_cast<double>(pole2 / p), 1e-14);
        const Real w = 1700 / b.xp.normFrequency;
        EXPECT_NEAR(static_cast<double>(b.xp.ARR(1)), static_cast<double>(x_of_frequency(high ? 1 / w : w, b.xp.a)),
                    1e-14);
        FilterSpec again = b.spec;
        XPlane same = b.xp;
        FrontNotes notes;
        EXPECT_FALSE(rescaleForPrecision(again, same, notes)) << "once is enough";
    }
}

TEST(FrequencyVariable, ChecksOfTheRequest) {
    const auto fault = [](auto change, FilterType type = low_pass) {
        FilterSpec s = request_of(type);
        change(s);
        return build(s).verdict.fault;
    };
    EXPECT_EQ(fault([](FilterSpec& s) { s.filterType = FilterType{5}; }), FrontFault::filter_type_incorrect);
    EXPECT_EQ(fault([](FilterSpec& s) { s.upperPassEdge = 0; }), FrontFault::cutoff_missing);
    EXPECT_EQ(fault([](FilterSpec& s) { s.lowerPassEdge = 0; }), FrontFault::none);
    EXPECT_EQ(fault([](FilterSpec& s) { s.lowerPassEdge = 1000; }, band_pass), FrontFault::edges_equal);
    EXPECT_EQ(fault([](FilterSpec& s) { s.lowerPassEdge = 1100; }, band_pass), FrontFault::cutoff_missing);
    EXPECT_EQ(fault([](FilterSpec& s) { s.medium = sampled_data, s.sampleFrequency = 1900; }),
              FrontFault::cutoff_missing);
    EXPECT_EQ(fault([](FilterSpec& s) { s.bandEdgeLoss = 0; }), FrontFault::band_edge_loss_missing);
    EXPECT_EQ(fault([](FilterSpec& s) { s.passbandType = PassbandType{4}; }), FrontFault::passband_incorrect);
    EXPECT_EQ(fault([](FilterSpec& s) { s.stopbandType = StopbandType{3}; }), FrontFault::stopband_incorrect);
    EXPECT_EQ(fault([](FilterSpec& s) { s.passbandType = functional_passband; }), FrontFault::polynomial_incomplete);
    for (const FrontMessage& m : front_messages) EXPECT_EQ(&messageOf(m.fault), &m) << "each fault has one row";
}

}  // namespace
}  // namespace kavrel
