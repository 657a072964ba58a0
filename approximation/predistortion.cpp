#include "approximation/predistortion.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kavrel {

namespace {

using Real = XPlane::Real;

// Of a step, or over its size: 1/Q of lumped elements, m of lines.
struct Step {
    Real shift = 0;
    Real slant = 0;
};

Step unit_step(LossyPlane plane) {
    const bool lines = plane.tan_edge > 0;
    const Step low{.shift = lines ? 1 / plane.tan_edge : 1, .slant = lines ? plane.tan_edge : 0};
    return plane.high_pass ? Step{.shift = low.slant, .slant = low.shift} : low;
}
Step step_of(Real Q, LossyPlane plane) {
    const Real size = plane.tan_edge > 0 ? attenuation_of_lines(Q, plane.tan_edge) : 1 / Q;
    const Step unit = unit_step(plane);
    return {.shift = size * unit.shift, .slant = size * unit.slant};
}

// A factor c + dx + w of e is p^2 + linear p + constant over linear and (1 + p^2).
struct Quadratic {
    Real linear = 0;
    Real constant = 0;
};
Quadratic quadratic_of(const WidePseudoPolynomial& e, Real a, int i) {
    const Real t = e.c(i) + e.d(i);
    return {.linear = (1 - a) / t, .constant = (e.c(i) + a * e.d(i)) / t};
}

}  // namespace

long double attenuation_of_lines(long double q, long double t) {
    const Real half = q * (1 + t * t) / 2;
    return t / (half + std::hypot(half, t));
}

Complex<long double> with_losses(Complex<long double> s, long double Q, LossyPlane plane) {
    const auto [shift, slant] = step_of(Q, plane);
    return cdiv(Complex<Real>{s.re + shift, s.im}, Complex<Real>{1 + slant * s.re, slant * s.im});
}

// A pole p is on the axis when size (shift + slant |p|^2) is -Re p (1 + size^2 shift slant).
long double q_of_share(const WidePseudoPolynomial& e, long double a, LossyPlane plane, long double share) {
    const Step step = unit_step(plane);
    Real way = std::numeric_limits<Real>::infinity();
    const auto note = [&](Real depth, Real square) { way = std::min(way, depth / (step.shift + step.slant * square)); };
    for (int i = 1; i <= e.pairs(); ++i) {
        const auto [linear, constant] = quadratic_of(e, a, i);
        const Real middle = linear / 2, square = middle * middle - constant;
        if (square < 0) {
            note(middle, constant);
            continue;
        }
        const Real farther = middle + std::sqrt(square), nearer = constant / farther;
        note(farther, farther * farther);
        note(nearer, nearer * nearer);
    }
    if (e.degree % 2 == 1) note(e.c(e.factors()), e.c(e.factors()) * e.c(e.factors()));
    const Real part = share * way;
    if (plane.tan_edge == 0) return 1 / part;
    const Real t = plane.tan_edge, m = 2 * part / (1 + std::sqrt(std::max<Real>(0, 1 - 4 * part * part)));
    return t * (1 - m * m) / (m * (1 + t * t));
}

bool qOutOfReach(const XPlane& x) { return x.q1 * q_tolerance <= x.qMin; }

// p = (p' - shift)/(1 - slant p'), cleared of its denominator.
void predistort(WidePseudoPolynomial& e, long double a, long double Q, LossyPlane plane) {
    const auto [shift, slant] = step_of(Q, plane);
    for (int i = 1; i <= e.pairs(); ++i) {
        const auto [linear, constant] = quadratic_of(e, a, i);
        const Real square = 1 - linear * slant + constant * slant * slant;
        const Real middle = linear * (1 + shift * slant) - 2 * (shift + constant * slant);
        const Real last = shift * shift - linear * shift + constant;
        e.c(i) = (last - a * square) / middle;
        e.d(i) = (square - last) / middle;
        e.multiplier *= middle / linear;
    }
    if (e.degree % 2 == 0) return;
    Real& c = e.c(e.factors());
    const Real scale = 1 - slant * c;
    c = (c - shift) / scale;
    e.multiplier *= scale;
}

}  // namespace kavrel
