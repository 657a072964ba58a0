// Q and F against closed forms at 60 digits, and the properties that make them what they are.
#include <cmath>
#include <fstream>
#include <random>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "approximation/characteristic.h"
#include "approximation/frequency_variable.h"
#include "numeric/guarded.h"
#include "numeric/scaled_value.h"
#include "numeric/sum_roots.h"
#include "tests/approximation/characteristic_build.h"

namespace kavrel {
namespace {

using Real = XPlane::Real;
using Cell = Complex<Real>;

FilterSpec low_pass_of(int n, PassbandType passband, int symmetry = -1, double loss = 0.1) {
    FilterSpec s = request("specified_zeros upperPassEdge 1000");
    s.bandEdgeLoss = loss;
    s.passbandType = passband;
    s.zerosAtInfinity = n;
    s.symmetryFlag = symmetry;
    return s;
}

// A request of the golden file, whose line begins with the fields in the order of the script.
struct GoldenCase {
    FilterSpec spec;
    int points = 0;
    Table<double, 20> hertz;
    Table<Real, 20> squared;
};

std::istream& operator>>(std::istream& in, GoldenCase& g) {
    FilterSpec& s = g.spec;
    in >> s.filterType >> s.passbandType >> s.bandpassType >> s.medium >> s.symmetryFlag >> s.lowerPassEdge >>
        s.upperPassEdge >> s.bandEdgeLoss >> s.sampleFrequency >> s.freal >> s.zerosAtZero >> s.zerosAtInfinity >>
        s.unitElements >> s.zeroCount;
    for (int i = 1; i <= s.zeroCount; ++i) in >> s.FZR(i) >> s.FZI(i);
    in >> g.points;
    for (int i = 1; i <= g.points; ++i) in >> g.hertz(i) >> g.squared(i);
    s.stopbandType = specified_zeros;
    return in;
}

template <class Use>
int for_golden_cases(Use use) {
    std::ifstream file(TEST_DATA "/approximation/characteristic_function_golden.txt");
    int count = 0;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream in(line);
        GoldenCase g;
        in >> g;
        SCOPED_TRACE(line.substr(0, 120));
        const Built b = build(g.spec);
        EXPECT_TRUE(b.verdict.good()) << b.verdict.fault;
        use(g, b);
        ++count;
    }
    return count;
}

TEST(CharacteristicFunction, AgreesWithClosedForms) {
    const int count = for_golden_cases([&](const GoldenCase& g, const Built& b) {
        for (int i = 1; i <= g.points; ++i) {
            const Real x = x_of_frequency(normalised_frequency(b.spec, b.xp, g.hertz(i)), b.xp.a);
            const Real error = std::fabs(squared_characteristic(b.xp, x) - g.squared(i));
            // Far off a narrow band x itself, rounded, lies close to the roots a and 1 of Q.
            EXPECT_LT(error / (std::fabs(g.squared(i)) + b.xp.eps2), x < 0 ? 1e-16L : 1e-14L) << g.hertz(i);
        }
    });
    EXPECT_EQ(count, 240);
}

Cell value(const WideRootSet& set, Cell x) {
    const ScaledValue<Real> v = scaledProduct(set, x);
    return shifted(v.value, v.exponent);
}

// n even: F = fEven^2 - (x - a)(1 - x) fOdd^2; n odd: F = (x - a) fOdd^2 - (1 - x) fEven^2.
TEST(CharacteristicFunction, FactorsMakeF) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> part(-2, 2);
    for_golden_cases([&](const GoldenCase&, const Built& b) {
        for (int k = 1; k <= 5; ++k) {
            const Cell x{part(random), part(random)};
            const Cell even = value(b.xp.fEven, x), odd = value(b.xp.fOdd, x);
            const Cell low = x - Cell{b.xp.a, 0}, high = Cell{1, 0} - x;
            const Cell sum =
                b.spec.degreeParity == 0 ? even * even - low * high * odd * odd : low * odd * odd - high * even * even;
            const Cell f = value(b.xp.FS, x);
            EXPECT_LT(cabs(sum - f), 1e-16L * cabs(f));
        }
        EXPECT_EQ(b.xp.FS.count, b.spec.degree);
        EXPECT_EQ(b.xp.QS.count, b.spec.degree);
    });
}

