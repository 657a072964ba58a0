// The order of work: who ends where, and every way in which a design is given up.
#include <cmath>
#include <limits>
#include <memory>
#include <numbers>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "approximation/immittance.h"
#include "approximation/power_loss.h"
#include "approximation/s_plane.h"
#include "tests/approximation/transfer_cases.h"

namespace kavrel {
namespace {

std::unique_ptr<test::Design> run(const FilterSpec& spec) {
    auto d = std::make_unique<test::Design>();
    d->spec = spec;
    d->run();
    return d;
}

FilterSpec given_e(FilterType type, std::vector<double> factors) {
    FilterSpec s = test::all_pole(type, functional_passband, static_cast<int>(factors.size()));
    s.loadResistance = s.sourceResistance;
    s.bandEdgeLoss = 0;
    for (const double f : factors) s.denominatorFactors(++s.denominatorDegree) = f;
    return s;
}

void expect_fault(const FilterSpec& spec, ApproximationFault fault, std::string_view first, std::string_view second) {
    SCOPED_TRACE(std::string(first));
    const auto d = run(spec);
    EXPECT_EQ(static_cast<int>(d->verdict.fault), static_cast<int>(fault));
    EXPECT_EQ(d->spec.designError, 1);
    EXPECT_EQ(messageOf(fault).first, first);
    EXPECT_EQ(messageOf(fault).second, second);
}

TEST(Approximate, every_fault_of_a_request_has_its_lines) {
    constexpr std::string_view end = "design discontinued";

    FilterSpec s = given_e(low_pass, {0.4, 0.9, -0.3, 0.5});  // a zero in the right half plane
    expect_fault(s, ApproximationFault::e_inconsistent, "Inconsistency in specifying e(.),", end);
    s = given_e(low_pass, {0.4, 0.9, 0.3, 0.5});
    s.zerosAtInfinity = 3;
    expect_fault(s, ApproximationFault::e_inconsistent, "Inconsistency in specifying e(.),", end);

    s = given_e(low_pass, {});
    s.numeratorFactors(1) = 0.5, s.numeratorDegree = 1, s.functionMultiplier = 1;
    s.zerosAtInfinity = s.degree = 3;
    expect_fault(s, ApproximationFault::f_inconsistent, "Inconsistency in specifying f(.),", end);

    // Ripples far below what any number can tell from none.
    s = test::all_pole(low_pass, equal_ripple, 6);
    s.bandEdgeLoss = 6e-244;
    expect_fault(s, ApproximationFault::poles_missing, "Transfer function poles could not be found,design discontinued",
                 "");
    s = test::with_minima(low_pass, equal_ripple, 22, 0);
    s.bandEdgeLoss = 5e-62;
    expect_fault(s, ApproximationFault::pole_on_axis, "Transfer function pole on imaginary axis,", end);
    s = test::all_pole(low_pass, maximally_flat, 24);  // a loss of 10^258 at the edge
    s.bandEdgeLoss = 2577.4088772334208;
    s.loadResistance = 2304.1593732535857;
    expect_fault(s, ApproximationFault::f_parts_missing, "Even and odd parts of f(.) were not found,", end);
    s = test::all_pole(band_pass, maximally_flat, 2);
    s.bandEdgeLoss = 1.8e-53;
    expect_fault(s, ApproximationFault::e_parts_missing, "Even and odd parts of denominator were not found,", end);

    // No pair of real zeros in the f of an even parametric band-pass.
    s = given_e(band_pass, {0.2, 0.9, 0.25, 0.5});
    s.bandpassType = parametric;
    s.zerosAtZero = 3, s.zerosAtInfinity = 1;
    expect_fault(s, ApproximationFault::f_zeros_wrong, "Characteristic function numerator has wrong zeros,", end);

    s = test::all_pole(band_pass, sloping_passband, 6);
    s.stopbandLoss = 3;
    s.flatLoss = 1e5;
    expect_fault(s, ApproximationFault::f_missing, "Zeros of new characteristic polynomial",
                 "were not found, design discontinued");

    // Zeros of qualities up to 1e9, at frequencies seven decades apart.
    s = given_e(low_pass, {});
    for (const double f : {1e-5, 1e-6, 1e-5, 1e8, 1e-5, 1e4, 1e-5, 1e8, 1e-5, 1e4})
        s.numeratorFactors(++s.numeratorDegree) = f;
    s.zerosAtInfinity = s.degree = 10;
    s.functionMultiplier = 1;
    expect_fault(s, ApproximationFault::given_parts_missing, " **** Zeros of the even and odd parts of the specified",
                 " e(.) or f(.) have not been found ****");
    EXPECT_EQ(messageOf(ApproximationFault::given_parts_missing).third, end);
}

// F of another E would make E = F + Q false.
TEST(Approximate, single_termination_of_a_new_e_leaves_no_f) {
    FilterSpec predistorted = test::all_pole(low_pass, maximally_flat, 3);
    predistorted.predistortionQ = 100;
    FilterSpec slope = test::all_pole(band_pass, sloping_passband, 6);
    slope.stopbandLoss = 3;
    for (FilterSpec spec : {predistorted, slope}) {
        test::single_terminated(spec);
        const auto d = run(spec);
        ASSERT_TRUE(d->verdict.good()) << static_cast<int>(d->verdict.fault);
        for (const WideRootSet* set : {&d->xp.FS, &d->xp.fEven, &d->xp.fOdd}) {
            EXPECT_EQ(set->count, 0);
            EXPECT_EQ(set->multiplier, 0);
        }
        EXPECT_EQ(d->xp.fFactors.degree, 0);
        EXPECT_FALSE(d->notes.has_pole_chains);
    }
}

TEST(Approximate, faults_of_the_front_part_come_through) {
    FilterSpec s = test::all_pole(low_pass, equal_ripple, 5);
    s.upperPassEdge = 0;
    const auto d = run(s);
    EXPECT_EQ(d->verdict.fault, ApproximationFault::front);
    EXPECT_EQ(d->verdict.front.fault, FrontFault::cutoff_missing);
    EXPECT_EQ(d->spec.designError, 1);
}

// No request is known whose immittances fail; the routine refuses what has no roots.
TEST(Approximate, immittances_without_roots_are_refused) {
    const auto d = run(test::all_pole(low_pass, equal_ripple, 5));
    ASSERT_TRUE(d->verdict.good());
    d->xp.eOdd.multiplier = std::numeric_limits<long double>::quiet_NaN();
    const auto ws = std::make_unique<ExtractionWorkspace>();
    EXPECT_FALSE(immittancePolynomials(d->xp, *ws).good());
    EXPECT_EQ(messageOf(ApproximationFault::immittance_missing).first, "Roots of one of the immittance polynomials");
    EXPECT_EQ(messageOf(ApproximationFault::immittance_missing).second, "could not be found, design discontinued");
}

TEST(Approximate, may_be_stopped_at_every_step) {
    FilterSpec s = test::all_pole(low_pass, equal_ripple, 5);
    s.predistortionQ = 300;
    int steps = 0;
    for (;; ++steps) {
        auto d = std::make_unique<test::Design>();
        d->spec = s;
        d->answers.steps = steps;
        d->run();
        if (d->verdict.good()) break;
        EXPECT_EQ(d->verdict.fault, ApproximationFault::stopped);
        EXPECT_EQ(d->spec.designError, 1);
        ASSERT_LT(steps, 20);
    }
    EXPECT_GE(steps, 4);
}

TEST(Approximate, single_termination_leaves_the_parts_of_e) {
    FilterSpec s = test::with_minima(low_pass, equal_ripple, 7, -1);
    test::single_terminated(s);
    const auto d = run(s);
    ASSERT_TRUE(d->verdict.good());
    EXPECT_EQ(d->xp.es.count, 3);
    EXPECT_EQ(d->xp.os.count, 3);
    EXPECT_EQ(d->xp.es.multiplier, d->xp.eEven.multiplier);
    EXPECT_EQ(d->xp.ed.multiplier, 0);
    EXPECT_EQ(d->xp.od.multiplier, 0);
}

TEST(Approximate, a_low_pass_to_be_shifted_keeps_its_poles) {
    FilterSpec s = test::all_pole(low_pass, maximally_flat, 5);
    const auto plain = run(s);
    s.predistortionQ = 100;
    s.centerFrequency = 20e3;
    const auto d = run(s);
    ASSERT_TRUE(d->verdict.good());
    EXPECT_FALSE(d->notes.predistortion.requested);
    for (int i = 1; i <= 5; ++i) EXPECT_EQ(d->xp.ES.re(i), plain->xp.ES.re(i));
}

// gainConstant and lossConstant turn the sum over poles and zeros into the loss.
TEST(Approximate, constants_of_the_transfer_function) {
    for (const auto type : {low_pass, high_pass, band_pass}) {
        FilterSpec s = test::with_minima(type, equal_ripple, 6, -1);
        test::single_terminated(s);
        const auto d = run(s);
        ASSERT_TRUE(d->verdict.good());
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
}

// Unit elements are zeros at S = 1, whichever plane the design worked in.
TEST(Approximate, unit_elements_in_the_plane_of_the_tangent) {
    for (const auto type : {low_pass, high_pass}) {
        FilterSpec s = test::all_pole(type, equal_ripple, 5);
        s.medium = microwave;
        s.sampleFrequency = 14e3;
        s.unitElements = 2;
        (type == low_pass ? s.zerosAtInfinity : s.zerosAtZero) = 3;
        const auto d = run(s);
        ASSERT_TRUE(d->verdict.good());
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
