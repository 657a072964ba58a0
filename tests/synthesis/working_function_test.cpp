// What the removals do to a reactance without removing anything: its value stays.
#include "synthesis/working_function.h"

#include <gtest/gtest.h>

namespace kavrel {
namespace {

void expect_equal(const WideReal& a, const WideReal& b) { EXPECT_LE(abs(a - b), abs(b) * 1e-140L); }

ReactanceRoots roots(WideReal multiplier, std::initializer_list<double> places) {
    ReactanceRoots set{.multiplier = multiplier, .count = 0, .root = {}};
    for (const double place : places) set.append(place);
    return set;
}

TEST(WorkingFunction, FormsInverseAndCommonRootsKeepTheValue) {
    for (const int product : {0, 1}) {
        const WorkingFunction f{.ANUMR = roots(2, {0.3, -1.5, 1}),
                                .DENOMR = roots(0.7, {-0.4, 0.3, 0.25}),
                                .Fn = 1 - product,
                                .Fd = product,
                                .x0 = 0.25};
        for (const double at : {-0.8, 0.6, 3.5}) {
            const WideReal x = at, value = quotient_at(f, x);
            WorkingFunction g = f;
            hold_as_product(g);
            expect_equal(quotient_at(g, x), value);
            hold_as_quotient(g);
            expect_equal(quotient_at(g, x), value);
            cancel_common_roots(g);
            expect_equal(quotient_at(g, x), value);
            for (int i = 1; i <= g.ANUMR.count; ++i) EXPECT_FALSE(cancel_root(g.DENOMR, g.ANUMR.root(i)));
            g = f;
            invert(g);
            expect_equal(quotient_at(g, x) * value, (1 - x) / (x - f.x0));  // 1/s^2
        }
    }
}

TEST(WorkingFunction, SumsHaveTheirRootsAtAnyDegree) {
    for (const int degree : {3, 25, 27}) {
        ReactanceRoots A = roots(1, {}), B = roots(1e-3, {-0.5, -1.5, -2}), sum;
        for (int i = 1; i <= degree; ++i) A.append(-i);
        ASSERT_TRUE(sumOfProducts(A, B, sum));
        ASSERT_EQ(sum.count, degree);
        for (const double at : {0.1, -7.3}) expect_equal(value_of(sum, at), value_of(A, at) + value_of(B, at));
    }
}

}  // namespace
}  // namespace kavrel
