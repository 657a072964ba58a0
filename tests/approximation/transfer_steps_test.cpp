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

TEST(TransferSteps, FactorsToRootsAndBack) {
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

TEST(TransferSteps, RootsOnTheFrequencyAxisAreRefused) {
    const struct {
        const char* what;
        std::vector<Real> roots;
        Real a;
        int status;
        Real value;
    } rows[] = {
        {"odd, in the pass band", {-2}, 0, -1, -2},    {"double, in the pass band", {-2, -2}, 0.1L, -1, -2},
        {"on both sides of 1", {0.5L, 3}, 0, -1, 1},   {"on both sides of a", {0.5L, 0.05L}, 0.1L, -1, 0.1L},
        {"between a and 1", {0.5L, 0.3L}, 0.1L, 0, 0},
    };
    for (const auto& row : rows) {
        WideRootSet set;
        set.multiplier = 1;
        for (const Real root : row.roots) set.append({root, 0});
        WidePseudoPolynomial p;
        const FactorVerdict verdict = toFactors(set, row.a, p);
        EXPECT_EQ(verdict.status, row.status) << row.what;
        EXPECT_LT(gap(verdict.value, row.value), 1e-8) << row.what;
    }
}

// Q/E scanned step by step, against the summits that the scaling finds.
TEST(TransferSteps, ScalingFindsTheLargestTransmission) {
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
        EXPECT_LT(gap(largestTransmission(*x), 1 / (1 + 3e-8)), 1e-12);
    }
}

