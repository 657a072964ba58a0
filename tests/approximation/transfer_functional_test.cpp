// Designs by given polynomials.
#include <cmath>
#include <complex>
#include <memory>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "approximation/functional_input.h"
#include "approximation/power_loss.h"
#include "approximation/s_plane.h"
#include "tests/approximation/transfer_cases.h"

namespace kavrel {
namespace {

using Root = std::complex<double>;

void append_factors(Table<double, factor_limit>& table, int& degree, const std::vector<Root>& pairs,
                    const std::vector<double>& singles) {
    for (const Root& p : pairs) {
        table(++degree) = -2 * p.real();
        table(++degree) = std::norm(p);
    }
    for (std::size_t i = 0; i + 1 < singles.size(); i += 2) {
        table(++degree) = -(singles[i] + singles[i + 1]);
        table(++degree) = singles[i] * singles[i + 1];
    }
    if (singles.size() % 2 == 1) table(++degree) = -singles.back();
}

FilterSpec functional(FilterType filter_type) {
    FilterSpec s = test::all_pole(filter_type, functional_passband, 0);
    s.bandEdgeLoss = 0;
    s.loadResistance = s.sourceResistance;
    return s;
}

// A low-pass elliptic filter, or its high-pass, as factors in units of the edge.
struct Given {
    test::Design source;
    std::vector<Root> poles;
    std::vector<double> real_poles;
};
std::unique_ptr<Given> source_design(FilterType type, int n) {
    auto g = std::make_unique<Given>();
    g->source.spec = test::with_minima(type, equal_ripple, n, type == band_pass ? -1 : 0);
    g->source.run();
    EXPECT_TRUE(g->source.verdict.good());
    const TransferFunction t = xToFrequencyPlane(g->source.spec, g->source.xp);
    for (int i = 1; i <= t.poleCount; ++i) {
        const Root p = Root(t.POLES_RE(i), t.POLES_IM(i)) / t.normFrequency;
        if (p.imag() > 0) g->poles.push_back(p);
        if (p.imag() == 0) g->real_poles.push_back(p.real());
    }
    return g;
}

// The finite zeros and counts of one design for another one of the same type, as typed.
void take_zeros(const FilterSpec& from, const XPlane& xp, FilterSpec& to) {
    const TransferFunction t = xToFrequencyPlane(from, xp);
    for (int i = 1; i <= t.zeroCount; ++i) {
        if (!(t.ZEROS_IM(i) > 0)) continue;
        ++to.zeroCount;
        to.FZR(to.zeroCount) = 0;
        to.FZI(to.zeroCount) = t.ZEROS_IM(i) / (2 * std::numbers::pi);
    }
    to.zerosAtZero = t.zerosAtZero;
    to.zerosAtInfinity = t.zerosAtInfinity;
}

double largest_difference_of_loss(const test::Design& a, const test::Design& b, double offset = 0) {
    double largest = 0;
    for (double hertz = 105; hertz < 20e3; hertz *= 1.13) {
        const double loss_a = lossAt(a.spec, a.xp, hertz);
        const double loss_b = lossAt(b.spec, b.xp, hertz);
        largest = std::fmax(largest, std::fabs(loss_a + offset - loss_b));
    }
    return largest;
}

TEST(TransferFunctional, GivenEIsReturned) {
    for (const auto type : {low_pass, high_pass, band_pass}) {
        for (const int n : {3, 4, 8, 15, 30}) {
            if (type == band_pass && n % 2 == 1) continue;
            SCOPED_TRACE("type " + number(type) + " degree " + std::to_string(n));
            const auto g = source_design(type, n);
            FilterSpec s = functional(type);
            take_zeros(g->source.spec, g->source.xp, s);
            append_factors(s.denominatorFactors, s.denominatorDegree, g->poles, g->real_poles);
            s.degree = n;
            const auto d = test::designed(s);
            // Level differs: a given e is scaled so that it just passes all power somewhere, and by the terminations.
            const double offset = lossAt(d->spec, d->xp, 2500.0) - lossAt(g->source.spec, g->source.xp, 2500.0);
            EXPECT_LT(largest_difference_of_loss(g->source, *d, offset), 1e-9);
            EXPECT_GT(1e-6L, 1 - largestTransmission(d->xp));
        }
    }
}

TEST(TransferFunctional, GivenFIsReturned) {
    std::mt19937_64 random(11);
    std::uniform_real_distribution<double> part(0.1, 0.9);
    for (const auto type : {low_pass, high_pass, band_pass}) {
        for (int n = 2; n <= 24; ++n) {
            if (type == band_pass && n % 2 == 1) continue;
            SCOPED_TRACE("type " + number(type) + " degree " + std::to_string(n));
            FilterSpec s = functional(type);
            // Zeros of f on the axis and off it, one transmission zero beyond the band, the rest at the far end.
            std::vector<Root> pairs;
            for (int i = 1; i <= n / 2; ++i) {
                const double place = type == high_pass  ? 1 / part(random)
                                     : type == low_pass ? part(random)
                                                        : 0.67 + 0.33 * part(random);
                pairs.emplace_back(i % 3 == 0 ? -0.2 * part(random) : 0.0, place);
            }
            const std::vector<double> singles(static_cast<std::size_t>(n % 2), -part(random));
            append_factors(s.numeratorFactors, s.numeratorDegree, pairs, singles);
            s.functionMultiplier = 0.8;
            s.degree = n;
            s.zeroCount = 1;
            s.FZI(1) = type == low_pass ? 4000 : type == high_pass ? 1500 : 3700;
            const int far = n - 2;
            s.zerosAtInfinity = type == low_pass ? far : type == band_pass ? far / 2 : 0;
            s.zerosAtZero = far - s.zerosAtInfinity;
            const auto d = test::designed(s);

            const double edge = type == high_pass ? s.lowerPassEdge : s.upperPassEdge;
            for (const double hertz : {300.0, 1700.0, 2100.0, 2345.0, 2900.0, 5000.0, 11000.0}) {
                const Root jw(0, hertz / edge);
                Root k = s.functionMultiplier;
                for (const Root& p : pairs) k *= jw * jw - 2 * p.real() * jw + std::norm(p);
                for (const double p : singles) k *= jw - p;
                k /= std::pow(jw, s.zerosAtZero) * (jw * jw + std::pow(s.FZI(1) / edge, 2));
                EXPECT_NEAR(lossAt(d->spec, d->xp, hertz), 10 * std::log10(1 + std::norm(k)), 1e-9) << hertz;
            }
        }
    }
}

// Of a high-pass f may be of lower degree: its reflection zeros at infinity.
TEST(TransferFunctional, HighPassWithReflectionZerosAtInfinity) {
    for (const int given : {1, 2, 3}) {
        SCOPED_TRACE(given);
        const char* const factors[] = {"0.5", "0.2 0.65", "0.2 0.65 0.5"};
        const auto d = test::designed(
            request(std::string("zerosAtZero 4 degree 4 functionMultiplier 0.3 numeratorFactors ") + factors[given - 1],
                    functional(high_pass)));
        for (const double hertz : {700.0, 2000.0, 9000.0}) {
            const Root jw(0, hertz / 2000.0);
            Root k = 0.3;
            if (given >= 2) k *= jw * jw + 0.2 * jw + 0.65;
            if (given % 2 == 1) k *= jw + 0.5;
            k /= std::pow(jw, 4);
            EXPECT_NEAR(lossAt(d->spec, d->xp, hertz), 10 * std::log10(1 + std::norm(k)), 1e-11);
        }
    }
}

// Digital: the zeros of e lie at frequencies of the true axis, those of the warped one are tan(theta w)/tan(theta).
TEST(TransferFunctional, SampledEIsWarped) {
    for (const auto type : {low_pass, high_pass}) {
        FilterSpec s = request("sampled_data sampleFrequency 10e3 degree 3", functional(type));
        (type == low_pass ? s.zerosAtInfinity : s.zerosAtZero) = 3;
        test::single_terminated(s);
        const Root p(-0.3, 0.9);
        append_factors(s.denominatorFactors, s.denominatorDegree, {p}, {-0.4});
        const auto d = test::designed(s);
        const TransferFunction t = xToFrequencyPlane(d->spec, d->xp);
        const double theta = std::numbers::pi * (type == low_pass ? 3000 : 2000) / 10e3;
        const Root wanted = std::tanh(theta * p) / std::tan(theta);
        const double single = std::tanh(theta * -0.4) / std::tan(theta);
        ASSERT_EQ(t.poleCount, 3);
        EXPECT_LT(std::abs(Root(t.POLES_RE(1), t.POLES_IM(1)) - wanted), 1e-14);
        EXPECT_NEAR(t.POLES_RE(3), single, 1e-14);
    }
}

// Equal minima belong to the poles: those of an elliptic filter get its zeros back, also through f.
TEST(TransferFunctional, GivenEGetsEqualMinima) {
    const auto g = source_design(low_pass, 7);
    FilterSpec s = request("equal_minima stopbandLoss 40 upperStopEdge 4500 degree 7", functional(low_pass));
    append_factors(s.denominatorFactors, s.denominatorDegree, g->poles, g->real_poles);
    const auto d = test::designed(s);
    ASSERT_EQ(d->xp.zeroCount, 3);
    for (int i = 1; i <= 3; ++i) {
        double nearest = 1;
        for (int j = 1; j <= 3; ++j) {
            nearest = std::fmin(nearest, static_cast<double>(std::fabs(d->xp.ARR(i) / g->source.xp.ARR(j) - 1)));
        }
        EXPECT_LT(nearest, 1e-10);
    }
    double least = 1e9;
    for (int i = 1; i <= 20000; ++i) least = std::fmin(least, lossAt(d->spec, d->xp, 4500 / (i / 20000.0)));
    EXPECT_NEAR(d->notes.front.upper_loss_reached, least, 1e-4) << "of the stopband, from E";
}

}  // namespace
}  // namespace kavrel
