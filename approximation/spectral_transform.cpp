#include "approximation/spectral_transform.h"

#include <cmath>
#include <numbers>
#include <utility>

#include "numeric/guarded.h"

namespace kavrel {

namespace {

using Number = Complex<Wide>;

constexpr Wide pi = std::numbers::pi_v<Wide>;

// The images of Z are the roots of c0 z^2 + c1 z + c2, each c = constant + slope Z; for low-pass and high-pass those of
// c0 z + c1. c0 is what the root's factor leaves in the multiplier.
struct Coefficient {
    Wide constant = 0;
    Wide slope = 0;

    [[nodiscard]] Number at(Number z) const { return {constant + slope * z.re, slope * z.im}; }
};
struct RootRule {
    Coefficient c0;
    Coefficient c1;
    Coefficient c2;
    bool doubles = false;
};

struct HalfAngles {
    Wide th = 0;
    Wide w1 = 0;
    Wide w2 = 0;
};

HalfAngles half_angles(const SpectralRequest& request);
RootRule rule_of(SpectralKind kind, HalfAngles angle);
HalfRoots images(const RootRule& rule, const HalfRoots& roots, Wide& factor);

}  // namespace

DigitalFunction spectralTransform(const SpectralRequest& request, const DigitalFunction& low_pass) {
    if (request.kind == SpectralKind::none) return low_pass;
    const HalfAngles angle = half_angles(request);
    const RootRule rule = rule_of(request.kind, angle);
    HalfRoots zeros = zeros_of(low_pass);
    const HalfRoots poles = poles_of(low_pass);
    for (int missing = count_of(poles) - count_of(zeros); missing > 0; --missing) zeros.push_back({});

    DigitalFunction function;
    Wide above = 1, below = 1;
    set_zeros(images(rule, zeros, above), function);
    set_poles(images(rule, poles, below), function);
    function.zMultiplier = static_cast<double>(low_pass.zMultiplier * above / below);
    function.allpass_ok = low_pass.allpass_ok;
    if (function.allpass_ok && request.kind == SpectralKind::to_highpass) order_chains({-1, 0}, function);
    if (function.allpass_ok && request.kind == SpectralKind::to_bandpass) {
        const Wide centre = angle.w1 + angle.w2;
        order_chains({std::cos(centre), std::sin(centre)}, function);
    }
    return function;
}

FrequencyImages images_of(const SpectralRequest& request, double low_pass_frequency) {
    const auto [th, w1, w2] = half_angles(request);
    const Wide fs = request.fs;
    // tan(theta/2) = s/c
    const Wide half = pi * low_pass_frequency / fs, s = std::sin(half), c = std::cos(half);
    const auto hertz = [&](Wide angle) { return static_cast<double>(angle * fs / (2 * pi)); };
    const auto both = [&](Wide angle) { return FrequencyImages{hertz(angle), hertz(angle)}; };
    const auto about = [&](Wide centre, Wide distance) {
        return FrequencyImages{hertz(centre - distance), hertz(centre + distance)};
    };
    const Wide alpha = std::cos(w2 + w1) / std::cos(w2 - w1);
    switch (request.kind) {
        case SpectralKind::none: return {low_pass_frequency, low_pass_frequency};
        case SpectralKind::to_lowpass:
            return both(2 * std::atan2(s * std::sin(w2) * std::cos(th), c * std::cos(w2) * std::sin(th)));
        case SpectralKind::to_highpass: return both(2 * std::atan2(c * std::tan(th) * std::tan(w1), s));
        case SpectralKind::to_bandpass: {  // s sin w + k c cos w = k c alpha
            const Wide kc = c * std::tan(th) / std::tan(w2 - w1);
            return about(std::acos(kc * alpha / std::hypot(s, kc)), std::atan2(s, kc));
        }
        case SpectralKind::to_bandreject: {  // s cos w -+ k c sin w = s alpha
            const Wide kc = c * std::tan(th) * std::tan(w2 - w1);
            return about(std::acos(s * alpha / std::hypot(s, kc)), std::atan2(kc, s));
        }
    }
    return {};
}

namespace {

HalfAngles half_angles(const SpectralRequest& request) {
    const auto half = [&](double hertz) { return pi * hertz / Wide{request.fs}; };
    return {half(request.edge), half(request.lower), half(request.upper)};
}

RootRule rule_of(SpectralKind kind, HalfAngles angle) {
    const auto [th, w1, w2] = angle;
    const Wide centre = std::cos(w2 + w1) / std::cos(w2 - w1);
    switch (kind) {
        case SpectralKind::to_lowpass: {
            const Wide alpha = std::sin(th - w2) / std::sin(th + w2);
            return {.c0 = {1, alpha}, .c1 = {-alpha, -1}, .c2 = {}};
        }
        case SpectralKind::to_highpass: {
            const Wide alpha = -std::cos(th + w1) / std::cos(th - w1);
            return {.c0 = {1, alpha}, .c1 = {alpha, 1}, .c2 = {}};
        }
        case SpectralKind::to_bandpass: {
            const Wide k = std::tan(th) / std::tan(w2 - w1), middle = -2 * centre * k;
            return {.c0 = {k + 1, k - 1}, .c1 = {middle, middle}, .c2 = {k - 1, k + 1}, .doubles = true};
        }
        case SpectralKind::to_bandreject: {
            const Wide k = std::tan(th) * std::tan(w2 - w1);
            return {.c0 = {k + 1, k - 1}, .c1 = {-2 * centre, 2 * centre}, .c2 = {1 - k, -k - 1}, .doubles = true};
        }
        case SpectralKind::none: break;
    }
    return {.c0 = {1, 0}, .c1 = {0, -1}, .c2 = {}};
}

HalfRoot half_of(Number root, bool pair, int chain) {
    return {.root = {root.re, std::fabs(root.im)}, .pair = pair, .chain = chain};
}

void append_images(const RootRule& rule, const HalfRoot& half, HalfRoots& list) {
    const Number c0 = rule.c0.at(half.root);
    const Number b = cdiv(rule.c1.at(half.root), c0, solver_decades);
    if (!rule.doubles) return list.push_back(half_of(-b, half.pair, half.chain));
    const Number c = cdiv(rule.c2.at(half.root), c0, solver_decades);
    if (half.pair) {
        const auto [first, second] = csqrtDifference(-b.re / 2, -b.im / 2, c.re, c.im);
        list.push_back(half_of(first, true, half.chain));
        list.push_back(half_of(second, true, half.chain));
        return;
    }
    const auto [first, second] = rootsOfQuadratic(b.re, c.re);
    list.push_back(half_of(first, first.im != 0, half.chain));
    if (first.im == 0) list.push_back(half_of(second, false, half.chain));
}

// `factor` takes the c0 of each root.
HalfRoots images(const RootRule& rule, const HalfRoots& roots, Wide& factor) {
    HalfRoots list;
    for (const HalfRoot& half : roots) {
        const Number c0 = rule.c0.at(half.root);
        factor *= half.pair ? c0.re * c0.re + c0.im * c0.im : c0.re;
        append_images(rule, half, list);
    }
    return list;
}

}  // namespace

}  // namespace kavrel