TEST(TransferSteps, TerminationsLoseWhatTheirRatioLoses) {
    for (const Real ratio : {1.0L, 1.4L, 2.0L, 10.0L}) {
        const auto d = test::designed(request("loadResistance 50", test::all_pole(low_pass, equal_ripple, 4)));
        // Even degree: the ripple at zero frequency serves this ratio, and no less.
        const Real root = std::sqrt(d->xp.eps2 + 1) + std::sqrt(d->xp.eps2);
        const Real least = root * root;
        EXPECT_LT(gap(d->xp.termRatioLimit / least, 1.0), 1e-15);
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

TEST(TransferPredistortion, PolesMoveByTheLossAtTheEdge) {
    for (const auto type : {low_pass, high_pass, band_pass}) {
        for (const auto passband : {maximally_flat, equal_ripple}) {
            for (const int n : {1, 2, 5, 8, 12}) {
                for (const bool single : {true, false}) {
                    SCOPED_TRACE("type " + number(type) + " degree " + std::to_string(n));
                    const int degree = type == band_pass ? n + n % 2 : n;
                    FilterSpec s = test::all_pole(type, passband, degree);
                    if (single) test::single_terminated(s);
                    const auto plain = test::designed(s), moved = test::designed(request("predistortionQ 200", s));
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
    // An even parametric one has no real root in its f any more.
    FilterSpec even = test::all_pole(band_pass, equal_ripple, 8);
    even.bandpassType = parametric;
    ++even.zerosAtZero, --even.zerosAtInfinity;
    EXPECT_GE(1.0L, largestTransmission(test::designed(request("predistortionQ 200", even))->xp));
}

// Where tanh(alpha + j theta) has the quality asked for at the edge, it is the S that the moved poles are those of.
TEST(TransferPredistortion, PolesOfLinesMoveByTheirAttenuation) {
    for (const auto type : {low_pass, high_pass, band_pass}) {
        SCOPED_TRACE(number(type));
        FilterSpec s = request("microwave sampleFrequency 14000", test::all_pole(type, equal_ripple, 6));
        const auto plain = test::designed(s), moved = test::designed(request("predistortionQ 60", s));
        const TransferFunction from = xToFrequencyPlane(plain->spec, plain->xp),
                               to = xToFrequencyPlane(moved->spec, moved->xp);
        const double t = edge_tangent(plain->spec, from);
        const auto alpha = std::atanh(static_cast<double>(attenuation_of_lines(60, t)));
        const Root stub = std::tanh(Root{alpha, std::atan(t)});
        EXPECT_NEAR(stub.imag() / stub.real(), 60, 1e-10);
        std::vector<Root> found;
        for (int i = 1; i <= to.poleCount; ++i) found.push_back(t * Root{to.POLES_RE(i), to.POLES_IM(i)});
        for (int i = 1; i <= from.poleCount; ++i) {
            const Root S = t * Root{from.POLES_RE(i), from.POLES_IM(i)};
            EXPECT_LT(distance_to_nearest(std::tanh(std::atanh(S) + alpha), found), 1e-12);
        }
    }
}

TEST(TransferPredistortion, QOutOfReachAsks) {
    const FilterSpec spec = test::all_pole(low_pass, equal_ripple, 7);
    const auto plain = test::designed(spec);
    const auto answered = [&](PredistortionChoice answer, double q = 2) {
        auto d = std::make_unique<test::Design>();
        d->spec = spec;
        d->spec.predistortionQ = q;
        d->answers.answer = answer;
        d->run();
        return d;
    };
    const auto cancelled = answered(PredistortionChoice::cancel);
    EXPECT_EQ(cancelled->verdict.fault, ApproximationFault::cancelled);
    EXPECT_EQ(cancelled->spec.designError, 1);
    EXPECT_EQ(cancelled->answers.asked, 1);
    EXPECT_TRUE(cancelled->notes.predistortion.not_possible);

    const auto without = answered(PredistortionChoice::no_q);
    ASSERT_TRUE(without->verdict.good());
    EXPECT_EQ(without->notes.predistortion.used_q, 0);
    for (int i = 1; i <= 7; ++i) EXPECT_EQ(without->xp.ES.re(i), plain->xp.ES.re(i));
    EXPECT_EQ(without->xp.es.multiplier, plain->xp.es.multiplier);

    const auto least = answered(PredistortionChoice::minimum_q);
    ASSERT_TRUE(least->verdict.good());
    double nearest = -HUGE_VAL, nearest_plain = -HUGE_VAL;
    for (const Root& p : poles_of(*least)) nearest = std::fmax(nearest, p.real());
    for (const Root& p : poles_of(*plain)) nearest_plain = std::fmax(nearest_plain, p.real());
    EXPECT_NEAR(nearest / nearest_plain, 0.5, 1e-12) << "half of the way to the axis";

    // A little below the minimum is raised to it without a question.
    const auto close = answered(PredistortionChoice::cancel, least->notes.predistortion.minimum_q * 0.95);
    ASSERT_TRUE(close->verdict.good());
    EXPECT_EQ(close->answers.asked, 0);
    EXPECT_EQ(close->notes.predistortion.used_q, close->notes.predistortion.minimum_q);
}

TEST(TransferPredistortion, DepthIsThatOfTheZeroInS) {
    const struct {
        const char* factor;
        int i;
        Real c, d, a;
        bool inverted;
        Real depth;
    } rows[] = {
        {"s^2 + 0.4 s + 0.9", 1, 0.7L / 0.4L, 0.1L / 0.4L, 0.2L, false, -0.2L},
        {"(s + 0.2)(s + 0.7)", 1, -0.06L / 0.9L, 0.86L / 0.9L, 0.2L, false, -0.2L},
        {"the same over a = 0, of the inverted variable", 1, 0.14L / 0.9L, 0.86L / 0.9L, 0, true, -1 / 0.7L},
        {"s + 0.5", 2, 0.5L, 0, 0.2L, false, -0.5L},
        {"s + 0.5, of the inverted variable", 2, 0.5L, 0, 0, true, -2},
    };
    for (const auto& row : rows) {
        WidePseudoPolynomial p;
        p.degree = 3;
        p.c(row.i) = row.c, p.d(row.i) = row.d;
        EXPECT_LT(gap(depthOfFactor(p, row.a, row.inverted, row.i), row.depth), 1e-14) << row.factor;
    }
}

// Mirroring keeps F and takes every second zero, from the deepest on, to the right half plane.
TEST(TransferSigns, AlternateFromTheDeepest) {
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
            EXPECT_LT(gap(cabs(p.plus) / cabs(shifted(q.plus, q.exponent - p.exponent)), 1.0), 1e-12);
        }
    }
}

TEST(TransferSigns, OneRealZeroOfAPairIsMirrored) {
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
