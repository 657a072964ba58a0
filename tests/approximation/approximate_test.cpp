// The order of work: who ends where. Faults of whole designs are those of filter_driver_test.cpp.
#include <cmath>
#include <limits>
#include <memory>
#include <numbers>

#include <gtest/gtest.h>

#include "approximation/immittance.h"
#include "approximation/power_loss.h"
#include "approximation/s_plane.h"
#include "tests/approximation/transfer_cases.h"

namespace kavrel {
namespace {

// F of another E would make E = F + Q false.
TEST(Approximate, SingleTerminationOfANewELeavesNoF) {
    for (FilterSpec spec : {request("predistortionQ 100", test::all_pole(low_pass, maximally_flat, 3)),
                            request("stopbandLoss 3", test::all_pole(band_pass, sloping_passband, 6))}) {
        test::single_terminated(spec);
        const auto d = test::designed(spec);
        for (const WideRootSet* set : {&d->xp.FS, &d->xp.fEven, &d->xp.fOdd}) {
            EXPECT_EQ(set->count, 0);
            EXPECT_EQ(set->multiplier, 0);
        }
        EXPECT_EQ(d->xp.fFactors.degree, 0);
        EXPECT_FALSE(d->notes.has_pole_chains);
    }
}

// No request is known whose immittances fail; the routine refuses what has no roots.
TEST(Approximate, ImmittancesWithoutRootsAreRefused) {
    const auto d = test::designed(test::all_pole(low_pass, equal_ripple, 5));
    d->xp.eOdd.multiplier = std::numeric_limits<long double>::quiet_NaN();
    const auto ws = std::make_unique<ExtractionWorkspace>();
    EXPECT_FALSE(immittancePolynomials(d->xp, *ws).good());
    EXPECT_EQ(messageOf(ApproximationFault::immittance_missing).first, "Roots of one of the immittance polynomials");
    EXPECT_EQ(messageOf(ApproximationFault::immittance_missing).second, "could not be found, design discontinued");
}

TEST(Approximate, MayBeStoppedAtEveryStep) {
    int steps = 0;
    for (;; ++steps) {
        const auto d = std::make_unique<test::Design>();
        d->spec = request("predistortionQ 300", test::all_pole(low_pass, equal_ripple, 5));
        d->answers.steps = steps;
        d->run();
        if (d->verdict.good()) break;
        EXPECT_EQ(d->verdict.fault, ApproximationFault::stopped);
        EXPECT_EQ(d->spec.designError, 1);
        ASSERT_LT(steps, 20);
    }
    EXPECT_GE(steps, 4);
}

TEST(Approximate, SingleTerminationLeavesThePartsOfE) {
    FilterSpec s = test::with_minima(low_pass, equal_ripple, 7, -1);
    test::single_terminated(s);
    const auto d = test::designed(s);
    EXPECT_EQ(d->xp.es.count, 3);
    EXPECT_EQ(d->xp.os.count, 3);
    EXPECT_EQ(d->xp.es.multiplier, d->xp.eEven.multiplier);
    EXPECT_EQ(d->xp.ed.multiplier, 0);
    EXPECT_EQ(d->xp.od.multiplier, 0);
}

TEST(Approximate, ALowPassToBeShiftedKeepsItsPoles) {
    FilterSpec s = test::all_pole(low_pass, maximally_flat, 5);
    const auto plain = test::run(s);
    const auto d = test::designed(request("predistortionQ 100 centerFrequency 20e3", s));
    EXPECT_FALSE(d->notes.predistortion.requested);
    for (int i = 1; i <= 5; ++i) EXPECT_EQ(d->xp.ES.re(i), plain->xp.ES.re(i));
}

// gainConstant and lossConstant turn the sum over poles and zeros into the loss.
TEST(Approximate, ConstantsOfTheTransferFunction) {
    for (const auto type : {low_pass, high_pass, band_pass}) {
        FilterSpec s = test::with_minima(type, equal_ripple, 6, -1);
        test::single_terminated(s);
        const auto d = test::designed(s);
        const TransferFunction t = xToFrequencyPlane(d->spec, d->xp);
        const auto level = [&](double w) {
            double sum = 0;
            for (int i = 1; i <= t.poleCount; ++i) sum += 20 * std::log10(std::hypot(t.POLES_RE(i), w - t.POLES_IM(i)));
            for (int i = 1; i <= t.zeroCount; ++i) sum -= 20 * std::log10(std::hypot(t.ZEROS_RE(i), w - t.ZEROS_IM(i)));
            return sum;
        };
        for (const double hertz : {1900.0, 2500.0, 3100.0, 9000.0}) {
            const double w = 2 * std::numbers::pi * hertz;
            EXPECT_NEAR(level(w) - t.lossConstant, lossAt(d->spec, d->xp, hertz), 1e-9) << type << ' ' << hertz;
        }
        const double gain = type == high_pass ? 1 : level(type == band_pass ? t.normFrequency : 0);
        EXPECT_NEAR(t.gainConstant, gain, 1e-12 * std::fabs(gain));
        for (int i = 1; i <= t.poleCount; ++i) EXPECT_LT(t.POLES_RE(i), 0);
        EXPECT_EQ(t.zeroCount + t.zerosAtInfinity, t.poleCount);
    }
    // Poles on the unit circle: what is left of the constant is rounding.
    const auto circle = test::designed(request("sampled_data sampleFrequency 12e3 bandEdgeLoss 3.010299956639812",
                                               test::all_pole(low_pass, maximally_flat, 5)));
    EXPECT_EQ(xToFrequencyPlane(circle->spec, circle->xp).lossConstant, 0);
}

// Unit elements are zeros at S = 1, whichever plane the design worked in.
TEST(Approximate, UnitElementsInThePlaneOfTheTangent) {
    for (const auto type : {low_pass, high_pass}) {
        FilterSpec s = request("microwave sampleFrequency 14e3 unitElements 2", test::all_pole(type, equal_ripple, 5));
        (type == low_pass ? s.zerosAtInfinity : s.zerosAtZero) = 3;
        const auto d = test::designed(s);
        const TransferFunction t = xToFrequencyPlane(d->spec, d->xp);
        const int first = t.zerosAtZero + 1;
        const double edge = type == low_pass ? 3000 : 2000;
        const double wanted = 1 / std::tan(std::numbers::pi * edge / 14e3);
        EXPECT_NEAR(t.ZEROS_RE(first), wanted, 1e-13);
        EXPECT_NEAR(t.ZEROS_RE(first + 1), -wanted, 1e-13);
        EXPECT_EQ(t.zeroCount, t.zerosAtZero + 2);
        EXPECT_NEAR(lossAt(d->spec, d->xp, edge), 10 * std::log10((1 + static_cast<double>(d->xp.eps2)) * 9 / 8), 1e-9);
    }
}

}  // namespace
}  // namespace kavrel
