#include "numeric/sum_roots.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "tests/numeric/golden_roots.h"
#include "tests/numeric/random_sums.h"

namespace kavrel {
namespace {

using namespace testing;

WideRootSet sum_of(const WideRootSet& A, const WideRootSet& B, SolveOptions options = {}) {
    WideRootSet R;
    SumWorkspace ws;
    EXPECT_TRUE(solveSum(A, B, R, ws, options).good());
    return R;
}

// A + B and its derivative: no line of it is the solver's.
struct SumAt {
    const WideRootSet& A;
    const WideRootSet& B;

    ValueAndSlope operator()(Z x) const {
        const auto [a, da] = product(A, x);
        const auto [b, db] = product(B, x);
        return {a + b, da + db};
    }
    static ValueAndSlope product(const WideRootSet& set, Z x) {
        ValueAndSlope p{{set.multiplier, 0}, {}};
        for (int i = 1; i <= set.count; ++i) {
            p.slope = p.slope * (x - set.root(i)) + p.value;
            p.value *= x - set.root(i);
        }
        return p;
    }
};

TEST(SolveSum, AgreesWithManyDigits) {
    std::ifstream in = golden_file("sum_roots.txt");
    std::string word, name;
    int sums = 0;
    while (in >> word) {
        ASSERT_EQ(word, "sum");
        std::getline(in, name);
        SCOPED_TRACE(name);
        WideRootSet sets[2];
        for (WideRootSet& set : sets) {
            double multiplier = 0, re = 0, im = 0;  // the roots are those of the doubles
            int count = 0;
            in >> word >> multiplier >> count;
            set.multiplier = multiplier;
            while (set.count < count && in >> re >> im) set.append({re, im});
        }
        const GoldenSet golden = read_golden_set(in);
        expect_golden(sum_of(sets[0], sets[1]), golden, 2e-18L);
        expect_golden(sum_of(sets[0], sets[1], {.precisionDigits = 19}), golden, 2e-18L);
        ++sums;
    }
    EXPECT_EQ(sums, 35);
}

// 2,000 sums, each proved by disjoint Newton disks. Leading terms that cancel lose digits with their difference.
TEST(SolveSum, FindsEveryRootOfRandomSums) {
    for (int k = 0; k < sum_kinds * 400; ++k) {
        const auto kind = static_cast<SumKind>(k / 400);
        RandomNumbers random(static_cast<unsigned>(100 + k));
        const RandomSum s = random_sum(random, kind, 1 + k % 50);
        const WideRootSet R = sum_of(s.A, s.B);
        const bool one_less =
            kind == SumKind::Cancelling || (kind == SumKind::Mirrored && s.A.multiplier * s.B.multiplier < 0);
        ASSERT_EQ(R.count, std::max(s.A.count, s.B.count) - (one_less ? 1 : 0)) << k;
        // Where the leading coefficients cancel inexactly, the roots are those of the sum without that rest.
        EXPECT_LE(proven_error(R, SumAt{s.A, s.B}), kind == SumKind::Cancelling ? 1e-12L : 2e-15L) << k;
        for (int i = 2; i <= R.count; ++i) EXPECT_LE(cabs(R.root(i - 1)), cabs(R.root(i)));
    }
}

// A = (x + 1)^n, B = -(x - 1)^n has the roots j cot(pi i/n).
TEST(SolveSum, FindsTheRootsOfChebyshev) {
    for (const int n : {2, 5, 10, 25, 50}) {
        WideRootSet A = set_of(1, {}), B = set_of(-1, {});
        for (int i = 1; i <= n; ++i) A.append({-1, 0}), B.append({1, 0});
        const WideRootSet R = sum_of(A, B);
        ASSERT_EQ(R.count, n - 1);
        EXPECT_NEAR(static_cast<double>(R.multiplier), 2.0 * n, 1e-15 * n);
        for (int i = 1; i <= R.count; ++i) {
            EXPECT_EQ(R.re(i), 0);
            const Wide turns = std::atan2(1.0L, R.im(i)) * n / std::acos(-1.0L);
            EXPECT_LE(std::fabs(turns - std::round(turns)), 2e-16L);
        }
    }
}

// E = F + Q, then F = E - Q again: the roots of F come back, the n-fold one at 0 exactly.
TEST(SolveSum, TakesTheOtherTermAwayAgain) {
    for (const int n : {3, 12, 31, 50}) {
        WideRootSet F = set_of(0.5, {}), Q = set_of(n % 2 == 0 ? 1 : -1, {});
        for (int i = 1; i <= n; ++i) F.append({0, 0}), Q.append({i % 3 == 0 ? 1.5 : 1, 0});
        const WideRootSet E = sum_of(F, Q);
        Q.multiplier = -Q.multiplier;
        const WideRootSet back = sum_of(E, Q);
        ASSERT_EQ(back.count, n);
        EXPECT_NEAR(static_cast<double>(back.multiplier), 0.5, 1e-15);
        for (int i = 1; i <= n; ++i) EXPECT_EQ(back.root(i), Z{}) << n;
    }
}

TEST(SolveSum, CancellingAndVanishingTerms) {
    const WideRootSet A = set_of(2, {{1, 0}, {0, 2}, {0, -2}, {-3, 0}});
    const struct {
        const char* what;
        WideRootSet A, B, sum;
        double tolerance = 0;
    } cases[] = {
        {"the whole sum vanishes", A, set_of(-2, {{1, 0}, {0, 2}, {0, -2}, {-3, 0}}), set_of(0, {})},
        {"every root is common", A, A, set_of(4, {{1, 0}, {0, 2}, {0, -2}, {-3, 0}})},
        {"x + 1", set_of(1, {{0, 0}}), set_of(1, {}), set_of(1, {{-1, 0}})},
        {"the second coefficients cancel but for the rounding of 0.1 + 0.2 - 0.3",
         set_of(1, {{0.1, 0}, {0.2, 0}, {-0.3, 0}}), set_of(-1, {{-0.1, 0}, {-0.4, 0}, {0.5, 0}}),
         set_of(0.14, {{-0.026 / 0.14, 0}}), 1e-13},
        {"-1 + (1 - x^2), a double root at the origin", set_of(-1, {}), set_of(-1, {{1, 0}, {-1, 0}}),
         set_of(-1, {{0, 0}, {0, 0}})},
        {"a multiplier 0 leaves the other product", set_of(0, {{5, 0}}), A, A},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const WideRootSet R = sum_of(c.A, c.B);
        ASSERT_EQ(R.count, c.sum.count);
        EXPECT_NEAR(static_cast<double>(R.multiplier), static_cast<double>(c.sum.multiplier), c.tolerance);
        for (int i = 1; i <= R.count; ++i) EXPECT_LE(cabs(R.root(i) - c.sum.root(i)), c.tolerance) << i;
    }
}

TEST(SolveSum, MaySolveInPlace) {
    WideRootSet A = set_of(1, {{-1, 0}, {-2, 0}});
    const WideRootSet B = set_of(3, {{-4, 0}});
    const WideRootSet want = sum_of(A, B);
    SumWorkspace ws;
    ASSERT_TRUE(solveSum(A, B, A, ws).good());
    ASSERT_EQ(A.count, 2);
    EXPECT_EQ(A.root(2), want.root(2));
}

TEST(SolveSum, AveragesNearPairsOnRequest) {
    // (x^2 + 1)^2 of two pairs 1e-4 apart
    const WideRootSet A = set_of(1, {{0, 1}, {0, -1}, {1e-4, 1}, {1e-4, -1}, {-5, 0}});
    const WideRootSet B = set_of(1e-12, {{2, 0}});
    const WideRootSet apart = sum_of(A, B);
    const WideRootSet together = sum_of(A, B, {.precisionDigits = 14, .symmetrize = true});
    ASSERT_EQ(together.count, 5);
    EXPECT_GT(std::fabs(apart.re(1) - apart.re(3)), 0.9e-4L);
    EXPECT_EQ(together.root(1), together.root(3));
    EXPECT_EQ(together.root(2), conjugate(together.root(1)));
    EXPECT_EQ(together.root(4), together.root(2));
    EXPECT_LE(std::fabs(together.re(1) - (apart.re(1) + apart.re(3)) / 2), 1e-12L);
    EXPECT_EQ(together.root(5), apart.root(5));
}

TEST(SolveSum, RefusesWhatItCannotSolveAndLeavesTheResultAlone) {
    WideRootSet large = set_of(1, {});
    large.count = 51;
    const Wide nan = std::numeric_limits<Wide>::quiet_NaN();
    const struct {
        WideRootSet A, B;
        SolveFault fault = SolveFault::no_convergence;
    } cases[] = {
        {large, set_of(1, {}), SolveFault::degree_too_high},
        {set_of(1, {}), large, SolveFault::degree_too_high},
        {set_of(1, {{0, 1}}), set_of(1, {})},  // x - j + 1: a complex root without its conjugate
        {set_of(1, {{nan, 0}, {2, 0}}), set_of(1, {{3, 0}})},
        {set_of(nan, {{1, 0}}), set_of(1, {{3, 0}})},
        {set_of(1e4900L, {{1e300, 0}, {-1e305, 0}}), set_of(1, {{3, 0}})},
    };
    for (const auto& c : cases) {
        WideRootSet R = set_of(9, {{8, 0}});
        SumWorkspace ws;
        EXPECT_EQ(solveSum(c.A, c.B, R, ws).fault, c.fault);
        EXPECT_EQ(R.multiplier, 9);
        EXPECT_EQ(R.count, 1);
    }
    EXPECT_EQ(messageOf(SolveFault::no_convergence).first, " **** No convergence ****");
}

}  // namespace
}  // namespace kavrel
