// Factors and sections made of roots.
#include "iir/cascade_pairing.h"

#include <cmath>
#include <complex>

#include <gtest/gtest.h>

#include "tests/approximation/digital_cases.h"

namespace kavrel {
namespace {

using C = std::complex<long double>;

DigitalFunction function(const HalfRoots& zeros, const HalfRoots& poles, double multiplier = 1) {
    DigitalFunction f;
    set_zeros(zeros, f);
    set_poles(poles, f);
    f.zMultiplier = multiplier;
    return f;
}

HalfRoot pair(double re, double im) { return {.root = {re, im}, .pair = true}; }
HalfRoot real(double re) { return {.root = {re, 0}}; }

C cascade_at(const CascadeForm& c, C i) {
    C value = c.CK;
    for (int k = 1; k <= c.NNUM; ++k) value *= 1.0L + C(c.C1N(k)) * i + C(c.C2N(k)) * i * i;
    for (int k = 1; k <= c.NDEN; ++k) value /= 1.0L + C(c.C1D(k)) * i + C(c.C2D(k)) * i * i;
    return value;
}

TEST(CascadePairing, GreatestQFirstWithItsNearestZero) {
    IirFilter filter;
    take_function(function({real(-1), pair(0.3, 0.9), pair(0.6, 0.8)},
                           {real(0.7), pair(0.5, 0.4), pair(0.55, 0.8), pair(0.4, 0.7)}, 0.25),
                  filter);
    const CascadeForm& c = filter.cascade;
    ASSERT_EQ(c.NDEN, 4);
    ASSERT_EQ(c.NNUM, 3);
    EXPECT_EQ(c.CK, 0.25);
    EXPECT_DOUBLE_EQ(c.C1D(1), -1.1);
    EXPECT_DOUBLE_EQ(c.C1N(1), -1.2);
    EXPECT_DOUBLE_EQ(c.C1D(2), -0.8);
    EXPECT_DOUBLE_EQ(c.C1N(2), -0.6);
    EXPECT_DOUBLE_EQ(c.C1D(3), -1.0);
    EXPECT_EQ(c.C1N(3), 1);
    EXPECT_EQ(c.C2N(3), 0);
    EXPECT_EQ(c.C1D(4), -0.7);
    EXPECT_EQ(c.C2D(4), 0);
    // The roots are in the order of the sections, so that those of the factors are the same.
    const DigitalRoots roots = filter.roots;
    rootsFromFactors(filter);
    ASSERT_EQ(filter.roots.NZ, 5);
    ASSERT_EQ(filter.roots.NP, 7);
    for (int i = 1; i <= 7; ++i) {
        EXPECT_NEAR(filter.roots.QR(i), roots.QR(i), 1e-15);
        EXPECT_NEAR(filter.roots.PI(i), roots.PI(i), 1e-15);
        EXPECT_NEAR(filter.roots.ZR(i), roots.ZR(i), 1e-15);
    }
}

TEST(CascadePairing, ZerosAtBothEndsGoTogether) {
    IirFilter filter;
    take_function(function({real(1), real(-1), real(1), real(-1)}, {pair(0.5, 0.6), pair(0.5, 0.7)}), filter);
    for (int k = 1; k <= 2; ++k) EXPECT_TRUE(filter.cascade.C1N(k) == 0 && filter.cascade.C2N(k) == -1);
    take_function(function({}, {real(0), real(0.5), real(-0.5)}), filter);
    EXPECT_EQ(filter.cascade.NNUM, 0);
    EXPECT_EQ(filter.cascade.NDEN, 2);  // a pole at 0 is the one without a partner
    EXPECT_EQ(filter.cascade.C2D(1), -0.25);
    EXPECT_EQ(filter.cascade.C1D(2), 0);
}

// The product is H, and the chains stay with their poles, for every kind of filter.
TEST(CascadePairing, ProductIsTheFunction) {
    for (const auto transform : {ZTransform::bilinear, ZTransform::matched, ZTransform::impulse_invariant}) {
        for (const SpectralKind kind : {SpectralKind::none, SpectralKind::to_highpass, SpectralKind::to_bandreject}) {
            for (const int degree : {1, 2, 5, 8, 25}) {
                test::DigitalCase asked{.spec = {}, .transform = transform, .target = {.kind = kind}};
                asked.spec.filterType = low_pass;
                asked.spec.bandEdgeLoss = 0.5;
                asked.spec.upperPassEdge = 1000;
                asked.target.lower = 1400, asked.target.upper = 2000;
                test::take_function("chebyshev", degree, asked.spec);
                const DigitalFunction f = test::designed(asked).function;
                IirFilter filter;
                take_function(f, filter);
                for (const C z : {C(1.1L, 0.3L), C(-2, 0.5L), C(0.2L, 1.4L)}) {
                    const Complex<Wide> h = value_at(f, {z.real(), z.imag()});
                    EXPECT_LT(std::abs(cascade_at(filter.cascade, 1.0L / z) / C(h.re, h.im) - 1.0L), 1e-12L) << degree;
                }
                for (int i = 1; i <= f.poleCount; ++i) {
                    bool found = false;
                    for (int j = 1; j <= f.poleCount; ++j) {
                        found = found || (filter.roots.QR(i) == f.POLES_RE(j) && filter.roots.PI(i) == f.POLES_IM(j) &&
                                          filter.allpass.LARR(i) == f.LARR(j));
                    }
                    EXPECT_TRUE(found);
                }
            }
        }
    }
}

}  // namespace
}  // namespace kavrel
