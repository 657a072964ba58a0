// Whole digital functions against poles, zeros and levels of mpmath, and what each transform promises.
#include "approximation/z_transform.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <fstream>
#include <numbers>
#include <sstream>

#include <gtest/gtest.h>

#include "approximation/s_plane.h"
#include "approximation/spectral_transform.h"
#include "tests/approximation/digital_cases.h"

namespace kavrel {
namespace {

using Root = std::complex<double>;

struct GoldenCase {
    test::DigitalCase asked;
    double multiplier = 0;
    std::vector<Root> zeros;  // upper half plane
    std::vector<Root> poles;
};

bool read_case(const std::string& line, GoldenCase& g) {
    std::istringstream in(line);
    FilterSpec& s = g.asked.spec;
    SpectralRequest& target = g.asked.target;
    int transform = 0, spectral = 0;
    std::string kind;
    int degree = 0;
    in >> transform >> kind >> s.filterType >> degree >> s.lowerPassEdge >> s.upperPassEdge >> s.lowerStopEdge >>
        s.upperStopEdge >> s.bandEdgeLoss >> spectral >> target.lower >> target.upper >> g.multiplier;
    g.asked.transform = static_cast<ZTransform>(transform);
    target.kind = static_cast<SpectralKind>(spectral);
    test::take_function(kind, degree, s);
    for (auto* roots : {&g.zeros, &g.poles}) {
        std::size_t count = 0;
        in >> count;
        for (double re = 0, im = 0; count > 0 && in >> re >> im; --count) roots->emplace_back(re, im);
    }
    return !in.fail() && !g.poles.empty();
}

// The largest distance of a wanted root from the nearest one found that is left, relative to `size`.
template <class Size>
double deviation(const std::vector<Root>& wanted, HalfRoots found, const Size& size) {
    if (wanted.size() != found.size()) return HUGE_VAL;
    double largest = 0;
    for (const Root& w : wanted) {
        const auto distance = [&](const HalfRoot& f) {
            return std::abs(w - Root(static_cast<double>(f.root.re), static_cast<double>(f.root.im))) / size(w);
        };
        const auto nearest = std::ranges::min_element(found, {}, distance);
        largest = std::max(largest, distance(*nearest));
        found.erase(nearest);
    }
    return largest;
}

TEST(ZTransformGolden, RootsAndLevelAreThoseOfTheClosedForms) {
    std::ifstream file(TEST_DATA "/approximation/z_transform_golden.txt");
    int cases = 0;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#') continue;
        ++cases;
        GoldenCase g;
        ASSERT_TRUE(read_case(line, g)) << line.substr(0, 100);
        SCOPED_TRACE(line.substr(0, 130));
        const DigitalFunction f = test::designed(g.asked).function;
        EXPECT_LT(deviation(g.zeros, zeros_of(f), [](Root r) { return std::abs(r); }), 1e-12);
        EXPECT_LT(deviation(g.poles, poles_of(f), [](Root r) { return 1 - std::abs(r); }), 1e-12);
        EXPECT_NEAR(f.zMultiplier / g.multiplier, 1, 1e-12);
    }
    EXPECT_GE(cases, 230);
}

double loss_at(const DigitalFunction& f, double hertz, double fs) {
    const Wide w = 2 * std::numbers::pi_v<Wide> * Wide{hertz} / Wide{fs};
    const Complex<Wide> h = value_at(f, {std::cos(w), std::sin(w)});
    return static_cast<double>(-20 * std::log10(std::hypot(h.re, h.im)));
}

test::DigitalCase low_pass_case(ZTransform transform, const char* kind, int degree, double loss) {
    test::DigitalCase c;
    c.transform = transform;
    c.spec.filterType = low_pass;
    c.spec.upperPassEdge = 1000;
    c.spec.bandEdgeLoss = loss;
    if (std::string_view(kind) == "elliptic") c.spec.upperStopEdge = 2000;
    test::take_function(kind, degree, c.spec);
    return c;
}

// The bilinear transform has the losses of the prototype, the level among them, in every type.
TEST(ZTransform, PassBandIsThatOfThePrototype) {
    for (const FilterType type : {low_pass, high_pass, band_pass}) {
        for (const char* kind : {"butterworth", "chebyshev", "elliptic"}) {
            for (const int degree : {2, 3, 4, 7, 8, 16}) {
                if (type == band_pass && degree % 2 == 1) continue;
                test::DigitalCase c = low_pass_case(ZTransform::bilinear, kind, degree, 0.5);
                const bool stops = c.spec.upperStopEdge > 0;
                c.spec.filterType = type;
                if (type != low_pass) c.spec.lowerPassEdge = 700, c.spec.lowerStopEdge = stops ? 400 : 0;
                if (type == high_pass) c.spec.upperPassEdge = c.spec.upperStopEdge = 0;
                test::take_function(kind, degree, c.spec);
                const DigitalFunction f = test::designed(c).function;
                double least = 1e9, most = -1e9;
                for (int i = 0; i <= 400; ++i) {
                    const double from = type == low_pass ? 0 : 700, to = type == high_pass ? 4000 : 1000;
                    const double loss = loss_at(f, from + (to - from) * i / 400, 8000);
                    least = std::min(least, loss), most = std::max(most, loss);
                }
                EXPECT_NEAR(least, 0, 1e-2) << type << kind << degree;
                EXPECT_GT(least, -1e-10) << type << kind << degree;
                EXPECT_NEAR(most, 0.5, 1e-10) << type << kind << degree;
            }
        }
    }
}

// Aliasing has its price, and warped edges would add to it.
TEST(ZTransform, OthersHaveTheirLevelAtOneFrequency) {
    const auto butterworth = [](ZTransform transform, int degree) {
        return test::designed(low_pass_case(transform, "butterworth", degree, 0.5)).function;
    };
    for (const auto transform : {ZTransform::matched, ZTransform::impulse_invariant}) {
        for (const int degree : {1, 2, 5}) EXPECT_NEAR(loss_at(butterworth(transform, degree), 0, 8000), 0, 1e-12);
    }
    EXPECT_NEAR(loss_at(butterworth(ZTransform::impulse_invariant, 9), 2000, 8000), 45.0, 0.05);
    // scipy.signal.ellip(6, 0.1, 60, 2000 pi, analog=True, output="zpk"), exp(root/8000), level at 0: 1.2757 dB
    test::DigitalCase matched = low_pass_case(ZTransform::matched, "elliptic", 6, 0.1);
    matched.spec.upperStopEdge = 1548.6890709;
    const auto elliptic = test::designed(matched).function;
    EXPECT_NEAR(loss_at(elliptic, 1000, 8000), 1.2757, 0.001);
    EXPECT_EQ(elliptic.zeroCount, 6);
}

// The response of the filter is that of the prototype at the sampling times, but for its level and the delay of one
// sample that it leaves out.
TEST(ZTransform, ImpulseResponseIsSampled) {
    for (const int degree : {1, 2, 3, 6, 11}) {
        const test::DigitalDesign d =
            test::designed(low_pass_case(ZTransform::impulse_invariant, "chebyshev", degree, 0.1));
        const Table<double, max_degree>&re = d.prototype.POLES_RE, &im = d.prototype.POLES_IM;
        // Partial fractions of an all pole function.
        std::vector<std::complex<long double>> p, r;
        for (int i = 1; i <= degree; ++i) p.emplace_back(re(i), im(i));
        for (const auto& pole : p) {
            std::complex<long double> residue = 1;
            for (const auto& other : p) residue /= &other == &pole ? 1.0L : (pole - other) / 6283.0L;
            r.push_back(residue);
        }
        const auto analog = [&](int n) {
            long double h = 0;
            for (std::size_t i = 0; i < p.size(); ++i) h += (r[i] * std::exp(p[i] * (n / 8000.0L))).real();
            return h;
        };
        // H in powers of z^-1
        const auto expand = [](const HalfRoots& roots) {
            std::vector<long double> c{1};
            for (const HalfRoot& half : roots) {
                c.resize(c.size() + (half.pair ? 2 : 1), 0);
                const long double size = half.root.re * half.root.re + half.root.im * half.root.im;
                for (std::size_t k = c.size() - 1; k >= 1; --k) {
                    c[k] -= (half.pair ? 2 : 1) * half.root.re * c[k - 1];
                    if (half.pair && k >= 2) c[k] += size * c[k - 2];
                }
            }
            return c;
        };
        const auto num = expand(zeros_of(d.function)), den = expand(poles_of(d.function));
        std::vector<long double> h;
        long double worst = 0, peak = 0, level = 0;
        for (std::size_t n = 0; n < 60; ++n) {
            long double sum = n < num.size() ? num[n] : 0;
            for (std::size_t k = 1; k < den.size() && k <= n; ++k) sum -= den[k] * h[n - k];
            h.push_back(sum);
            const long double sampled = analog(static_cast<int>(n) + (degree >= 2 ? 1 : 0));
            if (n == 0) level = sampled;
            peak = std::max(peak, std::fabs(sampled));
            worst = std::max(worst, std::fabs(sum * level - sampled));
        }
        EXPECT_LT(worst, 1e-8L * peak) << degree;  // the first sample, the level here, is small against the terms
    }
}

}  // namespace
}  // namespace kavrel
