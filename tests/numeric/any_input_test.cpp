// Whatever the numbers are, each solver answers: no hang, and nothing half done behind a refusal.
#include <limits>

#include <gtest/gtest.h>

#include "numeric/even_odd_roots.h"
#include "numeric/real_sum_roots.h"
#include "numeric/sum_roots.h"
#include "tests/numeric/random_sums.h"

namespace kavrel {
namespace {

double any_number(RandomNumbers& random) {
    switch (random.integer(0, 11)) {
        case 0: return 0;
        case 1: return -0.0;
        case 2: return random.between(-1, 1) * 1e300;
        case 3: return std::numeric_limits<double>::denorm_min();
        case 4: return std::numeric_limits<double>::infinity();
        case 5: return std::numeric_limits<double>::quiet_NaN();
        case 6: return std::pow(10.0, random.between(-30, 30));
        default: return random.integer(-4, 4) * 0.5;
    }
}

// Few special values, so that many roots coincide and many terms cancel.
double small_number(RandomNumbers& random) {
    const int pick = random.integer(0, 9);
    return pick == 0 ? std::pow(10.0, random.between(-12, 12)) : random.integer(-3, 3) * 0.5;
}

TEST(Solvers, AnswerOnAnyInput) {
    RandomNumbers random(3);
    SumWorkspace sum;
    EvenOddWorkspace parts;
    RealSumWorkspace real;
    for (int k = 0; k < 150; ++k) {
        const auto number = [&] { return k % 2 == 0 ? any_number(random) : small_number(random); };
        WideRootSet A, B, R, O;
        for (WideRootSet* set : {&A, &B}) {
            set->multiplier = number();
            for (int n = random.integer(0, 50); set->count < n;) set->append({number(), k % 4 == 0 ? number() : 0});
        }
        EXPECT_TRUE(solveSum(A, B, R, sum).good() || R.count == 0);
        EXPECT_LE(R.count, 50);

        WidePseudoPolynomial p;
        p.multiplier = number();
        p.degree = random.integer(0, 50);
        for (int i = 1; i <= p.factors(); ++i) p.c(i) = number(), p.d(i) = number();
        R = {};
        EXPECT_TRUE(solveEvenOdd(p, random.coin() ? 0.0 : 0.5, false, R, O, parts).good() || R.count == 0);
        EXPECT_LE(R.count, 25);

        RealRootSet a, b, r;
        for (RealRootSet* set : {&a, &b}) {
            set->multiplier = number();
            for (int n = random.integer(0, 25); set->count < n;) set->append(number());
        }
        EXPECT_TRUE(solveRealSum(a, b, r, real).good() || r.count == 0);
        EXPECT_LE(r.count, 25);
    }
}

}  // namespace
}  // namespace kavrel
