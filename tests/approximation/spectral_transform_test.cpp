// What the roots of a transformed filter say of its frequencies.
#include "approximation/spectral_transform.h"

#include <gtest/gtest.h>

#include "tests/approximation/digital_cases.h"

namespace kavrel {
namespace {

using C = std::complex<long double>;
using enum SpectralKind;
using test::h_at;
using test::low_pass_case;

constexpr long double pi = std::numbers::pi_v<long double>;

// Where the allpass of a transformation leads.
C low_pass_z(const SpectralRequest& r, C z) {
    const C i = 1.0L / z;
    const long double th = pi * r.edge / r.fs, w1 = pi * r.lower / r.fs, w2 = pi * r.upper / r.fs;
    if (r.kind == to_lowpass) {
        const long double a = std::sin(th - w2) / std::sin(th + w2);
        return (1.0L - a * i) / (i - a);
    }
    if (r.kind == to_highpass) {
        const long double a = -std::cos(th + w1) / std::cos(th - w1);
        return -(1.0L + a * i) / (i + a);
    }
    const bool pass = r.kind == to_bandpass;
    const long double c = std::cos(w2 + w1) / std::cos(w2 - w1), t = std::tan(w2 - w1);
    const long double k = pass ? std::tan(th) / t : std::tan(th) * t;
    const long double b = 2 * c * (pass ? k : 1) / (k + 1), d = (pass ? k - 1 : 1 - k) / (k + 1);
    return (pass ? -1.0L : 1.0L) * (d * i * i - b * i + 1.0L) / (i * i - b * i + d);
}

// H at any place is that of the low-pass where the allpass leads; so it is at the images of a frequency, whatever the
// edges, which are images of the edge.
TEST(SpectralTransform, HIsThatOfTheLowPassWhereTheAllpassLeads) {
    DigitalFunction by_hand;  // zeros that are missing are at 0
    set_zeros({{.root = {-0.3L, 0}}, {.root = {1.7L, 0.4L}, .pair = true}}, by_hand);
    set_poles({{.root = {0.2L, 0.6L}, .pair = true}, {.root = {0.85L, 0}}, {.root = {-0.4L, 0}}, {.root = {0.5L, 0}}},
              by_hand);
    std::vector<DigitalFunction> lows = {by_hand};
    for (const auto transform : {ZTransform::bilinear, ZTransform::matched, ZTransform::impulse_invariant})
        lows.push_back(test::designed(low_pass_case(transform, "elliptic", 5)).low);
    constexpr double edges[][3] = {
        {1000, 1500, 1620}, {1000, 40, 3900}, {90, 3950, 3990}, {3900, 20, 21}, {2000, 1999, 2001}};
    for (const SpectralKind kind : {to_lowpass, to_highpass, to_bandpass, to_bandreject}) {
        for (const auto& [edge, lower, upper] : edges) {
            SCOPED_TRACE(testing::Message() << static_cast<int>(kind) << ' ' << edge << ' ' << lower);
            const SpectralRequest request{.kind = kind, .fs = 8000, .edge = edge, .lower = lower, .upper = upper};
            const FrequencyImages ends = images_of(request, edge);
            EXPECT_NEAR(ends.lower, kind == to_lowpass ? upper : lower, 1e-13 * 8000);
            EXPECT_NEAR(ends.upper, kind == to_highpass ? lower : upper, 1e-13 * 8000);
            for (const DigitalFunction& low : lows) {
                const DigitalFunction f = spectralTransform(request, low);
                EXPECT_EQ(f.poleCount, kind == to_bandpass || kind == to_bandreject ? 10 : 5);
                for (const HalfRoot& pole : poles_of(f)) EXPECT_LT(std::hypot(pole.root.re, pole.root.im), 1);
                for (const C z : {C(1.3L, 0.4L), C(-2.0L, 0.1L), C(0.1L, -1.5L)})
                    EXPECT_LT(std::abs(h_at(f, z) / h_at(low, low_pass_z(request, z)) - 1.0L), 1e-11L);
                for (const double frequency : {0.0, 3.0, 500.0, 1000.0, 1300.0, 2500.0, 3700.0, 4000.0}) {
                    const FrequencyImages at = images_of(request, frequency);
                    for (const double image : {at.lower, at.upper}) {
                        const C reached = low_pass_z(request, std::polar(1.0L, 2 * pi * image / 8000));
                        const C asked = std::polar(1.0L, 2 * pi * frequency / 8000);
                        const long double steep = std::max(1.0, 8000 / (upper - lower));
                        EXPECT_LT(std::min(std::abs(reached - asked), std::abs(reached - std::conj(asked))),
                                  1e-14L * steep);
                    }
                }
            }
        }
    }
}

// A low-pass with the same edge is itself: its missing zeros stay at 0, where they are none.
TEST(SpectralTransform, ZerosThatComeToZeroAreDropped) {
    const DigitalFunction low = test::designed(low_pass_case(ZTransform::matched, "elliptic", 5)).low;
    const auto moved = [](const DigitalFunction& f, double edge, double upper) {
        return spectralTransform({.kind = to_lowpass, .fs = 8000, .edge = edge, .upper = upper}, f);
    };
    EXPECT_EQ(moved(low, 1000, 1000).zeroCount, 4);
    EXPECT_NEAR(moved(low, 1000, 1000).zMultiplier, low.zMultiplier, 1e-15);
    EXPECT_EQ(moved(low, 1000, 1100).zeroCount, 5);
    EXPECT_EQ(moved(moved(low, 1000, 1100), 1100, 1000).zeroCount, 4);
}

}  // namespace
}  // namespace kavrel
