#include "numeric/guarded.h"

#include <complex>

#include <gtest/gtest.h>

#include "tests/numeric/random_sums.h"

namespace kavrel {
namespace {

using Z = Complex<double>;

void expect_near(Z got, std::complex<double> want, double relative) {
    EXPECT_NEAR(got.re, want.real(), relative * std::abs(want));
    EXPECT_NEAR(got.im, want.imag(), relative * std::abs(want));
}

Z random_number(RandomNumbers& random, double decades) {
    const double size = std::pow(10.0, random.between(-decades, decades));
    const double angle = random.between(-3.2, 3.2);
    return {size * std::cos(angle), size * std::sin(angle)};
}

TEST(Guarded, MagnitudeAndRootAgreeWithTheLibraryOverAllSizes) {
    RandomNumbers random(1);
    for (int i = 0; i < 2000; ++i) {
        const Z z = random_number(random, 150);
        const std::complex<double> peer(z.re, z.im);
        EXPECT_NEAR(cabs(z), std::abs(peer), 4e-16 * std::abs(peer));
        expect_near(csqrt(z), std::sqrt(peer), 1e-15);
    }
    EXPECT_EQ(cabs(0.0, 0.0), 0.0);
    EXPECT_EQ(cabs(3e300, -4e300), 5e300);
}

TEST(Guarded, RootOfANegativeNumberLiesOnThePositiveImaginaryAxis) {
    EXPECT_EQ(csqrt(-4.0, 0.0), (Z{0, 2}));
    EXPECT_EQ(csqrt(-4.0, -0.0), (Z{0, 2}));
    EXPECT_EQ(csqrt(4.0, 0.0), (Z{2, 0}));
    EXPECT_EQ(csqrt(0.0, 0.0), (Z{0, 0}));
    EXPECT_LT(csqrt(-4.0, -1e-300).im, 0);
}

TEST(Guarded, QuotientUndoesTheProduct) {
    RandomNumbers random(2);
    for (int i = 0; i < 2000; ++i) {
        const Z a = random_number(random, 18);
        const Z b = random_number(random, 18);
        const std::complex<double> want = std::complex<double>(a.re, a.im) / std::complex<double>(b.re, b.im);
        if (std::abs(want) > 1e36 || std::abs(want) < 1e-36) continue;
        expect_near(cdiv(a, b), want, 1e-15);
        expect_near(b * cdiv(a, b), {a.re, a.im}, 2e-15);
    }
}

TEST(Guarded, QuotientAtTheEndsOfItsReach) {
    const Z infinite{1e38, 1e38};
    EXPECT_EQ(cdiv(Z{1, 2}, Z{0, 0}), infinite);
    EXPECT_EQ(cdiv(Z{1, 0}, Z{0, 0}), infinite);
    EXPECT_EQ(cdiv(Z{0, 0}, Z{0, 0}), (Z{0, 0}));
    // int(log10) truncates towards 0: 1e37 over 1 is 37 decades, 9e36 over 1 is 36.
    EXPECT_EQ(cdiv(Z{1.1e37, 0}, Z{1, 0}), infinite);
    EXPECT_EQ(cdiv(Z{9e36, 0}, Z{1, 0}), (Z{9e36, 0}));
    EXPECT_EQ(cdiv(Z{1.1e-37, 0}, Z{1, 0}), (Z{1.1e-37, 0}));
    EXPECT_EQ(cdiv(Z{0.9e-38, 0}, Z{1, 0}), (Z{0, 0}));
    EXPECT_EQ(cdiv(Z{1e200, 0}, Z{1, 0}, solver_decades), (Z{1e200, 0}));
    EXPECT_EQ(cinv(0.0, 0.0), infinite);
}

TEST(Guarded, ReflectionLeavesTheUnitDiskAlone) {
    EXPECT_EQ(reflectIntoUnitCircle(Z{0.6, -0.8}), (Z{0.6, -0.8}));
    EXPECT_EQ(reflectIntoUnitCircle(Z{0, 4}), (Z{0, -0.25}));
    RandomNumbers random(3);
    for (int i = 0; i < 200; ++i) {
        const Z z = random_number(random, 5);
        const Z inside = reflectIntoUnitCircle(z);
        EXPECT_LE(cabs(inside), 1.0 + 1e-15);
        if (cabs(z) > 1) expect_near(inside * z, 1.0, 1e-15);
    }
}

TEST(Guarded, QuadraticHasTheSumAndTheProductOfItsRoots) {
    RandomNumbers random(4);
    for (int i = 0; i < 1000; ++i) {
        const double a1 = random.between(-3, 3);
        const double a0 = random.between(-3, 3) * std::pow(10.0, random.between(-8, 0));
        const auto [r1, r2] = rootsOfQuadratic(a1, a0);
        expect_near(r1 * r2, a0, 1e-15 + 1e-15);
        EXPECT_NEAR((r1 + r2).re, -a1, 1e-15 * (cabs(r1) + cabs(r2)));
        if (r1.im == 0) {
            EXPECT_GE(r1.re, r2.re);  // h + r first
        } else {
            EXPECT_GT(r1.im, 0);
            EXPECT_EQ(r2, conjugate(r1));
        }
        const auto [i1, i2] = rootsOfQuadratic(a1, a0, true);
        EXPECT_LE(std::max(cabs(i1), cabs(i2)), 1 + 1e-15);
    }
    EXPECT_EQ(rootsOfQuadratic(0.0, 0.0).first, (Z{0, 0}));
    // x^2 - 2e8 x + 1: h - r alone would give 0 digits of the small root.
    EXPECT_NEAR(rootsOfQuadratic(-2e8, 1.0).second.re, 5e-9, 1e-23);
}

TEST(Guarded, RootDifferenceSolvesItsQuadratic) {
    RandomNumbers random(5);
    for (int i = 0; i < 500; ++i) {
        const Z z = random_number(random, 3);
        const Z c = random_number(random, 3);
        const auto [plus, minus] = csqrtDifference(z.re, z.im, c.re, c.im);
        expect_near(plus * minus, {c.re, c.im}, 3e-15);
        EXPECT_NEAR((plus + minus - 2.0 * z).re, 0, 1e-15 * (cabs(plus) + cabs(minus)));
        EXPECT_NEAR((plus + minus - 2.0 * z).im, 0, 1e-15 * (cabs(plus) + cabs(minus)));
        EXPECT_GE(csqrt(z * z - c).re, 0);
        const auto [first, second] = csqrtDifference(z.re, z.im, c.re, c.im, true);
        EXPECT_LE(std::max(cabs(first), cabs(second)), 1 + 1e-15);
    }
}

}  // namespace
}  // namespace kavrel
