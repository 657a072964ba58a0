#include "numeric/sum_roots.h"

#include <algorithm>
#include <memory>

#include <gtest/gtest.h>

#include "numeric/root_order.h"
#include "tests/numeric/golden_roots.h"
#include "tests/numeric/random_sums.h"

namespace kavrel {
namespace {

using namespace testing;
using Z = Complex<double>;

RootSet set_of(double multiplier, std::initializer_list<Z> roots) {
    RootSet set;
    set.multiplier = multiplier;
    for (const Z z : roots) set.append(z);
    return set;
}

template <class Work = long double>
RootSet sum_of(const RootSet& A, const RootSet& B, SolveFault fault = SolveFault::none, SolveOptions options = {}) {
    RootSet R;
    SumWorkspace<Work> ws;
    EXPECT_EQ(solveSum(A, B, R, ws, options).fault, fault);
    return R;
}

// A + B and its derivative in long double, from the doubles given: no line of it is the solver's.
struct SumAt {
    const RootSet& A;
    const RootSet& B;

    ValueAndSlope operator()(Complex<long double> x) const {
        const auto [a, da] = product(A, x);
        const auto [b, db] = product(B, x);
        return {a + b, da + db};
    }
    static ValueAndSlope product(const RootSet& set, Complex<long double> x) {
        ValueAndSlope p{{set.multiplier, 0}, {}};
        for (int i = 1; i <= set.count; ++i) {
            const Complex<long double> factor = x - Complex<long double>{set.re(i), set.im(i)};
            p.slope = p.slope * factor + p.value;
            p.value *= factor;
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
        RootSet sets[2];
        for (RootSet& set : sets) {
            int count = 0;
            in >> word >> set.multiplier >> count;
            while (set.count < count) {
                Z root;
                in >> root.re >> root.im;
                set.append(root);
            }
        }
        const GoldenSet golden = read_golden_set(in);
        {
            SCOPED_TRACE("long double");
            expect_golden(sum_of<long double>(sets[0], sets[1]), golden, 2e-18L);
        }
        {
            SCOPED_TRACE("19 digits");
            expect_golden(sum_of<long double>(sets[0], sets[1], SolveFault::none, {.precisionDigits = 19}), golden,
                          2e-18L);
        }
        {
            SCOPED_TRACE("double");
            expect_golden(sum_of<double>(sets[0], sets[1]), golden, 4e-15L);
        }
        ++sums;
    }
    EXPECT_EQ(sums, 35);
}

// 2,000 sums, each proved by disjoint Newton disks. In long double every root is right to the rounding of its storage,
// in double to 1e-12 except for the leading terms that cancel, which lose digits with their difference.
template <class Work>
void expect_all_right(long double bound, long double bound_cancelling) {
    for (int kind = 0; kind < sum_kinds; ++kind) {
        RandomNumbers random(static_cast<unsigned>(100 + kind));
        for (int k = 0; k < 400; ++k) {
            const int degree = 1 + k % 50;
            const RandomSum s = random_sum(random, static_cast<SumKind>(kind), degree);
            const RootSet R = sum_of<Work>(s.A, s.B);
            const bool one_less =
                static_cast<SumKind>(kind) == SumKind::Cancelling ||
                (static_cast<SumKind>(kind) == SumKind::Mirrored && s.A.multiplier * s.B.multiplier < 0);
            ASSERT_EQ(R.count, std::max(s.A.count, s.B.count) - (one_less ? 1 : 0)) << kind << ' ' << k;

            // Where the leading coefficients cancel inexactly, the roots are those of the sum without that rest.
            const long double error = proven_error(R, SumAt{s.A, s.B});
            EXPECT_LE(error, static_cast<SumKind>(kind) == SumKind::Cancelling ? bound_cancelling : bound)
                << kind << ' ' << k;
            for (int i = 2; i <= R.count; ++i) EXPECT_LE(cabs(R.root(i - 1)), cabs(R.root(i)));
        }
    }
}

TEST(SolveSum, FindsEveryRootOfRandomSums) { expect_all_right<long double>(60 * 1.2e-16L, 1e-12L); }
TEST(SolveSum, FindsEveryRootOfRandomSumsInDouble) { expect_all_right<double>(1e-12L, 1e-9L); }

TEST(SolveSum, RootsToSumAndBack) {
    // cos(n t) as the mean of (y + sqrt(y^2 - 1))^n and its conjugate: T_n from A(y) + A(-y) with all roots at -1,
    // taken to x: A = (x + 1)^n, B = -(x - 1)^n has the roots j cot(pi i/n).
    for (const int n : {2, 5, 10, 25, 50}) {
        RootSet A, B;
        A.multiplier = 1;
        B.multiplier = -1;
        for (int i = 1; i <= n; ++i) A.append({-1, 0}), B.append({1, 0});
        const RootSet R = sum_of(A, B);
        ASSERT_EQ(R.count, n - 1);
        EXPECT_NEAR(R.multiplier, 2.0 * n, 1e-13 * n);
        for (int i = 1; i <= R.count; ++i) {
            EXPECT_EQ(R.re(i), 0);
            const double turns = std::atan2(1, R.im(i)) * n / std::acos(-1.0);
            EXPECT_NEAR(turns, std::round(turns), 2e-13);
        }
    }
    // E = F + Q, then F = E - Q again: the roots of F come back, the n-fold one at 0 exactly.
    for (const int n : {3, 12, 31, 50}) {
        RootSet F, Q;
        F.multiplier = 0.5;
        Q.multiplier = n % 2 == 0 ? 1 : -1;
        for (int i = 1; i <= n; ++i) F.append({0, 0}), Q.append({i % 3 == 0 ? 1.5 : 1, 0});
        RootSet E = sum_of(F, Q);
        Q.multiplier = -Q.multiplier;
        const RootSet back = sum_of(E, Q);
        ASSERT_EQ(back.count, n);
        EXPECT_NEAR(back.multiplier, 0.5, 1e-14);
        for (int i = 1; i <= n; ++i) EXPECT_EQ(back.root(i), (Z{0, 0})) << n;
    }
}

TEST(SolveSum, WideSetsKeepWhatDoublesLose) {
    // E = F + Q and F = E - Q with well separated roots of F: the way back magnifies the rounding of E's roots.
    WideRootSet F, Q, E, back;
    F.multiplier = 1e-3L;
    Q.multiplier = 1;
    for (int i = 1; i <= 20; ++i) F.append({-0.1L * i * i, 0}), Q.append({1 + 0.05L * i, 0});
    SumWorkspace<long double> ws;
    ASSERT_TRUE(solveSum(F, Q, E, ws).good());
    RootSet narrow_e, narrow_q, narrow_back;
    copyRootSet(E, narrow_e);
    Q.multiplier = -1;
    copyRootSet(Q, narrow_q);
    ASSERT_TRUE(solveSum(E, Q, back, ws).good());
    ASSERT_TRUE(solveSum(narrow_e, narrow_q, narrow_back, ws).good());
    ASSERT_EQ(back.count, 20);
    long double wide = 0, narrow = 0;
    for (int i = 1; i <= 20; ++i) {
        wide = std::max(wide, cabs(back.root(i) - F.root(i)) / cabs(F.root(i)));
        narrow = std::max(
            narrow, cabs(Complex<long double>{narrow_back.re(i), narrow_back.im(i)} - F.root(i)) / cabs(F.root(i)));
    }
    EXPECT_LT(wide * 20, narrow);
}

TEST(SolveSum, CancellingAndVanishingTerms) {
    const RootSet A = set_of(2, {{1, 0}, {0, 2}, {0, -2}, {-3, 0}});
    RootSet B = A;
    B.multiplier = -2;
    EXPECT_EQ(sum_of(A, B).count, 0);
    EXPECT_EQ(sum_of(A, B).multiplier, 0);

    // Every root common: they come back as they are.
    const RootSet twice = sum_of(A, A);
    ASSERT_EQ(twice.count, 4);
    EXPECT_EQ(twice.multiplier, 4);
    EXPECT_EQ(twice.root(1), (Z{1, 0}));
    EXPECT_EQ(twice.root(2), (Z{0, 2}));

    // x + 1
    const RootSet one = sum_of(set_of(1, {{0, 0}}), set_of(1, {}));
    ASSERT_EQ(one.count, 1);
    EXPECT_EQ(one.root(1), (Z{-1, 0}));

    // The second coefficients cancel but for the rounding of 0.1 + 0.2 - 0.3: degree 1, not 2.
    const RootSet even =
        sum_of(set_of(1, {{0.1, 0}, {0.2, 0}, {-0.3, 0}}), set_of(-1, {{-0.1, 0}, {-0.4, 0}, {0.5, 0}}));
    ASSERT_EQ(even.count, 1);
    EXPECT_NEAR(even.re(1), -0.026 / 0.14, 1e-13);

    // -1 + (1 - x^2): a double root at the origin, beyond the constant term.
    const RootSet origin = sum_of(set_of(-1, {}), set_of(-1, {{1, 0}, {-1, 0}}));
    ASSERT_EQ(origin.count, 2);
    EXPECT_EQ(origin.root(1), (Z{0, 0}));
    EXPECT_EQ(origin.root(2), (Z{0, 0}));

    // A multiplier 0 leaves the other product.
    const RootSet alone = sum_of(set_of(0, {{5, 0}}), A);
    EXPECT_EQ(alone.count, 4);
    EXPECT_EQ(alone.multiplier, 2);
}

TEST(SolveSum, MaySolveInPlace) {
    RootSet A = set_of(1, {{-1, 0}, {-2, 0}});
    const RootSet B = set_of(3, {{-4, 0}});
    const RootSet want = sum_of(A, B);
    SumWorkspace<double> ws;
    ASSERT_TRUE(solveSum(A, B, A, ws).good());
    EXPECT_EQ(A.count, 2);
    EXPECT_NEAR(A.re(2), want.re(2), 1e-15 * std::fabs(want.re(2)));
}

TEST(SolveSum, AveragesNearPairsOnRequest) {
    // (x^2 + 1)^2 of two pairs 1e-4 apart
    const RootSet A = set_of(1, {{0, 1}, {0, -1}, {1e-4, 1}, {1e-4, -1}, {-5, 0}});
    const RootSet B = set_of(1e-12, {{2, 0}});
    const RootSet apart = sum_of(A, B);
    const RootSet together = sum_of(A, B, SolveFault::none, {.precisionDigits = 14, .symmetrize = true});
    ASSERT_EQ(together.count, 5);
    EXPECT_GT(std::fabs(apart.re(1) - apart.re(3)), 0.9e-4);
    EXPECT_EQ(together.root(1), together.root(3));
    EXPECT_EQ(together.root(2), conjugate(together.root(1)));
    EXPECT_EQ(together.root(4), together.root(2));
    EXPECT_NEAR(together.re(1), (apart.re(1) + apart.re(3)) / 2, 1e-12);
    EXPECT_EQ(together.root(5), apart.root(5));
}

TEST(SolveSum, RefusesWhatItCannotSolveAndLeavesTheResultAlone) {
    RootSet R = set_of(9, {{8, 0}});
    SumWorkspace<double> ws;
    RootSet large;
    large.multiplier = 1;
    large.count = 51;
    EXPECT_EQ(solveSum(large, R, R, ws).fault, SolveFault::degree_too_high);
    EXPECT_EQ(solveSum(R, large, R, ws).status(), -1);

    // x - j + 1: a complex root without its conjugate
    EXPECT_EQ(solveSum(set_of(1, {{0, 1}}), set_of(1, {}), R, ws).fault, SolveFault::no_convergence);
    const double nan = std::nan("");
    EXPECT_EQ(solveSum(set_of(1, {{nan, 0}, {2, 0}}), set_of(1, {{3, 0}}), R, ws).fault, SolveFault::no_convergence);
    EXPECT_EQ(solveSum(set_of(nan, {{1, 0}}), set_of(1, {{3, 0}}), R, ws).fault, SolveFault::no_convergence);
    EXPECT_EQ(solveSum(set_of(1e308, {{1e300, 0}, {-1e305, 0}}), set_of(1, {{3, 0}}), R, ws).fault,
              SolveFault::no_convergence);
    EXPECT_EQ(R.multiplier, 9);
    EXPECT_EQ(R.count, 1);
    EXPECT_EQ(messageOf(SolveFault::no_convergence).first, " **** No convergence ****");
}

}  // namespace
}  // namespace kavrel