// Both edges exactly. An equal ripple band has one maximum between neighbouring double roots of F, and it is eps2; with
// a parametric point of even degree it may stay a little below that.
TEST(CharacteristicFunction, PassBandKeepsItsLoss) {
    for_golden_cases([](const GoldenCase& g, const Built& b) {
        const bool band = g.spec.filterType == band_pass;
        EXPECT_LT(gap(loss_at(b.xp, 1), g.spec.bandEdgeLoss), 1e-15);
        if (band) {
            EXPECT_LT(gap(squared_characteristic(b.xp, Real{0}) / b.xp.eps2, 1), 1e-16);
        }
        if (g.spec.passbandType == maximally_flat) return;

        const bool parametric_point = band && b.spec.bandpassType != conventional;
        const WideRootSet& half = b.spec.degreeParity == 1 ? b.xp.fOdd : b.xp.fEven;
        for (int i = 1; i < half.count && half.re(i + 1) < 0; ++i) {
            Real from = std::log(std::fmax(-half.re(i), -1e-9L * half.re(i + 1))), to = std::log(-half.re(i + 1));
            const auto ripple = [&](Real t) { return squared_characteristic(b.xp, -std::exp(t)) / b.xp.eps2; };
            for (int step = 1; step <= 60; ++step) {
                const Real u = from + (to - from) / 3, v = to - (to - from) / 3;
                const bool rising = ripple(u) < ripple(v);
                (rising ? from : to) = rising ? u : v;
            }
            EXPECT_LT(parametric_point ? static_cast<double>(ripple(from) - 1) : 1e9 * gap(ripple(from), 1), 1e-6) << i;
        }
    });
}

// The same roots come out of the sum A(y) + A(-y).
TEST(CharacteristicFunction, RippleRootsAreThoseOfTheSum) {
    SumWorkspace ws;
    for (const int n : {3, 8, 17, 50}) {
        FilterSpec s = low_pass_of(n % 2 + 2, equal_ripple);
        s.zeroCount = (n - n % 2 - 2) / 2;
        for (int i = 1; i <= s.zeroCount; ++i) s.FZI(i) = 1000 * (1 + 0.01 * i * i);
        const Built b = build(s);
        WideRootSet plus, minus, sum;
        plus.multiplier = minus.multiplier = 1;
        for (int i = 1; i <= n; ++i) {
            const Cell m = csqrt(b.xp.QS.root(i));
            plus.append(-m);
            minus.append(conjugate(m));
        }
        ASSERT_TRUE(solveSum(plus, minus, sum, ws).good());
        const WideRootSet& half = n % 2 == 1 ? b.xp.fOdd : b.xp.fEven;
        for (int i = 1; i <= half.count; ++i) {
            const Real square = -sum.im(2 * i + n % 2) * sum.im(2 * i + n % 2);
            EXPECT_LT(gap(half.re(i) / square, 1), 1e-17) << n << ' ' << i;
        }
    }
}

TEST(CharacteristicFunction, KnownFilters) {
    // eps2 1: the Butterworth function.
    for (const int n : {1, 2, 7, 50}) {
        const Built b = build(low_pass_of(n, maximally_flat, -1, 10 * std::log10(2.0)));
        EXPECT_LT(gap(b.xp.eps2, 1), 1e-15);
        EXPECT_EQ(b.xp.FS.count, n);
        EXPECT_EQ(b.xp.FS.re, WideRootSet{}.re) << "an n-fold root 0";
        EXPECT_LT(gap(loss_at(b.xp, 2), 10 * std::log10(1 + std::pow(4.0, n))), 1e-12);
    }
    // Chebyshev: eps2 T_n^2(w).
    for (const int n : {1, 2, 5, 50}) {
        const Built b = build(low_pass_of(n, equal_ripple));
        for (const double w : {0.123, 0.9, 1.7}) {
            const double t = w < 1 ? std::cos(n * std::acos(w)) : std::cosh(n * std::acosh(w));
            const double expected = 10 * std::log10(1 + (std::pow(10, 0.01) - 1) * t * t);
            EXPECT_LT(gap(loss_at(b.xp, w), expected), 1e-13 * (1 + expected)) << n << ' ' << w;
        }
    }
}

