// The single steps between E and the immittances: factors, scaling, signs, predistortion.
#include <cmath>
#include <complex>
#include <memory>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "approximation/factor_signs.h"
#include "approximation/hurwitz_factors.h"
#include "approximation/power_loss.h"
#include "approximation/predistortion.h"
#include "approximation/s_plane.h"
#include "approximation/scaling.h"
#include "numeric/guarded.h"
#include "tests/approximation/transfer_cases.h"

namespace kavrel {
namespace {

using Real = long double;
using Root = std::complex<double>;

// Factors s^2 + b s + c0 drawn with poles of all qualities, near to the axis and real ones among them.
WidePseudoPolynomial random_hurwitz(std::mt19937_64& random, int n, Real a) {
    std::uniform_real_distribution<double> unit(0.05, 1);
    WidePseudoPolynomial p;
    p.degree = n;
    p.multiplier = 1.5L;
    for (int i = 1; i <= n / 2; ++i) {
        const Real place = 1.5L * unit(random);
        const Real b = i % 4 == 0 ? 2.5L * place : i % 4 == 1 ? 1e-5L : static_cast<Real>(unit(random));
        p.c(i) = (place * place - a) / b;
        p.d(i) = (1 - place * place) / b;
    }
    if (n % 2 == 1) p.c(p.factors()) = static_cast<Real>(unit(random));
    return p;
}

TEST(TransferSteps, factors_to_roots_and_back) {
    std::mt19937_64 random(3);
    for (const Real a : {0.0L, 0.04L, 0.9L}) {
        for (int n = 1; n <= 50; ++n) {
            SCOPED_TRACE(n);
            const WidePseudoPolynomial p = random_hurwitz(random, n, a);
            WideRootSet power = fromFactors(p, a);
            ASSERT_EQ(power.count, n);
            WidePseudoPolynomial back;
            ASSERT_TRUE(toFactors(power, a, back).good());
            EXPECT_TRUE(isHurwitz(back, a));
            // The same polynomial: of real zeros the pairing may differ, so values are compared.
            for (const Real x : {-0.3L, -4.0L, 1.7L}) {
                const PseudoValue<Real> v = evalPseudo(p, a, Complex<Real>{x, 0});
                const PseudoValue<Real> w = evalPseudo(back, a, Complex<Real>{x, 0});
                const Complex<Real> ratio = cdiv(v.plus, shifted(w.plus, w.exponent - v.exponent), solver_decades);
                EXPECT_LT(cabs(ratio - Complex<Real>{1, 0}), 1e-11L) << static_cast<double>(x);
            }
        }
    }
}

TEST(TransferSteps, roots_on_the_frequency_axis_are_refused) {
    const auto status_of = [](std::vector<Complex<Real>> roots, Real a) {
        WideRootSet set;
        set.multiplier = 1;
        for (const Complex<Real> root : roots) set.append(root);
        WidePseudoPolynomial p;
        return toFactors(set, a, p);
    };
    EXPECT_EQ(status_of({{-2, 0}}, 0).status, -1);  // odd, in the pass band
    EXPECT_EQ(status_of({{-2, 0}}, 0).value, -2);
    EXPECT_EQ(status_of({{-2, 0}, {-2, 0}}, 0.1L).status, -1);  // double, in the pass band
    EXPECT_NEAR(static_cast<double>(status_of({{-2, 0}, {-2, 0}}, 0.1L).value), -2.0, 1e-12);
    EXPECT_EQ(status_of({{0.5L, 0}, {3, 0}}, 0).value, 1);  // on both sides of 1
    EXPECT_NEAR(static_cast<double>(status_of({{0.5L, 0}, {0.05L, 0}}, 0.1L).value), 0.1, 1e-8);
    EXPECT_EQ(status_of({{0.5L, 0}, {0.3L, 0}}, 0.1L).status, 0);
}

// Q/E scanned step by step, against the summits that the scaling finds.
TEST(TransferSteps, scaling_finds_the_largest_transmission) {
    std::mt19937_64 random(5);
    std::uniform_real_distribution<double> unit(0.1, 1);
    for (int turn = 0; turn < 30; ++turn) {
        SCOPED_TRACE(turn);
        const auto x = std::make_unique<XPlane>();
        x->a = turn % 3 == 0 ? 0.0L : 0.3L;
        const int n = 2 + turn % 9;
        x->eFactors = random_hurwitz(random, n, x->a);
        for (int i = 1; i <= n / 2; ++i) x->eFactors.c(i) *= 1e-2L, x->eFactors.d(i) *= 1e-2L;
        x->ES = fromFactors(x->eFactors, x->a);
        ASSERT_TRUE(toFactors(x->ES, x->a, x->eFactors).good());
        x->QS.multiplier = 1;
        for (int i = 1; i <= n; ++i) x->QS.append({turn % 2 == 0 ? 1 : i % 2 == 0 ? x->a : 1, 0});

        Real scanned = 0;
        for (int i = 0; i <= 40000; ++i) {
            scanned = std::fmax(scanned, transmission(*x, axisPoint(i * std::numbers::pi_v<Real> / 80000)));
        }
        const Real found = largestTransmission(*x);
        EXPECT_GE(found * (1 + 1e-12L), scanned);

        scaleByMaximum(*x, x->a > 0);
        EXPECT_NEAR(static_cast<double>(largestTransmission(*x)), 1 / (1 + 3e-8), 1e-12);
    }
}

TEST(TransferSteps, terminations_lose_what_their_ratio_loses) {
    for (const Real ratio : {1.0L, 1.4L, 2.0L, 10.0L}) {
        const auto d = std::make_unique<test::Design>();
        d->spec = test::all_pole(low_pass, equal_ripple, 4);
        d->spec.loadResistance = d->spec.sourceResistance;
        d->spec.symmetryFlag = 0;
        d->run();
        ASSERT_TRUE(d->verdict.good());
        // Even degree: the ripple at zero frequency serves this ratio, and no less.
        const Real root = std::sqrt(d->xp.eps2 + 1) + std::sqrt(d->xp.eps2);
        const Real least = root * root;
        EXPECT_NEAR(static_cast<double>(d->xp.termRatioLimit / least), 1.0, 1e-15);
        EXPECT_EQ(raiseForTerminations(d->xp, ratio), ratio > least);
        const Real served = std::fmax(ratio, least);
        EXPECT_NEAR(static_cast<double>(lossRatioAtZero(d->xp) * 4 * served / ((1 + served) * (1 + served))), 1.0,
                    1e-12);
    }
    EXPECT_EQ(terminationRatio(50, 200), 4);
    EXPECT_EQ(terminationRatio(200, 50), 4);
    EXPECT_EQ(terminationRatio(50, 0), 1);
}

// --- predistortion ---------------------------------------------------------------------------------------------------

std::vector<Root> poles_of(const test::Design& d) {
    const TransferFunction t = xToFrequencyPlane(d.spec, d.xp);
    std::vector<Root> poles;
    for (int i = 1; i <= t.poleCount; ++i)
        poles.emplace_back(t.POLES_RE(i) / t.normFrequency, t.POLES_IM(i) / t.normFrequency);
    return poles;
}

double distance_to_nearest(const Root& wanted, const std::vector<Root>& found) {
    double nearest = HUGE_VAL;
    for (const Root& f : found) nearest = std::fmin(nearest, std::abs(f - wanted));
    return nearest;
}

TEST(TransferPredistortion, poles_move_by_the_loss_at_the_edge) {
    for (const auto type : {low_pass, high_pass, band_pass}) {
        for (const auto passband : {maximally_flat, equal_ripple}) {
            for (const int n : {1, 2, 5, 8, 12}) {
                for (const bool single : {true, false}) {
                    SCOPED_TRACE("type " + number(type) + " degree " + std::to_string(n));
                    const int degree = type == band_pass ? n + n % 2 : n;
                    const auto plain = std::make_unique<test::Design>();
                    plain->spec = test::all_pole(type, passband, degree);
                    if (single) test::single_terminated(plain->spec);
                    const auto moved = std::make_unique<test::Design>(*plain);
                    moved->spec.predistortionQ = 200;
                    plain->run();
                    moved->run();
                    ASSERT_TRUE(plain->verdict.good() && moved->verdict.good());
                    EXPECT_EQ(moved->notes.predistortion.used_q, 200);
                    const std::vector<Root> found = poles_of(*moved);
                    for (const Root& pole : poles_of(*plain))
                        EXPECT_LT(distance_to_nearest(pole + 1.0 / 200, found), 1e-13);
                    if (single) continue;
                    // The level leaves an f: no more power passes than there is, and the terminations are served.
                    EXPECT_GE(1.0L, largestTransmission(moved->xp));
                    if (type != band_pass) {
                        EXPECT_GE(static_cast<double>(lossRatioAtZero(moved->xp)) * (1 + 1e-12), 9.0 / 8);
                    }
                }
            }
        }
    }
}

// A ladder whose elements have the quality Q at the norm frequency has the response of the lossless one at s + 1/Q.
// Under it an all-pole low-pass is just its former self; zeros move with the poles, and what that leaves is small.
TEST(TransferPredistortion, losses_put_the_pass_band_back) {
    const auto spread = [](FilterSpec spec, double q) {
        const auto plain = std::make_unique<test::Design>();
        plain->spec = spec;
        const auto moved = std::make_unique<test::Design>(*plain);
        moved->spec.predistortionQ = q;
        plain->run();
        moved->run();
        EXPECT_TRUE(plain->verdict.good() && moved->verdict.good());
        const TransferFunction without = xToFrequencyPlane(plain->spec, plain->xp);
        const TransferFunction with = xToFrequencyPlane(moved->spec, moved->xp);
        const auto loss = [](const TransferFunction& t, std::complex<double> s) {
            double sum = 0;
            for (int i = 1; i <= t.poleCount; ++i)
                sum += 20 * std::log10(std::abs(s - std::complex(t.POLES_RE(i), t.POLES_IM(i))));
            for (int i = 1; i <= t.zeroCount; ++i)
                sum -= 20 * std::log10(std::abs(s - std::complex(t.ZEROS_RE(i), t.ZEROS_IM(i))));
            return sum;
        };
        double low = HUGE_VAL, high = -HUGE_VAL;
        const double from = spec.filterType == low_pass ? 0 : 2000, to = spec.filterType == high_pass ? 20000 : 3000;
        for (int i = 0; i <= 500; ++i) {
            const double w = 2 * std::numbers::pi * (from + (to - from) * i / 500);
            const double change = loss(with, {with.normFrequency / q, w}) - loss(without, {0, w});
            low = std::fmin(low, change);
            high = std::fmax(high, change);
        }
        return high - low;
    };
    for (const int n : {1, 2, 5, 8, 15}) {
        for (const auto passband : {maximally_flat, equal_ripple}) {
            EXPECT_LT(spread(test::all_pole(low_pass, passband, n), 300), 1e-9) << n;
        }
    }
    EXPECT_LT(spread(test::with_minima(low_pass, equal_ripple, 7, 0), 300), 1e-3);
    EXPECT_LT(spread(test::all_pole(high_pass, equal_ripple, 7), 300), 1e-3);
    EXPECT_LT(spread(test::all_pole(band_pass, equal_ripple, 10), 300), 1e-3);
}

TEST(TransferPredistortion, q_out_of_reach_asks) {
    const auto plain = std::make_unique<test::Design>();
    plain->spec = test::all_pole(low_pass, equal_ripple, 7);
    const auto asked = std::make_unique<test::Design>(*plain);
    plain->run();
    asked->spec.predistortionQ = 2;

    const auto cancelled = std::make_unique<test::Design>(*asked);
    cancelled->run();
    EXPECT_EQ(cancelled->verdict.fault, ApproximationFault::cancelled);
    EXPECT_EQ(cancelled->spec.designError, 1);
    EXPECT_EQ(cancelled->answers.asked, 1);
    EXPECT_TRUE(cancelled->notes.predistortion.not_possible);

    const auto without = std::make_unique<test::Design>(*asked);
    without->answers.answer = PredistortionChoice::no_q;
    without->run();
    ASSERT_TRUE(without->verdict.good());
    EXPECT_EQ(without->notes.predistortion.used_q, 0);
    for (int i = 1; i <= 7; ++i) EXPECT_EQ(without->xp.ES.re(i), plain->xp.ES.re(i));
    EXPECT_EQ(without->xp.es.multiplier, plain->xp.es.multiplier);

    const auto least = std::make_unique<test::Design>(*asked);
    least->answers.answer = PredistortionChoice::minimum_q;
    least->run();
    ASSERT_TRUE(least->verdict.good());
    double nearest = -HUGE_VAL, nearest_plain = -HUGE_VAL;
    for (const Root& p : poles_of(*least)) nearest = std::fmax(nearest, p.real());
    for (const Root& p : poles_of(*plain)) nearest_plain = std::fmax(nearest_plain, p.real());
    EXPECT_NEAR(nearest / nearest_plain, 0.01, 1e-9);
    EXPECT_NEAR(least->notes.predistortion.used_q, least->notes.predistortion.minimum_q, 1e-12);

    // A little below the minimum is raised to it without a question.
    const auto close = std::make_unique<test::Design>(*asked);
    close->spec.predistortionQ = least->notes.predistortion.minimum_q * 0.95;
    close->run();
    ASSERT_TRUE(close->verdict.good());
    EXPECT_EQ(close->answers.asked, 0);
    EXPECT_EQ(close->notes.predistortion.used_q, close->notes.predistortion.minimum_q);
}

TEST(TransferPredistortion, depth_is_that_of_the_zero_in_s) {
    const Real a = 0.2L;
    WidePseudoPolynomial p;
    p.degree = 3;
    const auto set = [&](Real b, Real c0) { p.c(1) = (c0 - a) / b, p.d(1) = (1 - c0) / b; };
    set(0.4L, 0.9L);
    EXPECT_NEAR(static_cast<double>(depthOfFactor(p, a, false, 1)), -0.2, 1e-15);
    set(0.9L, 0.14L);  // (s + 0.2)(s + 0.7)
    EXPECT_NEAR(static_cast<double>(depthOfFactor(p, a, false, 1)), -0.2, 1e-15);
    p.c(1) = 0.14L / 0.9L, p.d(1) = 0.86L / 0.9L;  // the same over a = 0, zeros of the inverted variable
    EXPECT_NEAR(static_cast<double>(depthOfFactor(p, 0, true, 1)), -1 / 0.7, 1e-14);
    p.c(2) = 0.5L;
    EXPECT_EQ(depthOfFactor(p, a, false, 2), -0.5L);
    EXPECT_EQ(depthOfFactor(p, 0, true, 2), -2);
}

// Mirroring keeps F and takes every second zero, from the deepest on, to the right half plane.
TEST(TransferSigns, alternate_from_the_deepest) {
    std::mt19937_64 random(9);
    for (const bool high : {false, true}) {
        const auto x = std::make_unique<XPlane>();
        x->fFactors = random_hurwitz(random, 11, 0);
        const WidePseudoPolynomial hurwitz = x->fFactors;
        signRoots(*x, high);
        std::vector<std::pair<Real, int>> order;
        for (int i = 1; i <= 6; ++i) order.emplace_back(depthOfFactor(hurwitz, 0, high, i), x->factor_sign(i));
        std::sort(order.begin(), order.end());
        for (std::size_t i = 0; i < order.size(); ++i) EXPECT_EQ(order[i].second, i % 2 == 0 ? 1 : -1);
        for (const Real v : {-0.4L, -3.0L, 1.9L}) {
            const PseudoValue<Real> p = evalPseudo(hurwitz, 0.0L, Complex<Real>{v, 0});
            const PseudoValue<Real> q = evalPseudo(x->fFactors, 0.0L, Complex<Real>{v, 0});
            EXPECT_NEAR(static_cast<double>(cabs(p.plus) / cabs(shifted(q.plus, q.exponent - p.exponent))), 1.0, 1e-12);
        }
    }
}

TEST(TransferSigns, one_real_zero_of_a_pair_is_mirrored) {
    const auto x = std::make_unique<XPlane>();
    x->a = 0.3L;
    x->fFactors.degree = 2;
    x->fFactors.multiplier = 2;
    const Real p1 = 0.4L, p2 = 1.1L, b = p1 + p2;
    x->fFactors.c(1) = (p1 * p2 - x->a) / b;
    x->fFactors.d(1) = (1 - p1 * p2) / b;
    ASSERT_EQ(mirrorRealZero(*x), 1);
    for (const Real v : {-0.4L, -3.0L}) {
        const Complex<Real> s = csqrt(squareOfS({v, 0}, x->a));
        // (s + p1)(s - p2) with the same leading coefficient
        const Complex<Real> wanted = (2 / b) * (1 - v) * ((s + Complex<Real>{p1, 0}) * (s - Complex<Real>{p2, 0}));
        const PseudoValue<Real> f = evalPseudo(x->fFactors, x->a, Complex<Real>{v, 0});
        EXPECT_LT(cabs(shifted(f.plus, f.exponent) - wanted), 1e-15L);
    }
    x->fFactors.c(1) = x->fFactors.d(1) = 1;  // complex zeros
    EXPECT_EQ(mirrorRealZero(*x), 0);
}

}  // namespace
}  // namespace kavrel
