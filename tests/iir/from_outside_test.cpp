#include "iir/from_outside.h"

#include <complex>
#include <numbers>

#include <gtest/gtest.h>

#include "iir/iir_request_check.h"
#include "iir/roots_loss.h"

namespace kavrel {
namespace {

// Leading coefficients, first order, a mere number, a power of z: by the polynomials as they were typed.
TEST(FromOutside, FactorsHaveTheirLevel) {
    const GivenFactor numerator[] = {{0.5, 0.1, -0.3}, {0, 2, 1}, {0, 0, -3}, {4, 0, 0}};
    const GivenFactor denominator[] = {{2, -1, 0.5}, {0, 4, 1}, {5, 1, 0}};
    IirFilter filter;
    filter.fs = 1;
    take_factors(numerator, denominator, filter);
    EXPECT_TRUE(filter.cascade.NNUM == 2 && filter.cascade.NDEN == 3);
    EXPECT_DOUBLE_EQ(filter.cascade.CK, 0.5 * 2 * -3 * 4 / (2.0 * 4 * 5));
    for (const double f : {0.0, 0.07, 0.31, 0.5}) {
        const auto z = std::polar(1.0, 2 * std::numbers::pi * f);
        std::complex<double> h = 1;
        for (const auto& [q, l, c] : numerator) h *= q * z * z + l * z + c;
        for (const auto& [q, l, c] : denominator) h /= q * z * z + l * z + c;
        EXPECT_NEAR(loss_of_roots(filter, f), -20 * std::log10(std::abs(h)), 1e-12) << f;
    }
}

TEST(FromOutside, RootsHaveNoLossInTheBestPlaceOfThePassBand) {
    const Complex<double> zeros[] = {{-1, 0}, {0.2, 0.9}};
    const Complex<double> poles[] = {{0.9, 0.1}, {0.3, 0}, {0, 0}};
    const struct {
        DigitalKind kind;
        double lower, upper, from, to;
    } bands[] = {{DigitalKind::high_pass, 0.3, 0, 0.3, 0.5},
                 {DigitalKind::band_pass, 0.1, 0.2, 0.1, 0.2},
                 {DigitalKind::band_reject, 0.03, 0.4, 0, 0.03},
                 {DigitalKind::low_pass, 0, 0, 0, 0.5}};
    for (const auto& [kind, lower, upper, from, to] : bands) {
        IirFilter filter;
        filter.fs = 1, filter.kind = kind, filter.FLO = lower, filter.FHI = upper;
        take_roots(zeros, poles, filter);
        EXPECT_TRUE(filter.roots.NZ == 3 && filter.roots.NP == 3) << "a pole at 0 is a power of z";
        double least = 1e9;
        for (double f = from; f <= to; f += (to - from) / 20000) least = std::fmin(least, loss_of_roots(filter, f));
        EXPECT_TRUE(least < 1e-6 && least >= -1e-9) << lower << ' ' << upper;
    }
}

// A pole a: 20 log10 (1 + a)/(1 - a) at half the sampling frequency, 0 at zero; a zero on the circle is found.
TEST(DigitalCheck, RowsAreThoseOfTheRoots) {
    constexpr double a = 0.8;
    const GivenFactor numerator[] = {{0, 1 - a, 0}, {1, -2 * std::cos(0.6 * std::numbers::pi), 1}};
    const GivenFactor denominator[] = {{0, 1, -a}};
    IirFilter filter;
    filter.fs = 1000;
    take_factors(numerator, denominator, filter);
    Unwatched watcher;
    const double at_zero = loss_of_roots(filter, 0), at_top = loss_of_roots(filter, 500);
    filter.asked = {
        .count = 3, .rows = {{{{false, 0, 10, 1}, {true, 290, 310, 1}, {true, 490, 500, 60}}}}, .flat_loss = at_zero};
    const RequestCheck check = check_iir(filter, watcher);
    ASSERT_EQ(check.rows.size(), 4U);
    EXPECT_NEAR(check.rows[0].reached, loss_of_roots(filter, 10) - at_zero, 1e-12);
    EXPECT_LT(check.rows[1].reached, 1e3) << "the least loss of the band is at its ends";
    EXPECT_NEAR(check.rows[2].reached, at_top - at_zero, 1e-9);
    EXPECT_FALSE(check.rows[2].met);
    EXPECT_NEAR(check.rows[3].margin, 1 - a, 1e-15);
    filter.roots.QR(1) = 1;
    EXPECT_FALSE(check_iir(filter, watcher).rows[3].met) << "a pole on the circle";
}

}  // namespace
}  // namespace kavrel