TEST(CharacteristicFunction, TerminationLimit) {
    const double eps2 = std::pow(10, 0.01) - 1;
    const double limit = std::pow(std::sqrt(1 + eps2) + std::sqrt(eps2), 2);
    EXPECT_LT(gap(build(low_pass_of(4, equal_ripple, 0)).xp.termRatioLimit, limit), 1e-14);
    EXPECT_EQ(build(low_pass_of(5, equal_ripple, 0)).xp.termRatioLimit, 1);
    EXPECT_EQ(build(low_pass_of(4, maximally_flat, 0)).xp.termRatioLimit, 1);

    // Equal terminations: no loss at zero, zeros moved and reported.
    const Built b = build(request("FZI 1400 2000", low_pass_of(2, equal_ripple, 1)));
    EXPECT_TRUE(b.notes.zeros_shifted);
    EXPECT_EQ(b.xp.termRatioLimit, 1);
    EXPECT_EQ(loss_at(b.xp, 0), 0);
    EXPECT_GT(std::fabs(b.spec.FZI(1) - 1400), 1);
    EXPECT_GT(loss_at(b.xp, normalised_frequency(b.spec, b.xp, b.spec.FZI(1))), 200);
    EXPECT_FALSE(build(low_pass_of(4, equal_ripple, 1)).notes.zeros_shifted) << "there is none to report";
}

TEST(CharacteristicFunction, WhatIsRefused) {
    // On an edge, within the rounding of its frequency, and just off it.
    const struct {
        double zero;
        FrontFault fault;
    } beside_edges[] = {{1000, FrontFault::ripple_roots_missing},
                        {std::nextafter(1000.0, 2000.0), FrontFault::ripple_roots_missing},
                        {1000.000001, FrontFault::none},
                        {700, FrontFault::ripple_roots_missing},
                        {std::nextafter(700.0, 0.0), FrontFault::ripple_roots_missing},
                        {699.999999, FrontFault::none}};
    for (const char* medium : {"lumped", "sampled_data sampleFrequency 5000"}) {
        FilterSpec near = request(std::string("band_pass lowerPassEdge 700 zerosAtZero 3 FZI 0 ") + medium,
                                  low_pass_of(3, equal_ripple));
        for (const auto& row : beside_edges) {
            near.FZI(1) = row.zero;
            EXPECT_EQ(build(near).verdict.fault, row.fault) << row.zero << ' ' << medium;
        }
    }
    // One zero alone cannot have two edges, nor a zero the band edge; and the largest parametric band-passes.
    const FilterSpec band = request("band_pass lowerPassEdge 900", low_pass_of(0, equal_ripple));
    constexpr auto out_of_range = FrontFault::parametric_root_out_of_range;
    expect_refusals(band, {{"zerosAtZero 1", out_of_range},
                           {"zerosAtZero 1 maximally_flat", out_of_range},
                           {"zerosAtZero 1 zerosAtInfinity 3 lowerPassEdge 0", FrontFault::cutoff_missing},
                           {"zerosAtZero 24 zerosAtInfinity 25 parametric", FrontFault::none},
                           {"zerosAtZero 24 zerosAtInfinity 26 parametric", FrontFault::none},
                           {"zerosAtZero 24 zerosAtInfinity 27 parametric", FrontFault::degree_too_high, 51}});
}

}  // namespace
}  // namespace kavrel
