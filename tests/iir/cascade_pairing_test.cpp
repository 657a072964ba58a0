// Factors and sections made of roots.
#include "iir/cascade_pairing.h"

#include <gtest/gtest.h>

#include "approximation/s_plane.h"

namespace kavrel {
namespace {

IirFilter taken(const HalfRoots& zeros, const HalfRoots& poles) {
    DigitalFunction f;
    set_zeros(zeros, f);
    set_poles(poles, f);
    f.zMultiplier = 0.25;
    IirFilter filter;
    take_function(f, filter);
    return filter;
}

HalfRoot pair(double re, double im) { return {.root = {re, im}, .pair = true}; }
HalfRoot real(double re) { return {.root = {re, 0}}; }

TEST(CascadePairing, GreatestQFirstWithItsNearestZero) {
    IirFilter filter =
        taken({real(-1), pair(0.3, 0.9), pair(0.6, 0.8)}, {real(0.7), pair(0.5, 0.4), pair(0.55, 0.8), pair(0.4, 0.7)});
    const CascadeForm& c = filter.cascade;
    EXPECT_TRUE(c.NDEN == 4 && c.NNUM == 3 && c.CK == 0.25);
    int k = 0;
    for (const double c1 : {-1.1, -0.8, -1.0, -0.7}) EXPECT_DOUBLE_EQ(c.C1D(++k), c1);
    k = 0;
    for (const double c1 : {-1.2, -0.6, 1.0}) EXPECT_DOUBLE_EQ(c.C1N(++k), c1);
    EXPECT_TRUE(c.C2N(3) == 0 && c.C2D(4) == 0);
    filter = taken({real(1), real(-1), real(1), real(-1)}, {pair(0.5, 0.6), pair(0.5, 0.7)});
    for (k = 1; k <= 2; ++k) EXPECT_TRUE(c.C1N(k) == 0 && c.C2N(k) == -1) << "zeros at both ends go together";
    filter = taken({}, {real(0), real(0.5), real(-0.5)});
    EXPECT_TRUE(c.NNUM == 0 && c.NDEN == 2 && c.C2D(1) == -0.25 && c.C1D(2) == 0) << "0 is the one without a partner";
}

}  // namespace
}  // namespace kavrel
