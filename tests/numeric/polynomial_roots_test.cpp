// Polynomials made of known roots, and one whose roots are known by their symmetry.
#include "numeric/polynomial_roots.h"

#include <cmath>

#include <gtest/gtest.h>

namespace kavrel {
namespace {

using Number = Complex<LongReal>;

std::vector<LongReal> expanded(const std::vector<Number>& halves) {
    std::vector<LongReal> c{LongReal(1)};
    for (const Number& half : halves) {
        const bool pair = half.im != 0;
        const LongReal c1 = (pair ? -2 : -1) * half.re, c2 = half.re * half.re + half.im * half.im;
        c.resize(c.size() + (pair ? 2 : 1), LongReal(0));
        for (std::size_t k = c.size() - 1; k >= 1; --k) {
            c[k] += c1 * c[k - 1];
            if (pair && k >= 2) c[k] += c2 * c[k - 2];
        }
    }
    return c;
}

TEST(PolynomialRoots, AreThoseThatThePolynomialWasMadeOf) {
    const std::vector<std::vector<Number>> cases = {
        {},
        {{-3, 0}},
        {{2, 1}},
        {{-2, 0}, {5, 0}, {1, 3}},
        {{LongReal("-1e25"), 0}, {LongReal("-1e-25"), 0}, {7, 0}, {LongReal("1e-9"), LongReal("1e-3")}},
        {{LongReal(1), LongReal("1e-7")}, {LongReal("1.0000001"), LongReal("1e-7")}, {100, LongReal("0.5")}},
    };
    for (const auto& halves : cases) {
        std::vector<Number> roots;
        ASSERT_TRUE(polynomial_roots(expanded(halves), roots));
        ASSERT_EQ(roots.size(), halves.size());
        for (std::size_t i = 0; i < halves.size(); ++i) {
            const LongReal off = abs(roots[i].re - halves[i].re) + abs(roots[i].im - halves[i].im);
            EXPECT_LT(static_cast<double>(LongReal(off / (abs(halves[i].re) + abs(halves[i].im)))), 1e-50);
        }
    }
}

// The samples of t^(n - 1): all roots are real and negative, and each goes with its reciprocal.
TEST(PolynomialRoots, OfEulerianPolynomials) {
    std::vector<LongReal> c{LongReal(1)};
    for (int n = 2; n <= 40; ++n) {
        std::vector<LongReal> next(static_cast<std::size_t>(n), LongReal(0));
        for (int k = 0; k < n; ++k) {
            const auto at = static_cast<std::size_t>(k);
            next[at] = (k < n - 1 ? LongReal((k + 1) * c[at]) : LongReal(0)) +
                       (k > 0 ? LongReal((n - k) * c[at - 1]) : LongReal(0));
        }
        c = next;
        std::vector<Number> roots;
        ASSERT_TRUE(polynomial_roots(c, roots)) << n;
        ASSERT_EQ(roots.size(), c.size() - 1) << n;
        for (std::size_t i = 0; i < roots.size(); ++i) {
            EXPECT_TRUE(roots[i].im == 0 && roots[i].re < 0);
            const LongReal product = roots[i].re * roots[roots.size() - 1 - i].re;
            EXPECT_LT(static_cast<double>(LongReal(abs(product - 1))), 1e-50) << n;
        }
    }
}

}  // namespace
}  // namespace kavrel
