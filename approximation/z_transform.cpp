#include "approximation/z_transform.h"

#include <cmath>
#include <numbers>

#include "approximation/impulse_invariance.h"
#include "numeric/guarded.h"

namespace kavrel {

namespace {

using Number = Complex<Wide>;

constexpr Wide pi = std::numbers::pi_v<Wide>;

// The prototype with s in units of the band edge.
struct Prototype {
    HalfRoots zeros;
    HalfRoots poles;
    double level = 0;
    Wide edge_angle = 0;  // T'
};

Prototype in_units_of_edge(const FilterSpec& spec, const TransferFunction& t, double fs);
HalfRoots bilinear_zeros(const Prototype& p, Wide t, Wide& multiplier);
HalfRoots bilinear_poles(const Prototype& p, Wide t, Wide& multiplier);
HalfRoots exponentials(const HalfRoots& roots, Wide edge_angle);
Wide reference_frequency(const FilterSpec& spec, Wide edge_angle);
void match_level(const Prototype& p, Wide reference, DigitalFunction& function);

}  // namespace

bool zTransform(ZTransform transform, const FilterSpec& spec, const TransferFunction& t, double fs,
                DigitalFunction& function) {
    const Prototype p = in_units_of_edge(spec, t, fs);
    function = {};
    if (transform == ZTransform::matched || transform == ZTransform::impulse_invariant) {
        set_poles(exponentials(p.poles, p.edge_angle), function);
        function.zMultiplier = p.level < 0 ? -1 : 1;
        if (transform == ZTransform::matched) {
            set_zeros(exponentials(p.zeros, p.edge_angle), function);
        } else {
            HalfRoots zeros;
            Wide multiplier = 0;
            if (!impulseInvariantNumerator(p.zeros, p.poles, p.level, p.edge_angle, zeros, multiplier)) return false;
            set_zeros(zeros, function);
            function.zMultiplier = static_cast<double>(multiplier);
            if (!is_usable(function)) return false;
        }
        match_level(p, reference_frequency(spec, p.edge_angle), function);
    } else {
        const Wide tangent = std::tan(p.edge_angle / 2);
        Wide multiplier = p.level;
        set_zeros(bilinear_zeros(p, tangent, multiplier), function);
        set_poles(bilinear_poles(p, tangent, multiplier), function);
        function.zMultiplier = static_cast<double>(multiplier);
    }
    return is_usable(function);
}

void takePoleChains(const FilterSpec& spec, const XPlane& x, double fs, DigitalFunction& function) {
    for (int i = 1; i <= function.poleCount; ++i) function.LARR(i) = x.LARR(i) == 1 ? 1 : 2;
    function.allpass_ok = true;
    if (spec.filterType == high_pass) order_chains({-1, 0}, function);
    if (spec.filterType == band_pass) {
        const Wide centre = pi * (Wide{spec.lowerPassEdge} + Wide{spec.upperPassEdge}) / Wide{fs};
        order_chains({std::cos(centre), std::sin(centre)}, function);
    }
}

namespace {

Prototype in_units_of_edge(const FilterSpec& spec, const TransferFunction& t, double fs) {
    Prototype p{.zeros = half_roots(t.ZEROS_RE, t.ZEROS_IM, t.zeroCount),
                .poles = half_roots(t.POLES_RE, t.POLES_IM, t.poleCount),
                .level = t.level,
                .edge_angle = Wide{t.normFrequency} / Wide{fs}};
    if (spec.medium != lumped) return p;
    for (HalfRoots* roots : {&p.zeros, &p.poles}) {
        for (HalfRoot& half : *roots) half.root = {half.root.re / t.normFrequency, half.root.im / t.normFrequency};
    }
    return p;
}

// s - root = (1 - root t)(1 - image z^-1)/(t (1 + z^-1)), image = (1 + root t)/(1 - root t).
HalfRoot bilinear_image(const HalfRoot& half, Wide t, Wide& factor) {
    const Number scaled = t * half.root;
    const Number above{1 + scaled.re, scaled.im}, below{1 - scaled.re, -scaled.im};
    constexpr Wide none = 1e-15L;  // of 1 - root t: the image is at infinity, (s - root) is a delay
    if (cabs(below) < none) {
        factor = -2 / t;
        return {};
    }
    factor = half.pair ? (below.re * below.re + below.im * below.im) / (t * t) : below.re / t;
    const Number image = cdiv(above, below, solver_decades);
    return {.root = {image.re, std::fabs(image.im)}, .pair = half.pair};
}

HalfRoots bilinear_zeros(const Prototype& p, Wide t, Wide& multiplier) {
    HalfRoots images;
    for (const HalfRoot& zero : p.zeros) {
        Wide factor = 1;
        images.push_back(bilinear_image(zero, t, factor));
        multiplier *= factor;
    }
    for (int missing = count_of(p.poles) - count_of(p.zeros); missing > 0; --missing) {
        images.push_back({.root = {-1, 0}});
    }
    return images;
}

HalfRoots bilinear_poles(const Prototype& p, Wide t, Wide& multiplier) {
    HalfRoots images;
    for (const HalfRoot& pole : p.poles) {
        Wide factor = 1;
        images.push_back(bilinear_image(pole, t, factor));
        multiplier /= factor;
    }
    return images;
}

HalfRoots exponentials(const HalfRoots& roots, Wide edge_angle) {
    HalfRoots images;
    for (const HalfRoot& half : roots) {
        const Wide radius = std::exp(half.root.re * edge_angle), angle = half.root.im * edge_angle;
        const Number image{radius * std::cos(angle), half.pair ? std::fabs(radius * std::sin(angle)) : 0};
        images.push_back({.root = image, .pair = half.pair});
    }
    return images;
}

// In units of the edge.
Wide reference_frequency(const FilterSpec& spec, Wide edge_angle) {
    if (spec.filterType == high_pass) return pi / edge_angle;
    if (spec.filterType == band_pass) return std::sqrt(Wide{spec.lowerPassEdge} / Wide{spec.upperPassEdge});
    return 0;
}

void match_level(const Prototype& p, Wide reference, DigitalFunction& function) {
    Wide magnitude = std::fabs(p.level);
    const auto distance = [&](const HalfRoot& half) {
        const Wide one = std::hypot(half.root.re, reference - half.root.im);
        return half.pair ? one * std::hypot(half.root.re, reference + half.root.im) : one;
    };
    for (const HalfRoot& zero : p.zeros) magnitude *= distance(zero);
    for (const HalfRoot& pole : p.poles) magnitude /= distance(pole);
    const Wide angle = reference * p.edge_angle;
    const Wide digital = cabs(value_at(function, {std::cos(angle), std::sin(angle)}));
    function.zMultiplier = static_cast<double>(Wide{function.zMultiplier} * magnitude / digital);
}

}  // namespace

}  // namespace kavrel
