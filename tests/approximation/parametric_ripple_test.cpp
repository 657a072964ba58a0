// Parametric equal ripple: losses of random requests on dense grids of true frequencies, from the roots of F and Q.
#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

#include "tests/approximation/characteristic_build.h"

namespace kavrel {
namespace {

using Real = XPlane::Real;

FilterSpec random_request(RandomNumbers& random) {
    FilterSpec s = request("band_pass parametric equal_ripple specified_zeros upperPassEdge 1000");
    s.medium = static_cast<Medium>(random.integer(0, 2));
    s.sampleFrequency = s.medium == lumped ? 0 : random.between(2300, 9000);
    s.lowerPassEdge = 1000 / std::exp(random.between(std::log(1.05), std::log(s.medium == microwave ? 30 : 1000)));
    s.bandEdgeLoss = std::exp(random.between(std::log(1e-3), std::log(3)));
    s.zerosAtZero = random.integer(0, 12);
    s.zerosAtInfinity = random.integer(1, 12);
    s.unitElements = s.medium == microwave ? random.integer(1, 12) : 0;
    s.freal = random.coin() ? s.lowerPassEdge * random.between(0.05, 1.5) : 0;
    s.zeroCount = random.integer(0, 4);
    const double top = s.medium == lumped ? 20000 : 0.49 * s.sampleFrequency;
    for (int i = 1; i <= s.zeroCount; ++i) {
        const bool quadruplet = random.integer(1, 5) == 5;
        s.FZI(i) = random.coin() ? s.lowerPassEdge * random.between(0.1, 0.99) : random.between(1010, top);
        if (quadruplet) s.FZR(i) = random.between(10, 500), s.FZI(i) = random.between(100, 1000);
    }
    return s;
}

// Nothing above 1, which both edges have; of odd degree, with k double zeros of F/Q on the band, all of k + 1 maxima.
void expect_equal_ripple(const Built& b) {
    constexpr int points = 20000;
    const Real low = std::log(b.xp.a) / 2;
    const auto ripple = [&](Real w) { return squared_from_roots(b.xp, w) / b.xp.eps2; };
    int maxima = 1;
    Real largest = 0;
    bool was_low = false;
    for (int i = 1; i < points; ++i) {
        const Real value = ripple(std::exp(low * (1 + std::cos(std::numbers::pi_v<Real> * i / points)) / 2));
        largest = std::fmax(largest, value);
        if (was_low && value > 0.999L) ++maxima, was_low = false;
        if (value < 0.5L) was_low = true;
    }
    EXPECT_LT(largest, 1 + 1e-6L);
    EXPECT_LT(gap(ripple(std::sqrt(b.xp.a)), 1), 1e-14);
    EXPECT_EQ(b.xp.FS.multiplier, b.xp.eps2) << "the loss at the upper edge";
    if (b.spec.degreeParity == 1) {
        EXPECT_EQ(maxima, (b.spec.degree + 1) / 2);
    }
}

TEST(ParametricRipple, MaximaAreEqual) {
    RandomNumbers random(5);
    int built = 0;
    for (int k = 1; k <= 60; ++k) {
        SCOPED_TRACE(k);
        const Built b = build(random_request(random));
        if (!b.verdict.good() || b.spec.bandpassType != parametric) continue;
        expect_equal_ripple(b);
        ++built;
    }
    EXPECT_GT(built, 50);
    // Wide bands with zeros at one end: an edge that has to be made a maximum, and a start without a root d.
    for (const char* zeros : {"zerosAtInfinity 7 lowerPassEdge 30", "zerosAtInfinity 14 lowerPassEdge 10",
                              "zerosAtInfinity 10 FZI 1.278 lowerPassEdge 1.636 sampled_data sampleFrequency 4377"}) {
        SCOPED_TRACE(zeros);
        const Built b =
            build(request(std::string("band_pass parametric equal_ripple specified_zeros upperPassEdge 1000 "
                                      "bandEdgeLoss 0.01 ") +
                          zeros));
        ASSERT_TRUE(b.verdict.good());
        expect_equal_ripple(b);
    }
}

TEST(ParametricRipple, FlatOnesStayBelowTheirEdges) {
    RandomNumbers random(6);
    for (int k = 1; k <= 40; ++k) {
        FilterSpec s = random_request(random);
        s.passbandType = maximally_flat;
        s.freal = s.zeroCount = 0;
        s.zerosAtZero *= k % 2;
        const Built b = build(s);
        for (int i = 0; i <= 2000 && b.verdict.good() && b.spec.bandpassType == parametric; ++i) {
            ASSERT_LT(squared_from_roots(b.xp, std::pow(b.xp.a, static_cast<Real>(i) / 4000)) / b.xp.eps2, 1 + 1e-9L)
                << k;
        }
    }
}

}  // namespace
}  // namespace kavrel
