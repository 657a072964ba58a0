#include "numeric/root_set.h"

#include <cmath>

#include <gtest/gtest.h>

#include "numeric/guarded.h"
#include "numeric/root_order.h"
#include "numeric/scaled_value.h"
#include "tests/numeric/golden_roots.h"
#include "tests/numeric/random_sums.h"

namespace kavrel {
namespace {

using namespace testing;

void expect_pairs_together(const WideRootSet& set, int first) {
    for (int i = first; i + 1 <= set.count && set.im(i) != 0; i += 2) {
        EXPECT_GT(set.im(i), 0);
        EXPECT_EQ(set.root(i + 1), conjugate(set.root(i)));
    }
}

TEST(RootSet, ExpandsToBinomialsAndElementarySums) {
    WideRootSet flat = set_of(3, {});
    for (int i = 1; i <= 50; ++i) flat.append({-1, 0});
    const Polynomial p = expandRoots(flat);
    double binomial = 3;
    for (int k = 0; k <= 50; ++k) {
        EXPECT_NEAR(static_cast<double>(p.re(k + 1)), binomial, 1e-14 * binomial) << k;
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

TEST(ScaledProduct, HasTheValueOfThePolynomialAndItsDerivative) {
    RandomNumbers random(1);
    for (int k = 0; k < 300; ++k) {
        const WideRootSet set = random_set(random, random.integer(1, 20), 1, 0.4);
        const Z x{random.between(-9, 9), random.between(-9, 9)};
        Z value{set.multiplier, 0}, poles{};
        for (int i = 1; i <= set.count; ++i) {
            value *= x - set.root(i);
            poles += cinv((x - set.root(i)).re, (x - set.root(i)).im);
        }
        const ScaledValue<Wide> product = scaledProduct(set, x);
        EXPECT_EQ(shifted(product.value, product.exponent), value);
        const ScaledPair<Wide> pair = scaledProductAndDerivative(set, x);
        EXPECT_EQ(shifted(pair.value, pair.exponent), value);
        const Z derivative = value * poles;
        EXPECT_LE(cabs(shifted(pair.derivative, pair.exponent) - derivative), 1e-15L * cabs(value) * (1 + cabs(poles)));
    }
    EXPECT_EQ(scaledProduct(set_of(7, {}), Z{3, 4}).value, (Z{7, 0}));
    EXPECT_EQ(scaledProductAndDerivative(set_of(7, {}), Z{3, 4}).derivative, Z{});
}

TEST(ScaledProduct, KeepsItsDigitsBeyondTheRangeOfTheType) {
    RootSet set;
    set.multiplier = 1;
    for (int i = 1; i <= 25; ++i) set.append({1e-20, 0});
    for (int i = 1; i <= 25; ++i) set.append({1e20, 0});
    // (2e-20)^25 (1e20)^25 = -2^25, passing through 1e-493
    const ScaledValue<double> p = scaledProduct(set, {3e-20, 0});
    EXPECT_NEAR(shifted(p.value, p.exponent).re, -0x1p25, 1e-6);
    const ScaledPair<double> q = scaledProductAndDerivative(set, {3e-20, 0});
    EXPECT_NEAR(shifted(q.value, q.exponent).re, -0x1p25, 1e-6);
    const ScaledValue<double> far = scaledProduct(set, {1e30, 0});
    EXPECT_NEAR(std::log2(far.value.re) + far.exponent, 50 * 30 * std::log2(10.0), 1e-6);
}

TEST(RootOrder, MovesRealsAndKeepsPairs) {
    WideRootSet set = set_of(2, {{3, 4}, {3, -4}, {1, 0}, {0, 2}, {0, -2}, {-7, 0}, {-1, 0}});
    const auto expect_order = [&](std::initializer_list<Z> want) {
        int i = 0;
        for (const Z z : want) EXPECT_EQ(set.root(++i), z) << i;
    };
    EXPECT_EQ(sortConjugates(set, Reals::first), 3);
    expect_order({{-7, 0}, {-1, 0}, {1, 0}, {0, 2}, {0, -2}, {3, 4}, {3, -4}});
    EXPECT_EQ(sortConjugates(set, Reals::last), 3);
    expect_order({{0, 2}, {0, -2}, {3, 4}, {3, -4}, {-7, 0}, {-1, 0}, {1, 0}});
}

// All on one circle, with real roots between the pairs: exchanges over a distance would tear the pairs apart.
TEST(RootOrder, KeepsPairsOfEqualMagnitudeTogether) {
    RandomNumbers random(6);
    for (int k = 0; k < 200; ++k) {
        WideRootSet set;
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
        const WideRootSet set = random_set(random, random.integer(0, 50), 0.5, 0.4);
        const QuadraticFactor f = factorsOf(set);
        ASSERT_EQ(f.count, (set.count + 1) / 2);
        const Wide x = random.between(-1, 1);
        Wide product = f.multiplier;
        for (int i = 1; i <= set.count / 2; ++i) product *= (x + f.a1(i)) * x + f.a0(i);
        if (set.count % 2 == 1) product *= x + f.a1(f.count);
        const ScaledValue<Wide> want = scaledProduct(set, {x, 0});
        EXPECT_LE(std::fabs(product / shifted(want.value, want.exponent).re - 1), 1e-14L);
    }
    const QuadraticFactor single = factorsOf(set_of(5, {{-2, 0}}));
    EXPECT_EQ(single.count, 1);
    EXPECT_EQ(single.a1(1), 2);
    EXPECT_EQ(single.a0(1), 0);
    const QuadraticFactor circle = factorsOf(set_of(1, {{-0.6L, 0.8L}, {-0.6L, -0.8L}, {-0.8L, 0.6L}, {-0.8L, -0.6L}}));
    EXPECT_EQ(circle.a1(1), 1.6L) << "of equal magnitude the larger real part first";
    EXPECT_EQ(factorsOf(set_of(1, {{4e-11, 3}, {4e-11, -3}})).a1(1), 0);
}

}  // namespace
}  // namespace kavrel
