// What the roots of a transformed filter say of its frequencies, and the two chains of a differential allpass.
#include "approximation/spectral_transform.h"

#include <cmath>
#include <complex>
#include <numbers>

#include <gtest/gtest.h>

#include "tests/approximation/digital_cases.h"

namespace kavrel {
namespace {

using C = std::complex<long double>;

constexpr long double pi = std::numbers::pi_v<long double>;

C on_circle(const DigitalFunction& f, double hertz, double fs) {
    const long double w = 2 * pi * hertz / fs;
    const Complex<Wide> h = value_at(f, {std::cos(w), std::sin(w)});
    return {h.re, h.im};
}

constexpr SpectralKind all_kinds[] = {SpectralKind::to_lowpass, SpectralKind::to_highpass, SpectralKind::to_bandpass,
                                      SpectralKind::to_bandreject};
struct Edges {
    double edge, lower, upper;
};
constexpr Edges all_edges[] = {
    {1000, 1500, 1620}, {1000, 40, 3900}, {90, 3950, 3990}, {3900, 20, 21}, {2000, 1999, 2001}};

test::DigitalCase case_of(ZTransform transform, std::string_view kind, int degree, double loss = 0.5) {
    test::DigitalCase c;
    c.transform = transform;
    c.spec.filterType = low_pass;
    c.spec.upperPassEdge = 1000;
    c.spec.bandEdgeLoss = loss;
    if (kind == "elliptic" || kind == "inverse_chebyshev") c.spec.upperStopEdge = 1700;
    test::take_function(kind, degree, c.spec);
    return c;
}

// A filter has at the images of a frequency what its low-pass has there, the edge among them, whatever the edges.
TEST(SpectralTransform, ImagesOfAFrequencyHaveItsLoss) {
    for (const auto transform : {ZTransform::bilinear, ZTransform::matched, ZTransform::impulse_invariant}) {
        const DigitalFunction low = test::designed(case_of(transform, "elliptic", 5)).low;
        for (const SpectralKind kind : all_kinds) {
            for (const auto& [edge, lower, upper] : all_edges) {
                const SpectralRequest request{.kind = kind, .fs = 8000, .edge = edge, .lower = lower, .upper = upper};
                const DigitalFunction f = spectralTransform(request, low);
                SCOPED_TRACE(testing::Message() << static_cast<int>(kind) << ' ' << edge << ' ' << lower);
                for (const double frequency : {0.0, 3.0, 500.0, 1000.0, 1300.0, 2500.0, 3700.0, 4000.0}) {
                    const FrequencyImages at = images_of(request, frequency);
                    const auto asked = static_cast<double>(std::abs(on_circle(low, frequency, 8000)));
                    EXPECT_NEAR(static_cast<double>(std::abs(on_circle(f, at.lower, 8000))), asked,
                                1e-10);  // roots in double
                    EXPECT_NEAR(static_cast<double>(std::abs(on_circle(f, at.upper, 8000))), asked,
                                1e-10);  // roots in double
                }
                const FrequencyImages ends = images_of(request, edge);
                const bool low_pass_made = kind == SpectralKind::to_lowpass;
                EXPECT_NEAR(ends.lower, low_pass_made ? upper : lower, 1e-13 * 8000);
                EXPECT_NEAR(ends.upper, kind == SpectralKind::to_highpass ? lower : upper, 1e-13 * 8000);
                for (const HalfRoot& pole : poles_of(f)) EXPECT_LT(std::hypot(pole.root.re, pole.root.im), 1);
            }
        }
    }
}

// The roots of an image lie where the allpass has the low-pass's root; zeros that are missing are at 0.
TEST(SpectralTransform, RootsAreMappedByTheAllpass) {
    DigitalFunction low;
    set_zeros({{.root = {-0.3L, 0}}, {.root = {1.7L, 0.4L}, .pair = true}}, low);
    set_poles({{.root = {0.2L, 0.6L}, .pair = true}, {.root = {0.85L, 0}}, {.root = {-0.4L, 0}}, {.root = {0.5L, 0}}},
              low);
    const long double fs = 8000;
    for (const SpectralKind kind : all_kinds) {
        for (const auto& [edge, lower, upper] : all_edges) {
            const SpectralRequest request{.kind = kind, .fs = 8000, .edge = edge, .lower = lower, .upper = upper};
            const DigitalFunction f = spectralTransform(request, low);
            const long double th = pi * edge / fs, w1 = pi * lower / fs, w2 = pi * upper / fs;
            const auto low_pass_z = [&](C z) -> C {
                const C i = 1.0L / z;
                const long double c = std::cos(w2 + w1) / std::cos(w2 - w1);
                if (kind == SpectralKind::to_lowpass) {
                    const long double a = std::sin(th - w2) / std::sin(th + w2);
                    return (1.0L - a * i) / (i - a);
                }
                if (kind == SpectralKind::to_highpass) {
                    const long double a = -std::cos(th + w1) / std::cos(th - w1);
                    return -(1.0L + a * i) / (i + a);
                }
                if (kind == SpectralKind::to_bandpass) {
                    const long double k = std::tan(th) / std::tan(w2 - w1), b = 2 * c * k / (k + 1),
                                      d = (k - 1) / (k + 1);
                    return -(d * i * i - b * i + 1.0L) / (i * i - b * i + d);
                }
                const long double k = std::tan(th) * std::tan(w2 - w1), b = 2 * c / (k + 1), d = (1 - k) / (1 + k);
                return (d * i * i - b * i + 1.0L) / (i * i - b * i + d);
            };
            // The images of a frequency are where the allpass has its angle, or that of its conjugate.
            for (const double frequency : {10.0, 700.0, 2000.0, 3100.0}) {
                const FrequencyImages at = images_of(request, frequency);
                const C asked = std::polar(1.0L, 2 * pi * frequency / fs);
                for (const double image : {at.lower, at.upper}) {
                    const C reached = low_pass_z(std::polar(1.0L, 2 * pi * image / fs));
                    const long double off = std::min(std::abs(reached - asked), std::abs(reached - std::conj(asked)));
                    const long double steep = std::max(1.0L, fs / static_cast<long double>(upper - lower));
                    EXPECT_LT(off, 1e-14L * steep) << static_cast<int>(kind) << ' ' << edge << ' ' << lower;
                }
            }
            const bool doubles = kind == SpectralKind::to_bandpass || kind == SpectralKind::to_bandreject;
            EXPECT_EQ(f.poleCount, doubles ? 10 : 5);
            // H at a place off the circle is that of the low-pass at the place that the allpass gives.
            for (const C z : {C(1.3L, 0.4L), C(-2.0L, 0.1L), C(0.1L, -1.5L)}) {
                const C below = low_pass_z(z);
                const Complex<Wide> h = value_at(f, {z.real(), z.imag()});
                const Complex<Wide> asked = value_at(low, {below.real(), below.imag()});
                EXPECT_LT(std::abs(C(h.re, h.im) / C(asked.re, asked.im) - 1.0L), 1e-11L)
                    << static_cast<int>(kind) << ' ' << edge << ' ' << lower;
            }
        }
    }
}

// A low-pass with the same edge is itself: its missing zeros stay at 0, where they are none.
TEST(SpectralTransform, ZerosThatComeToZeroAreDropped) {
    const DigitalFunction low = test::designed(case_of(ZTransform::matched, "elliptic", 5)).low;
    ASSERT_EQ(low.zeroCount, 4);
    const DigitalFunction same =
        spectralTransform({.kind = SpectralKind::to_lowpass, .fs = 8000, .edge = 1000, .upper = 1000}, low);
    EXPECT_EQ(same.zeroCount, 4);
    EXPECT_NEAR(same.zMultiplier, low.zMultiplier, 1e-15);
    const DigitalFunction moved =
        spectralTransform({.kind = SpectralKind::to_lowpass, .fs = 8000, .edge = 1000, .upper = 1100}, low);
    EXPECT_EQ(moved.zeroCount, 5);
    const DigitalFunction back =
        spectralTransform({.kind = SpectralKind::to_lowpass, .fs = 8000, .edge = 1100, .upper = 1000}, moved);
    EXPECT_EQ(back.zeroCount, 4);
}

// Chains.

C chain(const DigitalFunction& f, bool first, C z) {
    C value = 1;
    for (int i = 1; i <= f.poleCount; ++i) {
        const C pole(f.POLES_RE(i), f.POLES_IM(i));
        if ((f.LARR(i) == 1) == first) value *= (1.0L / z - std::conj(pole)) / (1.0L - pole / z);
    }
    return value;
}

// The largest |half the sum or difference of the chains - H| over the circle.
double chain_error(const DigitalFunction& f, bool sum) {
    long double error = 0;
    for (int i = 0; i <= 200; ++i) {
        const double hertz = 20.0 * i;
        const C z = std::polar(1.0L, 2 * pi * hertz / 8000);
        const C both = sum ? chain(f, true, z) + chain(f, false, z) : chain(f, false, z) - chain(f, true, z);
        error = std::max(error, std::abs(0.5L * both - on_circle(f, hertz, 8000)));
    }
    return static_cast<double>(error);
}

TEST(PoleChains, SumOrDifferenceIsTheFilter) {
    for (const std::string_view kind : {"butterworth", "chebyshev", "inverse_chebyshev", "elliptic"}) {
        for (const int degree : {3, 4, 5, 7, 9, 49}) {
            SCOPED_TRACE(testing::Message() << kind << ' ' << degree);
            test::DigitalCase c = case_of(ZTransform::bilinear, kind, degree);
            const DigitalFunction low = test::designed(c).low;
            EXPECT_EQ(low.allpass_ok, degree % 2 == 1);
            if (!low.allpass_ok) continue;
            EXPECT_LT(chain_error(low, true), 1e-12);
            for (const SpectralKind spectral : all_kinds) {
                const bool sum = spectral == SpectralKind::to_lowpass || spectral == SpectralKind::to_bandreject;
                if (degree > 25 && (spectral == SpectralKind::to_bandpass || spectral == SpectralKind::to_bandreject))
                    continue;
                const DigitalFunction f =
                    spectralTransform({.kind = spectral, .fs = 8000, .edge = 1000, .lower = 1500, .upper = 2600}, low);
                EXPECT_TRUE(f.allpass_ok);
                EXPECT_LT(chain_error(f, sum), 1e-12) << static_cast<int>(spectral);
            }
            c.spec.filterType = high_pass;
            c.spec.lowerPassEdge = 1700, c.spec.lowerStopEdge = c.spec.upperStopEdge > 0 ? 1000 : 0;
            c.spec.upperPassEdge = c.spec.upperStopEdge = 0;
            test::take_function(kind, degree, c.spec);
            EXPECT_LT(chain_error(test::designed(c).low, false), 1e-12) << "high-pass";
        }
        // A band-pass has them with an odd count of zeros at zero.
        for (const int degree : {6, 8, 10, 18, 50}) {
            SCOPED_TRACE(testing::Message() << kind << ' ' << degree);
            test::DigitalCase c = case_of(ZTransform::bilinear, kind, degree);
            c.spec.filterType = band_pass;
            c.spec.lowerPassEdge = 1000, c.spec.upperPassEdge = 1500;
            if (c.spec.upperStopEdge > 0) c.spec.lowerStopEdge = 800, c.spec.upperStopEdge = 1900;
            test::take_function(kind, degree, c.spec);
            const test::DigitalDesign d = test::designed(c);
            EXPECT_EQ(d.low.allpass_ok, degree / 2 % 2 == 1);
            if (!d.low.allpass_ok) continue;
            EXPECT_LT(chain_error(d.low, false), 1e-12);
        }
    }
}

// Chains belong to the bilinear transform, and to no other.
TEST(PoleChains, OtherTransformsHaveNone) {
    EXPECT_FALSE(test::designed(case_of(ZTransform::matched, "elliptic", 5)).low.allpass_ok);
    EXPECT_FALSE(test::designed(case_of(ZTransform::impulse_invariant, "elliptic", 5)).low.allpass_ok);
}

}  // namespace
}  // namespace kavrel
