// What holds for every design: the balance of energy, the parts against the polynomials that they are parts of, and the
// immittances against ladders of known elements.
#include <array>
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
#include "approximation/immittance.h"
#include "approximation/power_loss.h"
#include "approximation/s_plane.h"
#include "approximation/scaling.h"
#include "numeric/guarded.h"
#include "tests/approximation/transfer_cases.h"

namespace kavrel {
namespace {

using Real = long double;

Complex<Real> value(const WideRootSet& set, Complex<Real> x) {
    const ScaledValue<Real> v = scaledProduct(set, x);
    return shifted(v.value, v.exponent);
}
Real value(const WideRootSet& set, Real x) { return value(set, Complex<Real>{x, 0}).re; }

// x of random real frequencies, in all bands.
std::vector<Real> frequencies(Real a) {
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> angle(0.01, std::numbers::pi / 2 - 0.01);
    std::vector<Real> places;
    for (int i = 0; i < 40; ++i) {
        const Real w = std::tan(static_cast<Real>(angle(random)));
        places.push_back((a - w * w) / (1 - w * w));
    }
    return places;
}

// (-1)^n times the power of the polynomial with these parts.
Real power_of_parts(const WideRootSet& even, const WideRootSet& odd, Real x, Real a, int n) {
    const Real ev = value(even, x);
    const Real od = value(odd, x);
    return n % 2 == 0 ? ev * ev - (x - a) * (1 - x) * od * od : (x - a) * od * od - (1 - x) * ev * ev;
}

// Keeps the largest deviation.
struct Largest {
    Real value = 0;
    void take(Real deviation, Real size) { value = std::fmax(value, std::fabs(deviation) / std::fabs(size)); }
};

void expect_identities(const test::Design& d) {
    const XPlane& xp = d.xp;
    const int n = xp.ES.count;
    Largest energy, split_e, level_e, split_f;
    for (const Real x : frequencies(xp.a)) {
        const Real e = value(xp.ES, x);
        const Real f = value(xp.FS, x);
        const Real q = value(xp.QS, x);
        energy.take(e - f - q, e);
        EXPECT_GE(q / e, 0);

        // e from its factors, as Ev + w Od or Ev + s Od.
        const PseudoValue<Real> p = evalPseudo(xp.eFactors, xp.a, Complex<Real>{x, 0});
        const Complex<Real> whole = shifted(p.plus, p.exponent);
        const Complex<Real> parts = Complex<Real>{value(xp.eEven, x), 0} + value(xp.eOdd, x) * p.root;
        split_e.take(cabs(whole - parts), cabs(whole));
        const Real power = (whole.re * whole.re + whole.im * whole.im) * (n % 2 == 0 ? 1 : std::fabs(1 - x));
        level_e.take(power - std::fabs(e), power);
        split_f.take(power_of_parts(xp.fEven, xp.fOdd, x, xp.a, n) - f, e);
    }
    EXPECT_LT(energy.value, 1e-12L);
    EXPECT_LT(split_e.value, 1e-12L);
    EXPECT_LT(level_e.value, 1e-12L);
    EXPECT_LT(split_f.value, 1e-12L);
}

void expect_immittances(const XPlane& xp) {
    const auto expect_pair = [&](const WideRootSet& e, const WideRootSet& f, const WideRootSet& sum,
                                 const WideRootSet& difference) {
        Largest of_sum, of_difference;
        for (const Real x : frequencies(xp.a)) {
            const Real size = std::fabs(value(e, x)) + std::fabs(value(f, x));
            of_sum.take(value(sum, x) - value(e, x) - value(f, x), size);
            if (f.multiplier != 0) of_difference.take(value(difference, x) - value(e, x) + value(f, x), size);
        }
        EXPECT_LT(of_sum.value, 1e-12L);
        EXPECT_LT(of_difference.value, 1e-12L);
        if (f.multiplier == 0) {
            EXPECT_EQ(difference.multiplier, 0);
        }
    };
    expect_pair(xp.eEven, xp.fEven, xp.es, xp.ed);
    expect_pair(xp.eOdd, xp.fOdd, xp.os, xp.od);
    // e + f and e - f are Hurwitz: their parts have their zeros at real frequencies.
    for (const WideRootSet* set : {&xp.es, &xp.os, &xp.ed, &xp.od}) {
        for (int i = 1; i <= set->count; ++i) {
            ASSERT_EQ(set->im(i), 0);
            // One may be at a or 1 itself, but for the last digits.
            ASSERT_TRUE(set->re(i) <= xp.a + 1e-17L || set->re(i) >= 1 - 1e-17L) << static_cast<double>(set->re(i));
        }
    }
}

// The scale of e and f, and whether their products leave the range between 2^-300 and 2^300, changes no root.
void expect_same_at_any_scale(const XPlane& xp) {
    const auto ws = std::make_unique<ExtractionWorkspace>();
    for (const int power : {-900, 900}) {
        XPlane scaled = xp;
        for (WideRootSet* part : {&scaled.eEven, &scaled.eOdd, &scaled.fEven, &scaled.fOdd}) {
            part->multiplier = std::ldexp(part->multiplier, power);
        }
        ASSERT_TRUE(immittancePolynomials(scaled, *ws).good());
        for (const auto set : {&XPlane::es, &XPlane::os, &XPlane::ed, &XPlane::od}) {
            ASSERT_EQ((scaled.*set).count, (xp.*set).count);
            EXPECT_EQ((scaled.*set).multiplier, std::ldexp((xp.*set).multiplier, power));
            for (int i = 1; i <= (xp.*set).count; ++i) {
                EXPECT_LT(std::fabs((scaled.*set).re(i) - (xp.*set).re(i)), 1e-14L * std::fabs((xp.*set).re(i)));
            }
        }
    }
}

TEST(TransferIdentity, EnergyAndPartsForEveryKind) {
    const auto check = [](const FilterSpec& spec, const std::string& name) {
        SCOPED_TRACE(name);
        const auto d = test::designed(spec);
        expect_identities(*d);
        expect_immittances(d->xp);
        expect_same_at_any_scale(d->xp);
        EXPECT_EQ(terminationRatio(spec.sourceResistance, spec.loadResistance), d->xp.requested_ratio);
    };
    for (const auto type : {low_pass, high_pass, band_pass}) {
        for (const auto passband : {maximally_flat, equal_ripple}) {
            for (const int n : {1, 2, 3, 6, 9, 14, 25, 32, 50}) {
                const std::string name =
                    "type " + number(type) + " passband " + number(passband) + " degree " + std::to_string(n);
                const int degree = type == band_pass ? n + n % 2 : n;
                check(test::all_pole(type, passband, degree), name + " all-pole");
                check(test::with_minima(type, passband, degree, type == band_pass ? -1 : 0), name + " minima");
            }
        }
    }
    for (const int n : {3, 7, 12, 20}) {
        for (const auto passband : {maximally_flat, equal_ripple}) {
            FilterSpec parametric_band = test::all_pole(band_pass, passband, n);
            parametric_band.bandpassType = parametric;
            if (n % 2 == 0) ++parametric_band.zerosAtZero, --parametric_band.zerosAtInfinity;
            check(parametric_band, "parametric " + std::to_string(n));
        }
        FilterSpec flat_to_zero = test::with_minima(low_pass, equal_ripple, n, 1);
        flat_to_zero.loadResistance = flat_to_zero.sourceResistance;
        check(flat_to_zero, "equal terminations " + std::to_string(n));
    }
}

// es ed and os od belong to |e|^2 - |f|^2: the largest deviation from Q.
Real deviation_of_products(const XPlane& xp) {
    const int n = xp.ES.count;
    Largest largest;
    for (const Real x : frequencies(xp.a)) {
        const Real even = value(xp.es, x) * value(xp.fEven.multiplier == 0 ? xp.es : xp.ed, x);
        const Real odd = value(xp.os, x) * value(xp.fOdd.multiplier == 0 ? xp.os : xp.od, x);
        const Real power = n % 2 == 0 ? even - (x - xp.a) * (1 - x) * odd : (x - xp.a) * odd - (1 - x) * even;
        largest.take(power - value(xp.QS, x), value(xp.ES, x));
    }
    return largest.value;
}

// fEven and fOdd are the parts of fFactors, signs and all.
void expect_parts_of_factors(const XPlane& xp) {
    Largest split_f;
    for (const Real x : frequencies(xp.a)) {
        const PseudoValue<Real> p = evalPseudo(xp.fFactors, xp.a, Complex<Real>{x, 0});
        const Complex<Real> whole = shifted(p.plus, p.exponent);
        const Complex<Real> parts = Complex<Real>{value(xp.fEven, x), 0} + value(xp.fOdd, x) * p.root;
        split_f.take(cabs(whole - parts), std::sqrt(std::fabs(value(xp.ES, x))));
    }
    EXPECT_LT(split_f.value, 1e-9L);
}

// All degrees, with all the ratios that make the zeros of f leave the axis.
TEST(TransferIdentity, UnequalTerminationsSplitFAtEveryDegree) {
    for (const auto type : {low_pass, high_pass}) {
        for (const auto passband : {maximally_flat, equal_ripple}) {
            for (int units = 0; units <= 8; ++units) {
                for (int n = units + 1; n <= 50; n += units == 0 ? 1 : 3) {
                    FilterSpec s = test::all_pole(type, passband, n);
                    s.loadResistance = std::array{60.0, 75.0, 500.0, 5000.0, 33.0}[static_cast<std::size_t>(n % 5)];
                    if (units > 0) {
                        s = request("microwave sampleFrequency 10e3", s);
                        s.unitElements = units;
                        (type == low_pass ? s.zerosAtInfinity : s.zerosAtZero) -= units;
                    }
                    SCOPED_TRACE("type " + number(type) + " passband " + number(passband) + " units " +
                                 std::to_string(units) + " degree " + std::to_string(n));
                    const auto d = test::designed(s);
                    expect_identities(*d);
                    if (d->xp.termRatioLimit == d->xp.requested_ratio) expect_parts_of_factors(d->xp);
                    EXPECT_LT(deviation_of_products(d->xp), 1e-12L);
                }
            }
        }
    }
}

TEST(TransferIdentity, RandomUnitElementsAndZeros) {
    RandomNumbers random(23);
    for (int turn = 0; turn < 300; ++turn) {
        const bool low = turn % 2 == 0;
        FilterSpec s = test::all_pole(low ? low_pass : high_pass, turn / 2 % 2 == 0 ? maximally_flat : equal_ripple, 1);
        s.bandEdgeLoss = std::pow(10.0, random.between(-4, 0.5));
        s.loadResistance = 50 * std::pow(10.0, random.between(-2, 2));
        s.medium = turn % 5 == 0 ? lumped : microwave;
        s.sampleFrequency = 12e3;
        s.unitElements = s.medium == lumped ? 0 : random.integer(1, 8);
        s.zeroCount = random.integer(0, 4);
        for (int i = 1; i <= s.zeroCount; ++i) s.FZI(i) = low ? random.between(3100, 5500) : random.between(400, 1900);
        const int far = random.integer(1, 30);
        (low ? s.zerosAtInfinity : s.zerosAtZero) = far;
        (low ? s.zerosAtZero : s.zerosAtInfinity) = 0;
        s.degree = far + s.unitElements + 2 * s.zeroCount;
        s.degreeParity = s.degree % 2;
        SCOPED_TRACE("turn " + std::to_string(turn) + " degree " + std::to_string(s.degree) + " units " +
                     std::to_string(s.unitElements));
        const auto d = test::designed(s);
        expect_identities(*d);
        EXPECT_LT(deviation_of_products(d->xp), 1e-12L);
    }
}

// e given by random poles: f is found from E alone.
TEST(TransferIdentity, RandomGivenE) {
    RandomNumbers random(29);
    for (int turn = 0; turn < 300; ++turn) {
        const int n = random.integer(1, 30);
        FilterSpec s = test::all_pole(turn % 2 == 0 ? low_pass : high_pass, functional_passband, n);
        s.bandEdgeLoss = 0;
        s.loadResistance = turn % 3 == 0 ? 50 : 50 * std::pow(10.0, random.between(-1, 1));
        for (int i = 1; i <= n / 2; ++i) {
            // Poles along an arc, none in the shadow of another.
            const double angle = std::numbers::pi / 2 * (i - random.between(0.2, 0.8)) / (n / 2 + 0.5);
            const double radius = s.filterType == low_pass ? random.between(0.6, 1.0) : 1 / random.between(0.6, 1.0);
            s.denominatorFactors(++s.denominatorDegree) = 2 * radius * std::cos(angle);
            s.denominatorFactors(++s.denominatorDegree) = radius * radius;
        }
        if (n % 2 == 1) s.denominatorFactors(++s.denominatorDegree) = random.between(0.5, 1.5);
        SCOPED_TRACE("turn " + std::to_string(turn) + " degree " + std::to_string(n));
        const auto d = test::designed(s);
        expect_identities(*d);
        EXPECT_LT(deviation_of_products(d->xp), 1e-12L);
    }
}

// Equal ripple poles as typed, in doubles, odd degrees.
TEST(TransferIdentity, GivenEOfEqualRipple) {
    for (const double load : {50.0, 75.0}) {
        for (int n = 3; n <= 49; n += 2) {
            SCOPED_TRACE("load " + std::to_string(load) + " degree " + std::to_string(n));
            FilterSpec s = test::all_pole(low_pass, functional_passband, n);
            s.bandEdgeLoss = 0;
            s.loadResistance = load;
            const double u = std::asinh(1 / std::sqrt(std::pow(10.0, 0.01) - 1)) / n;
            for (int i = 1; i <= n / 2; ++i) {
                const double angle = (2 * i - 1) * std::numbers::pi / (2 * n);
                const std::complex<double> pole(-std::sinh(u) * std::sin(angle), std::cosh(u) * std::cos(angle));
                s.denominatorFactors(++s.denominatorDegree) = -2 * pole.real();
                s.denominatorFactors(++s.denominatorDegree) = std::norm(pole);
            }
            s.denominatorFactors(++s.denominatorDegree) = std::sinh(u);
            const auto d = test::designed(s);
            expect_identities(*d);
            EXPECT_LT(deviation_of_products(d->xp), 1e-12L);
        }
    }
}

// At s = 0, which is x = a, e + f and e - f are their even parts: their ratio is that of the terminations.
TEST(TransferIdentity, UnequalTerminationsAreMetAtZero) {
    for (const auto passband : {maximally_flat, equal_ripple}) {
        for (int n = 1; n <= 9; ++n) {
            SCOPED_TRACE(n);
            const auto d = test::designed(request("loadResistance 150", test::all_pole(low_pass, passband, n)));
            const Real z = value(d->xp.es, d->xp.a) / value(d->xp.ed, d->xp.a);
            EXPECT_LT(gap(z < 1 ? 1 / z : z, 3), 1e-12);
        }
    }
}

// The two allpasses whose half sum or half difference is the filter.
TEST(TransferIdentity, PoleChainsMakeTheFilter) {
    std::vector<FilterSpec> specs;
    for (const int n : {1, 3, 7, 15, 25, 31, 49}) {
        for (const auto passband : {maximally_flat, equal_ripple}) {
            specs.push_back(test::with_minima(low_pass, passband, n, 0));
            specs.push_back(test::with_minima(high_pass, passband, n, 0));
            if (n > 25) continue;
            specs.push_back(test::all_pole(band_pass, passband, 2 * n));
            specs.push_back(test::with_minima(band_pass, passband, 2 * n, -1));
        }
    }
    for (FilterSpec& spec : specs) {
        SCOPED_TRACE("type " + number(spec.filterType) + " degree " + std::to_string(spec.degree));
        test::single_terminated(spec);
        const auto d = test::designed(request("sampled_data sampleFrequency 30e3", spec));
        ASSERT_TRUE(d->notes.has_pole_chains);
        const TransferFunction t = xToFrequencyPlane(d->spec, d->xp);
        for (const double hertz : {100.0, 900.0, 1990.0, 2400.0, 2900.0, 3300.0, 6000.0, 12000.0}) {
            const double w = std::tan(std::numbers::pi * hertz / 30e3) /
                             std::tan(std::numbers::pi * static_cast<double>(d->xp.normFrequency) / 30e3);
            std::complex<double> first = 1, second = 1;
            for (int i = 1; i <= t.poleCount; ++i) {
                const std::complex<double> p(t.POLES_RE(i), t.POLES_IM(i)), s(0, w);
                (d->xp.LARR(i) == 1 ? first : second) *= -(s + std::conj(p)) / (s - p);
            }
            const double passed = std::pow(10, -lossAt(d->spec, d->xp, hertz) / 10);
            const double sum = std::norm(first + second) / 4;
            EXPECT_LT(std::fmin(std::fabs(sum - passed), std::fabs(1 - sum - passed)), 1e-10) << hertz;
        }
    }

    // No allpass form: even low-pass, or a function that is neither even nor odd.
    const auto d = test::designed(test::all_pole(low_pass, equal_ripple, 4));
    EXPECT_FALSE(d->notes.has_pole_chains);
    EXPECT_EQ(d->xp.LARR(1), 0);
}

}  // namespace
}  // namespace kavrel
