// Arithmetic of long numbers: exact identities on random ones, and roots of a polynomial with a close pair.
#include "synthesis/long_real.h"

#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "synthesis/long_roots.h"

namespace kavrel {
namespace {

LongReal random_number(std::mt19937_64& random) {
    std::uniform_real_distribution<long double> digits(-1, 1);
    std::uniform_int_distribution<int> power(-200, 200);
    LongReal x = 0;
    for (int part = 0; part < 8; ++part) x += shifted(LongReal{digits(random)}, -60 * part);
    return shifted(x, power(random));
}

TEST(LongReal, KeepsItsDigits) {
    std::mt19937_64 random(3);
    for (int turn = 0; turn < 2000; ++turn) {
        const LongReal x = random_number(random);
        const LongReal y = random_number(random);
        const LongReal z = random_number(random);
        const auto close = [](const LongReal& p, const LongReal& q, const LongReal& size) {
            return abs(p - q) <= abs(size) * 1e-152L;
        };
        EXPECT_TRUE(close(x / y * y, x, x));
        EXPECT_TRUE(close((x + y) * (x - y), x * x - y * y, x * x + y * y));
        EXPECT_TRUE(close((x + y) + z, x + (y + z), abs(x) + abs(y) + abs(z)));
        EXPECT_TRUE(close(sqrt(abs(x)) * sqrt(abs(x)), abs(x), x));
        EXPECT_EQ((x - x).sign(), 0);
        EXPECT_EQ(x<y, (y - x).sign()> 0);
        // Rounded to the rough type the operations are the rough type's own.
        const long double a = rounded(x), b = rounded(y);
        EXPECT_NEAR(static_cast<double>(rounded(LongReal{a} * b) / (a * b)), 1, 1e-18);
        EXPECT_NEAR(static_cast<double>(rounded(LongReal{a} / b) / (a / b)), 1, 1e-18);
    }
    EXPECT_FALSE(is_finite(LongReal{1} / LongReal{0}));
    EXPECT_FALSE(is_finite(sqrt(LongReal{-1})));
    EXPECT_EQ(sqrt(LongReal{0}), LongReal{0});
    EXPECT_FALSE(LongReal{1} / LongReal{0} < LongReal{1});
}

// (x - 1)^2 - h^2, h = 1e-60, times (x + 2)(x - 3): started from 1 twice.
TEST(LongReal, RootsOfAClosePair) {
    LongReal h = 1e-30L;
    h *= h;
    const auto value = [&](const LongReal& x) { return ((x - 1) * (x - 1) - h * h) * (x + 2) * (x - 3) * 5; };
    Table<LongReal, 4> root;
    root(1) = 1.0L + 1e-10L, root(2) = 1.0L, root(3) = -2.00001L, root(4) = 3.0000001L;
    ASSERT_TRUE(refine_real_roots(root, 4, LongReal{5}, value));
    EXPECT_NEAR(static_cast<double>(rounded(abs(root(1) - root(2)) / h)), 2, 1e-25);
    EXPECT_LT(rounded(abs(root(3) + 2)), 1e-140L);
    EXPECT_LT(rounded(abs(root(4) - 3)), 1e-140L);
    // A pair off the axis is not taken for real.
    const auto complex = [](const LongReal& x) { return (x - 1) * (x - 1) + LongReal{1e-12L}; };
    Table<LongReal, 4> none;
    none(1) = 1.0L, none(2) = 1.0000001L;
    EXPECT_FALSE(refine_real_roots(none, 2, LongReal{1}, complex));
}

}  // namespace
}  // namespace kavrel
