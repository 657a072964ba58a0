// Roots of a polynomial in long numbers, a close pair among them.
#include "synthesis/long_roots.h"

#include <gtest/gtest.h>

namespace kavrel {
namespace {

// (x - 1)^2 - h^2, h = 1e-60, times (x + 2)(x - 3): started from 1 twice.
TEST(LongRoots, OfAClosePair) {
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
