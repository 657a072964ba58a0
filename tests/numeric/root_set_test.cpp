#include "numeric/root_set.h"

#include <initializer_list>

#include <gtest/gtest.h>

#include "numeric/guarded.h"
#include "numeric/root_order.h"
#include "numeric/scaled_value.h"
#include "tests/numeric/random_sums.h"

namespace kavrel {
namespace {

using testing::random_set;
using testing::RandomNumbers;
using Z = Complex<double>;

RootSet set_of(double multiplier, std::initializer_list<Z> roots) {
    RootSet set;
    set.multiplier = multiplier;
    for (const Z z : roots) set.append(z);
    return set;
}

void expect_pairs_together(const RootSet& set, int first) {
    for (int i = first; i + 1 <= set.count && set.im(i) != 0; i += 2) {
        EXPECT_GT(set.im(i), 0);
        EXPECT_EQ(set.root(i + 1), conjugate(set.root(i)));
    }
}

TEST(RootSet, ExpandsToBinomialsAndElementarySums) {
    RootSet flat;
    flat.multiplier = 3;
    for (int i = 1; i <= 50; ++i) flat.append({-1, 0});
    const Polynomial p = expandRoots(flat);
    double binomial = 3;
    for (int k = 0; k <= 50; ++k) {
        EXPECT_NEAR(p.re(k + 1), binomial, 1e-14 * binomial) << k;
        binomial = binomial * (50 - k) / (k + 1);
    }

    // 2 (x - 1)(x^2 + 4) = 2 x^3 - 2 x^2 + 8 x - 8
    const Polynomial q = expandRoots(set_of(2, {{1, 0}, {0, 2}, {0, -2}}));
    const double want[] = {2, -2, 8, -8};
    for (int k = 1; k <= 4; ++k) {
        EXPECT_EQ(q.re(k), want[k - 1]);
        EXPECT_EQ(q.im(k), 0);
    }
    EXPECT_EQ(q.degree, 3);
}

TEST(RootSet, ScaledProductsAreTheTrueOnesDividedOncePerFactor) {
    RandomNumbers random(1);
    for (int k = 0; k < 300; ++k) {
        const RootSet set = random_set(random, random.integer(1, 20), 1, 0.4);
        const Z x{random.between(-9, 9), random.between(-9, 9)};
        const int e = scaleExponent(cabs(x));
        EXPECT_EQ(e, static_cast<int>(std::floor(std::log2(cabs(x) + 1))));
        const Z value = evalRootSet(set, x.re, x.im, 0);
        const Z scaled = evalRootSet(set, x.re, x.im, e);
        EXPECT_EQ(std::ldexp(scaled.re, e * set.count), value.re);

        // derivative = value sum 1/(x - r), without the multiplier
        Z sum{};
        for (int i = 1; i <= set.count; ++i) sum += cinv((x - set.root(i)).re, (x - set.root(i)).im);
        const Z want = (1 / set.multiplier) * (value * sum);
        const Z derivative = sumOfProductsDerivative(set, x.re, x.im, 0);
        EXPECT_LE(cabs(derivative - want), 1e-12 * cabs(value) / std::fabs(set.multiplier) * sum_of_parts(sum));
        const Z scaled_derivative = sumOfProductsDerivative(set, x.re, x.im, e);
        EXPECT_EQ(std::ldexp(scaled_derivative.im, e * (set.count - 1)), derivative.im);

        const ScaledPair<double> pair = scaledProductAndDerivative(set, x);
        EXPECT_EQ(shifted(pair.value, pair.exponent), value);
        EXPECT_LE(cabs(shifted(pair.derivative, pair.exponent) - set.multiplier * derivative),
                  1e-12 * cabs(set.multiplier * derivative) + 1e-12 * cabs(value));
    }
    EXPECT_EQ(evalRootSet(set_of(7, {}), 3.0, 4.0, 2), (Z{7, 0}));
    EXPECT_EQ(sumOfProductsDerivative(set_of(7, {}), 3.0, 4.0, 2), (Z{0, 0}));
}

TEST(RootSet, ProductsBeyondTheRangeOfDoublesKeepTheirDigits) {
    RootSet set;
    set.multiplier = 1;
    for (int i = 1; i <= 25; ++i) set.append({1e-20, 0});
    for (int i = 1; i <= 25; ++i) set.append({1e20, 0});
    // (2e-20)^25 (1e20)^25 = -2^25, passing through 1e-493
    const ScaledValue<double> p = scaledProduct(set, Z{3e-20, 0});
    EXPECT_NEAR(shifted(p.value, p.exponent).re, -0x1p25, 1e-6);
    const ScaledPair<double> q = scaledProductAndDerivative(set, Z{3e-20, 0});
    EXPECT_NEAR(shifted(q.value, q.exponent).re, -0x1p25, 1e-6);
    const ScaledValue<double> far = scaledProduct(set, Z{1e30, 0});
    EXPECT_NEAR(std::log2(far.value.re) + far.exponent, 50 * 30 * std::log2(10.0), 1e-6);
}

TEST(RootOrder, MovesRealsAndKeepsPairs) {
    RootSet set = set_of(2, {{3, 4}, {3, -4}, {1, 0}, {0, 2}, {0, -2}, {-7, 0}, {-1, 0}});
    EXPECT_EQ(sortConjugates(set, Reals::first), 3);
    EXPECT_EQ(set.root(1), (Z{-7, 0}));
    EXPECT_EQ(set.root(3), (Z{1, 0}));
    EXPECT_EQ(set.root(4), (Z{0, 2}));
    EXPECT_EQ(set.root(7), (Z{3, -4}));

    RootSigns LARR;
    for (int i = 1; i <= 7; ++i) LARR(i) = i;
    EXPECT_EQ(sortConjugates(set, Reals::last, LARR), 3);
    EXPECT_EQ(set.root(1), (Z{0, 2}));
    EXPECT_EQ(set.root(5), (Z{-7, 0}));
    const int want[] = {4, 5, 6, 7, 1, 2, 3};
    for (int i = 1; i <= 7; ++i) EXPECT_EQ(LARR(i), want[i - 1]);
}

// All on one circle, with real roots between the pairs: exchanges over a distance would tear the pairs apart.
TEST(RootOrder, KeepsPairsOfEqualMagnitudeTogether) {
    RandomNumbers random(6);
    for (int k = 0; k < 200; ++k) {
        RootSet set;
        while (set.count < 19) {
            const double angle = random.between(0.1, 3.0);
            const double size = random.coin() ? 1 : 0.5;
            if (random.integer(0, 3) == 0) {
                set.append({random.coin() ? size : -size, 0});
            } else {
                set.append({size * std::cos(angle), size * std::sin(angle)});
                set.append(conjugate(set.root(set.count)));
            }
        }
        sortByMagnitude(set);
        for (int i = 2; i <= set.count; ++i) EXPECT_LE(cabs(set.root(i - 1)), cabs(set.root(i)));
        const int reals = sortConjugates(set, Reals::first);
        for (int i = 2; i <= reals; ++i) EXPECT_LE(set.re(i - 1), set.re(i));
        expect_pairs_together(set, reals + 1);
        sortConjugates(set, Reals::last);
        expect_pairs_together(set, 1);
    }
}

TEST(QuadraticFactors, MultiplyBackToTheSet) {
    RandomNumbers random(8);
    for (int k = 0; k < 200; ++k) {
        const RootSet set = random_set(random, random.integer(0, 50), 0.5, 0.4);
        const QuadraticFactor f = factorsOf(set);
        ASSERT_EQ(f.count, (set.count + 1) / 2);
        const double x = random.between(-1, 1);
        double product = f.multiplier;
        for (int i = 1; i <= set.count / 2; ++i) product *= (x + f.a1(i)) * x + f.a0(i);
        if (set.count % 2 == 1) product *= x + f.a1(f.count);
        const double want = evalRootSet(set, x, 0.0, 0).re;
        EXPECT_NEAR(product, want, 1e-12 * std::fabs(want));
    }
    const QuadraticFactor single = factorsOf(set_of(5, {{-2, 0}}));
    EXPECT_EQ(single.count, 1);
    EXPECT_EQ(single.a1(1), 2);
    EXPECT_EQ(single.a0(1), 0);
    EXPECT_EQ(factorsOf(set_of(1, {{4e-11, 3}, {4e-11, -3}})).a1(1), 0);
}

TEST(RootSet, RemovesTheFirstRootWithinReach) {
    RootSet set = set_of(3, {{0.5, 0}, {2e-9, 0}, {5e-9, 0}, {1e6, 0}});
    EXPECT_EQ(removeRoot(set, 4e-9, 0.0), 0);  // the floor of 1e-8 takes the neighbour, which stands first
    ASSERT_EQ(set.count, 3);
    EXPECT_EQ(set.re(2), 5e-9);
    EXPECT_EQ(removeRoot(set, 1e6 + 1e-3, 0.0), -1);
    EXPECT_EQ(removeRoot(set, 1e6 + 1e-3, 0.0, 8), 0);
    EXPECT_EQ(removeRoot(set, 0.5, 1e-7), -1);
    EXPECT_EQ(removeRoot(set, 0.5, 1e-9), 0);
    EXPECT_EQ(set.count, 1);
    EXPECT_EQ(set.multiplier, 3);
    RootSet empty;
    EXPECT_EQ(removeRoot(empty, 0.0, 0.0), -1);
}

}  // namespace
}  // namespace kavrel
