// The identity that makes the four polynomials those of a reactance two-port, in numbers of 512 bits.
#include "synthesis/long_immittance.h"

#include <gtest/gtest.h>

#include "tests/synthesis/ladder_cases.h"

namespace kavrel::test {
namespace {

WideReal product_at(const WideRootSet& set, const WideReal& x) {
    Complex<WideReal> value{set.multiplier, 0};
    for (int i = 1; i <= set.count; ++i) value *= Complex<WideReal>{x - set.re(i), -WideReal{set.im(i)}};
    return value.re;
}

// |e|^2 - |f|^2 = Q of even degree is Es Ed - w^2 Os Od, of odd degree (x - a) Os Od - (1 - x) Es Ed, and the halved
// differences are the parts of f; one that is not there is as the sum. With one termination the same of e alone is E.
void expect_whole(const XPlane& xp, bool single, long double f_tolerance) {
    LongImmittance parts;
    Unwatched unwatched;
    ASSERT_TRUE(long_immittance(xp, single, unwatched, parts));
    EXPECT_EQ(parts.degree, xp.ES.count);
    for (const double at : {-2.9, -0.3, 0.45, 7.1}) {
        const WideReal x = at, u = x - xp.a, v = 1 - x;
        const WideReal es = value_of(parts.es, x), os = value_of(parts.os, x);
        const WideReal ed = parts.even_f && !single ? value_of(parts.ed, x) : es;
        const WideReal od = parts.odd_f && !single ? value_of(parts.od, x) : os;
        const WideReal even = es * ed * (parts.degree % 2 == 0 ? 1 : -v);
        const WideReal odd = os * od * (parts.degree % 2 == 0 ? -u * v : u);
        const WideReal whole = product_at(single ? xp.ES : xp.QS, x);
        EXPECT_LE(rounded(abs(even + odd - whole)), rounded(1e-100L * (abs(even) + abs(odd)))) << at;
        if (single) continue;
        EXPECT_LE(rounded(abs(es - ed - shifted(product_at(xp.fEven, x), 1))), f_tolerance * rounded(abs(es))) << at;
        EXPECT_LE(rounded(abs(os - od - shifted(product_at(xp.fOdd, x), 1))), f_tolerance * rounded(abs(os))) << at;
    }
}

TEST(LongImmittance, MakesUpTheFunctionToManyDigits) {
    for (const char* text :
         {"low flat 1", "low flat 2 R 50 50", "high ripple 5", "band flat 6", "low ripple 7 minima 1 R 50 50",
          "band ripple 12 minima 0 R 50 50", "low flat 50 R 50 100", "high flat 31 R 50 50", "band ripple 50",
          "low ripple 50 minima 1 R 50 50", "band ripple parametric ends 2 3 zeros 4500 5200", "matching ripple 5",
          "low ripple R 50 50 ends 0 3 complex 2500 1500", "band flat R 50 75 ends 2 2 complex 900 3600 zeros 1500",
          "low ripple quarter 24000 ends 0 0 lines 5 R 50 50", "low flat 9 R 1 0",
          // to the rough numbers a root of E is one of Q: Newton's iteration starts beside it
          "high flat quarter 113734.2 edges 12603.8 0 ends 39 0 lines 1 loss 0.018842432023556926 R 600 600"}) {
        SCOPED_TRACE(text);
        const auto d = designed(asked(text));
        expect_whole(d->xp, d->spec.loadResistance == 0, 1e-100L);
    }
    // All zeros of f on one side of the imaginary axis: f is taken from its factors.
    for (const char* text : {"low flat 9 R 50 100", "high flat 31 R 50 500", "low flat 50 R 75 150"}) {
        SCOPED_TRACE(text);
        const Ladder run = run_of(text);
        ASSERT_TRUE(run->take_hurwitz_f());
        expect_whole(run->design.xp, false, 1e-15L);
    }
}

}  // namespace
}  // namespace kavrel::test
