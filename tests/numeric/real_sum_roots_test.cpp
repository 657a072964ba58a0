#include "numeric/real_sum_roots.h"

#include <algorithm>
#include <array>

#include <gtest/gtest.h>

#include "tests/numeric/golden_roots.h"
#include "tests/numeric/random_sums.h"

namespace kavrel {
namespace {

using namespace testing;

RealRootSet set_of(double multiplier, std::initializer_list<double> roots) {
    RealRootSet set;
    set.multiplier = multiplier;
    for (const double r : roots) set.append(r);
    return set;
}

// Two products whose roots take turns: every combination of them has real roots only.
struct Interlaced {
    RealRootSet A;
    RealRootSet B;
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

template <class Work>
void expect_all_right(long double bound) {
    RandomNumbers random(7);
    for (int k = 0; k < 1000; ++k) {
        const int kind = k % 4;
        const int degree = 1 + k / 4 % max_real_degree;
        const Interlaced s = random_interlaced(random, degree, kind);
        RealRootSet R;
        RealSumWorkspace<Work> ws;
        ASSERT_TRUE(solveRealSum(s.A, s.B, R, ws).good()) << k;
        ASSERT_EQ(R.count, degree - (kind == 3 ? 1 : 0));
        EXPECT_TRUE(std::is_sorted(R.root.begin(), R.root.begin() + R.count));

        RootSet found;
        for (int i = 1; i <= R.count; ++i) found.append({R.root(i), 0});
        const long double error = proven_error(found, [&](Complex<long double> x) {
            ValueAndSlope sum{};
            for (const RealRootSet* set : {&s.A, &s.B}) {
                long double p = set->multiplier, slope = 0;
                for (int i = 1; i <= set->count; ++i) {
                    slope = slope * (x.re - set->root(i)) + p;
                    p *= x.re - set->root(i);
                }
                sum.value.re += p;
                sum.slope.re += slope;
            }
            return sum;
        });
        EXPECT_LE(error, bound) << k;
    }
}

TEST(SolveRealSum, FindsEveryRootOfInterlacedSums) {
    expect_all_right<long double>(30 * 1.2e-16L);
    expect_all_right<double>(2e-11L);
}

TEST(SolveRealSum, CommonAndVanishingTerms) {
    RealRootSet R;
    RealSumWorkspace<double> ws;
    // (x + 1)(x + 3) - (x + 1)(x + 5) = -2 (x + 1)
    ASSERT_TRUE(solveRealSum(set_of(1, {-3, -1}), set_of(-1, {-1, -5}), R, ws).good());
    EXPECT_EQ(R.count, 1);
    EXPECT_EQ(R.root(1), -1);
    EXPECT_EQ(R.multiplier, -2);
    // (x + 1)(x + 2) - (x + 4)(x + 1/2) = -1.5 x
    ASSERT_TRUE(solveRealSum(set_of(1, {-1, -2}), set_of(-1, {-4, -0.5}), R, ws).good());
    EXPECT_EQ(R.count, 1);
    EXPECT_EQ(R.root(1), 0);
    EXPECT_EQ(R.multiplier, -1.5);
    ASSERT_TRUE(solveRealSum(set_of(2, {1, 2}), set_of(-2, {2, 1}), R, ws).good());
    EXPECT_EQ(R.count, 0);
    EXPECT_EQ(R.multiplier, 0);
    ASSERT_TRUE(solveRealSum(set_of(0, {1}), set_of(3, {4, -4}), R, ws).good());
    EXPECT_EQ(R.count, 2);
    EXPECT_EQ(R.multiplier, 3);
}

TEST(SolveRealSum, RefusesHighDegreeAndComplexRoots) {
    RealRootSet R = set_of(5, {6});
    RealSumWorkspace<double> ws;
    RealRootSet large;
    large.multiplier = 1;
    large.count = 26;
    SolveVerdict verdict = solveRealSum(large, R, R, ws);
    EXPECT_EQ(verdict.fault, SolveFault::real_degree_too_high);
    EXPECT_EQ(verdict.number, 26);
    // (x + 2)(x^2 + 1), the first root being common
    verdict = solveRealSum(set_of(1, {-2, 0, 0}), set_of(1, {-2}), R, ws);
    EXPECT_EQ(verdict.fault, SolveFault::real_no_convergence);
    EXPECT_EQ(verdict.number, 2);
    EXPECT_EQ(R.root(1), 6);
    const SolveMessage& message = messageOf(verdict.fault);
    EXPECT_EQ(message.first, " **** No convergence of root no.");
    EXPECT_EQ(message.after_number, " ****");
}

TEST(CreateRealRoot, PutsARootWhereItIsWanted) {
    RandomNumbers random(9);
    for (int k = 0; k < 100; ++k) {
        Interlaced s = random_interlaced(random, 1 + k % 25, 0);
        const double point = -std::pow(10.0, random.between(-3, 3));
        RealRootSet R;
        RealSumWorkspace<long double> ws;
        const RealRootSet before = s.A;
        ASSERT_TRUE(createRealRoot(s.A, s.B, point, R, ws).good()) << k;
        EXPECT_EQ(s.A.root, before.root);
        const double x = random.between(0, 3);
        const double want = (evalRealRoots(s.A, x) + evalRealRoots(s.B, x)) / (x - point);
        const double size = std::max(std::fabs(evalRealRoots(s.A, x)), std::fabs(evalRealRoots(s.B, x)));
        EXPECT_NEAR(evalRealRoots(R, x), want, 1e-9 * size) << k;
    }
    RealRootSet A = set_of(1, {-1, -3});
    RealRootSet R;
    RealSumWorkspace<double> ws;
    EXPECT_EQ(createRealRoot(A, set_of(1, {-2, -4}), -3.0, R, ws).fault, SolveFault::created_root_missing);
}

}  // namespace
}  // namespace kavrel
