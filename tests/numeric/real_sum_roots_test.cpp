#include "numeric/real_sum_roots.h"

#include <algorithm>
#include <array>

#include <gtest/gtest.h>

#include "tests/numeric/golden_roots.h"
#include "tests/numeric/random_sums.h"

namespace kavrel {
namespace {

using namespace testing;

RealRootSet reals(Wide multiplier, std::initializer_list<Wide> roots) {
    RealRootSet set;
    set.multiplier = multiplier;
    for (const Wide r : roots) set.append(r);
    return set;
}

// Two products whose roots take turns: every combination of them has real roots only.
struct Interlaced {
    RealRootSet A, B;
};
Interlaced random_interlaced(RandomNumbers& random, int degree, int kind) {
    std::array<double, 2 * max_real_degree> place{};
    for (double& p : place) p = -std::pow(10.0, random.between(-2, 2));
    std::sort(place.begin(), place.begin() + 2 * degree);
    Interlaced sets;
    for (int i = 0; i < degree; ++i) {
        sets.A.append(place[static_cast<std::size_t>(2 * i)]);
        if (kind != 1 || i + 1 < degree) sets.B.append(place[static_cast<std::size_t>(2 * i + 1)]);
    }
    sets.A.multiplier = 1;
    sets.B.multiplier = kind == 3 ? -1 : (kind == 2 ? -1 : 1) * std::pow(10.0, random.between(-2, 2));
    return sets;
}

TEST(SolveRealSum, FindsEveryRootOfInterlacedSums) {
    RandomNumbers random(7);
    for (int k = 0; k < 1000; ++k) {
        const int kind = k % 4;
        const int degree = 1 + k / 4 % max_real_degree;
        const Interlaced s = random_interlaced(random, degree, kind);
        RealRootSet R;
        RealSumWorkspace ws;
        ASSERT_TRUE(solveRealSum(s.A, s.B, R, ws).good()) << k;
        ASSERT_EQ(R.count, degree - (kind == 3 ? 1 : 0));
        EXPECT_TRUE(std::is_sorted(R.root.begin(), R.root.begin() + R.count));

        WideRootSet found;
        for (int i = 1; i <= R.count; ++i) found.append({R.root(i), 0});
        const Wide error = proven_error(found, [&](Z x) {
            ValueAndSlope sum{};
            for (const RealRootSet* set : {&s.A, &s.B}) {
                Wide p = set->multiplier, slope = 0;
                for (int i = 1; i <= set->count; ++i) {
                    slope = slope * (x.re - set->root(i)) + p;
                    p *= x.re - set->root(i);
                }
                sum.value.re += p;
                sum.slope.re += slope;
            }
            return sum;
        });
        EXPECT_LE(error, 3e-15L) << k;
    }
}

TEST(SolveRealSum, CommonAndVanishingTerms) {
    const struct {
        const char* what;
        RealRootSet A, B, sum;
    } cases[] = {
        {"(x + 1)(x + 3) - (x + 1)(x + 5) = -2 (x + 1)", reals(1, {-3, -1}), reals(-1, {-1, -5}), reals(-2, {-1})},
        {"(x + 1)(x + 2) - (x + 4)(x + 1/2) = -1.5 x", reals(1, {-1, -2}), reals(-1, {-4, -0.5}), reals(-1.5, {0})},
        {"2 (x + 1)(x + 3) + 4 (x + 2.5)", reals(2, {-1, -3}), reals(4, {-2.5}), reals(2, {-4, -2})},
        {"the other way round", reals(4, {-2.5}), reals(2, {-1, -3}), reals(2, {-4, -2})},
        {"the whole sum vanishes", reals(2, {1, 2}), reals(-2, {2, 1}), reals(0, {})},
        {"a multiplier 0 leaves the other product", reals(0, {1}), reals(3, {4, -4}), reals(3, {-4, 4})},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        RealRootSet R;
        RealSumWorkspace ws;
        ASSERT_TRUE(solveRealSum(c.A, c.B, R, ws).good());
        EXPECT_EQ(R.multiplier, c.sum.multiplier);
        ASSERT_EQ(R.count, c.sum.count);
        for (int i = 1; i <= R.count; ++i) EXPECT_EQ(R.root(i), c.sum.root(i));
    }
}

TEST(SolveRealSum, RefusesHighDegreeAndComplexRoots) {
    RealRootSet R = reals(5, {6});
    RealSumWorkspace ws;
    RealRootSet large = reals(1, {});
    large.count = 26;
    SolveVerdict verdict = solveRealSum(large, R, R, ws);
    EXPECT_EQ(verdict.fault, SolveFault::real_degree_too_high);
    EXPECT_EQ(verdict.number, 26);
    // (x + 2)(x^2 + 1), the first root being common
    verdict = solveRealSum(reals(1, {-2, 0, 0}), reals(1, {-2}), R, ws);
    EXPECT_EQ(verdict.fault, SolveFault::real_no_convergence);
    EXPECT_EQ(verdict.number, 2);
    EXPECT_EQ(R.root(1), 6);
    // (x - 1)^2 - 1/4 is begun where it is lowest: no step leads on, and none is taken for a root.
    EXPECT_EQ(solveRealSum(reals(1, {1, 1}), reals(-0.25, {}), R, ws).fault, SolveFault::real_no_convergence);
    const SolveMessage& message = messageOf(verdict.fault);
    EXPECT_EQ(message.first, " **** No convergence of root no.");
    EXPECT_EQ(message.after_number, " ****");
}

}  // namespace
}  // namespace kavrel
