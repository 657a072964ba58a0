#include "approximation/hurwitz_parts.h"

#include <cmath>

#include "approximation/angle_sum.h"
#include "numeric/scaled_value.h"

namespace kavrel {

namespace {

using Real = XPlane::Real;

AngleSum angles_of_factors(const WidePseudoPolynomial& e, Real a);
void set_levels(const WidePseudoPolynomial& e, Real a, WideRootSet& even, WideRootSet& odd);

}  // namespace

bool partsOfHurwitz(const WidePseudoPolynomial& e, long double a, WideRootSet& even, WideRootSet& odd) {
    if (!isHurwitz(e, a)) return false;
    const AngleSum angles = angles_of_factors(e, a);
    even = {};
    odd = {};
    Real w = 0;
    for (int half_turns = 1; half_turns < e.degree; ++half_turns) {
        w = root_of_angle(angles, half_turns, e.degree, w);
        const Real below_edge = (1 - w) * (1 + w);
        if (below_edge == 0) continue;
        (half_turns % 2 == 1 ? even : odd).append({(a - w * w) / below_edge, 0});
    }
    set_levels(e, a, even, odd);
    return true;
}

namespace {

// (s^2 + b s + c0) with b = (1 - a)/(c + d), c0 = (c + ad)/(c + d), and s + c: minus the zeros.
AngleSum angles_of_factors(const WidePseudoPolynomial& e, Real a) {
    AngleSum angles;
    for (int i = 1; i <= e.pairs(); ++i) {
        const Real t = e.c(i) + e.d(i);
        const Real half = (1 - a) / (2 * t);
        const Real c0 = (e.c(i) + a * e.d(i)) / t;
        const Real disc = ((1 - a) * (1 - a) / 4 - t * (e.c(i) + a * e.d(i))) / (t * t);
        if (disc < 0) {
            angles.append({half, std::sqrt(-disc)}, 1);
        } else {
            const Real larger = half + std::sqrt(disc);
            angles.append({larger, 0}, 1);
            angles.append({c0 / larger, 0}, 1);
        }
    }
    if (e.degree % 2 == 1) angles.append({e.c(e.factors()), 0}, 1);
    return angles;
}

// The multipliers, each from that one of a few places in the pass band where its part has the largest share of the
// whole.
void set_levels(const WidePseudoPolynomial& e, Real a, WideRootSet& even, WideRootSet& odd) {
    even.multiplier = odd.multiplier = 1;
    Real best_even = -1, best_odd = -1;
    Real level_even = 0, level_odd = 0;
    for (const double place : pass_band_places) {
        const Complex<Real> x{static_cast<Real>(place), 0};
        const PseudoValue<Real> p = evalPseudo(e, a, x);  // Ev + root Od, root imaginary
        const auto take = [&](const WideRootSet& set, Real value, Real share, Real& best, Real& level) {
            if (!(share > best)) return;
            best = share;
            const ScaledValue<Real> product = scaledProduct(set, x);
            level = std::ldexp(value / product.value.re, p.exponent - product.exponent);
        };
        const Real size = std::hypot(p.plus.re, p.plus.im);
        take(even, p.plus.re, std::fabs(p.plus.re) / size, best_even, level_even);
        take(odd, p.plus.im / p.root.im, std::fabs(p.plus.im) / size, best_odd, level_odd);
    }
    even.multiplier = level_even;
    odd.multiplier = e.degree == 0 ? Real{0} : level_odd;
}

}  // namespace

}  // namespace kavrel
