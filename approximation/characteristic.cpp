#include "approximation/characteristic.h"

#include <algorithm>
#include <cmath>

#include "approximation/angle_sum.h"
#include "approximation/closed_form.h"
#include "approximation/decibel.h"
#include "approximation/frequency_variable.h"
#include "approximation/parametric_ripple.h"
#include "numeric/guarded.h"

namespace kavrel {

namespace {

using Real = XPlane::Real;

bool is_parametric(const FilterSpec& spec) { return spec.filterType == band_pass && spec.bandpassType != conventional; }
int parametric_weight(const FilterSpec& spec) { return is_parametric(spec) ? 2 - spec.degreeParity : 0; }
bool shifts_pass_band(const FilterSpec& spec, const XPlane& xp) {
    return spec.degreeParity == 0 && spec.filterType <= high_pass && spec.symmetryFlag == 1 && !xp.matched;
}

Real product_of_q(const XPlane& xp);
Real flat_point_of(Real product, Real d, int m, int loose);
Real flat_root(const XPlane& xp, Real product, int m, int loose);
void set_root_factors(const FilterSpec& spec, XPlane& xp, const WideRootSet& roots, Real d);
bool collect_angles(const FilterSpec& spec, const XPlane& xp, Real unit_element, AngleSum& angles);
bool shifted_unit_element(const FilterSpec& spec, const XPlane& xp, Real& unit_element);
bool equalise(const FilterSpec& spec, const XPlane& xp, WideRootSet& roots, Real& d);
void shift_pass_band(FilterSpec& spec, XPlane& xp, WideRootSet& roots, FrontNotes& notes);

}  // namespace

FrontVerdict buildQ(FilterSpec& spec, XPlane& xp, FrontNotes& notes) {
    if (spec.filterType == linear_phase_low_pass && xp.upper_stop > 0) return {};
    spec.degree = overall_degree(spec, xp);
    spec.degreeParity = spec.degree % 2;
    if (spec.degree > max_degree) return refuse(spec, FrontFault::degree_too_high, spec.degree);
    if (spec.degree < 1) return refuse(spec, FrontFault::stopband_incorrect);
    if (spec.filterType == band_pass && xp.a == 0 && spec.zerosAtZero > 0) {
        return refuse(spec, FrontFault::cutoff_missing);
    }

    fillQ(spec, xp);
    if (spec.filterType == linear_phase_low_pass || spec.passbandType == functional_passband) return {};
    return spec.passbandType == maximally_flat ? maxFlatF(spec, xp) : equalRippleF(spec, xp, notes);
}

void fillQ(const FilterSpec& spec, XPlane& xp) {
    xp.QS = {};
    xp.QS.multiplier = 1;
    for (int i = 1; i <= spec.zerosAtZero; ++i) xp.QS.append({xp.a, 0});
    for (int i = 1; i <= spec.zerosAtInfinity; ++i) xp.QS.append({1, 0});
    for (int i = 1; i <= xp.zeroCount; ++i) {
        const Complex<Real> x{xp.ARR(i), xp.ARI(i)};
        for (int twice = 1; twice <= 2; ++twice) {
            xp.QS.append(x);
            if (x.im != 0) xp.QS.append(conjugate(x));
        }
    }
    for (int i = 1; i <= spec.unitElements; ++i) xp.QS.append({unit_element_root(spec, xp), 0});
}

FrontVerdict maxFlatF(FilterSpec& spec, XPlane& xp) {
    xp.termRatioLimit = 1;
    const int n = spec.degree;
    const int loose = parametric_weight(spec);  // roots at d
    const int m = n - loose;

    // (x + g)^m (x - d)^loose over Q has the magnitude 1 at x = 0.
    Real g = 0, d = xp.xReal;
    if (spec.filterType == band_pass) {
        const Real product = product_of_q(xp);
        if (m > 0) {
            if (loose > 0) d = flat_root(xp, product, m, loose);
            g = flat_point_of(product, d, m, loose);
        } else {
            d = std::pow(product, 1 / static_cast<Real>(loose));
        }
        if (loose > 0 && !(d > xp.a && d < 1)) return refuse(spec, FrontFault::parametric_root_out_of_range);
    }
    WideRootSet roots;
    for (int i = 1; i <= m / 2; ++i) roots.append({-g, 0});
    set_root_factors(spec, xp, roots, d);
    return {};
}

FrontVerdict equalRippleF(FilterSpec& spec, XPlane& xp, FrontNotes& notes) {
    const Real root_eps = std::sqrt(xp.eps2);
    const bool bound = spec.degreeParity == 0 && spec.filterType <= high_pass;
    xp.termRatioLimit = bound ? std::pow(std::sqrt(xp.eps2 + 1) + root_eps, 2.0L) : 1;

    AngleSum angles;
    Real unit_element = unit_element_root(spec, xp);
    if (shifts_pass_band(spec, xp) && !shifted_unit_element(spec, xp, unit_element)) {
        return refuse(spec, FrontFault::ripple_roots_missing);
    }
    if (!collect_angles(spec, xp, unit_element, angles)) return refuse(spec, FrontFault::ripple_roots_missing);

    // cos theta = 0 at the odd multiples of pi/2; sin theta = 0 of odd low-pass and high-pass at the even ones.
    const int total = spec.degree - parametric_weight(spec);
    const int first = spec.degreeParity == 1 && !is_parametric(spec) ? 2 : 1;
    const ReflectionZeros known = closedReflectionZeros(spec, xp);
    const bool final = xp.zeroCount == 0;
    WideRootSet roots;
    Real eta = 0;
    for (int turns = first, i = 1; turns < total; turns += 2, ++i) {
        const Real start = i <= known.count ? known.eta(i) : 0;
        eta = final && start > 0 ? start : root_of_angle(angles, turns, total, eta, start);
        roots.append({-eta * eta, 0});
    }

    Real d = 0;
    if (is_parametric(spec) && !equalise(spec, xp, roots, d)) {
        return refuse(spec, FrontFault::parametric_root_out_of_range);
    }
    if (shifts_pass_band(spec, xp)) shift_pass_band(spec, xp, roots, notes);
    set_root_factors(spec, xp, roots, d);
    return {};
}

Complex<Real> quotient(const WideRootSet& P, const WideRootSet& Q, Complex<Real> x) {
    Complex<Real> value{P.multiplier / Q.multiplier, 0};
    for (int i = 1; i <= std::max(P.count, Q.count); ++i) {
        if (i <= P.count) value *= x - P.root(i);
        if (i <= Q.count) value = cdiv(value, x - Q.root(i), solver_decades);
    }
    return value;
}

Complex<Real> squared_characteristic(const XPlane& xp, Complex<Real> x) { return quotient(xp.FS, xp.QS, x); }

Real squared_characteristic(const XPlane& xp, Real x) { return squared_characteristic(xp, Complex<Real>{x, 0}).re; }

Real loss_at(const XPlane& xp, Real w) {
    const Real x = x_of_frequency(w, xp.a);
    for (int i = 1; i <= xp.QS.count; ++i) {
        if (xp.QS.re(i) == x && xp.QS.im(i) == 0) return static_cast<Real>(infinite_part);
    }
    return loss_of(squared_characteristic(xp, x));
}

namespace {

// |Q(0)|.
Real product_of_q(const XPlane& xp) {
    Real product = 1;
    for (int i = 1; i <= xp.QS.count; ++i) product *= cabs(xp.QS.root(i));
    return product;
}

// g, from the magnitude at x = 0.
Real flat_point_of(Real product, Real d, int m, int loose) {
    return std::pow(product / std::pow(d, static_cast<Real>(loose)), 1 / static_cast<Real>(m));
}

// d = xReal if no loss beside an edge is above that of the edge: with r the roots of Q, the loss falls from x = 0 on if
// d (m/g + sum 1/r) >= loose, and rises towards infinity if m g + sum r >= d loose. Otherwise, in some wide bands, d
// takes the bound; both sides go one way with d.
Real flat_root(const XPlane& xp, Real product, int m, int loose) {
    const auto [reciprocal, direct] = edge_sums(xp.QS);
    const auto at_zero = [&, from_q = reciprocal](Real d) {
        return d * (m / flat_point_of(product, d, m, loose) + from_q) >= loose;
    };
    const auto at_infinity = [&, from_q = direct](Real d) {
        return m * flat_point_of(product, d, m, loose) + from_q >= d * loose;
    };
    if (at_zero(xp.xReal) && at_infinity(xp.xReal)) return xp.xReal;

    const bool low = !at_zero(xp.xReal);
    Real outside = xp.xReal, inside = low ? 1 : xp.a;
    if (!(low ? at_zero(inside) : at_infinity(inside))) return xp.xReal;
    constexpr int halvings = 80;
    for (int i = 1; i <= halvings; ++i) {
        const Real middle = std::sqrt(inside * outside);
        ((low ? at_zero(middle) : at_infinity(middle)) ? inside : outside) = middle;
    }
    return inside;
}

// F from the roots that it has twice, and from d: the root of odd degree, a double one of even parametric degree.
// Odd: (x - a)(1 - d)/(1 - a) - (1 - x)(d - a)/(1 - a) = x - d. Low-pass and high-pass have d = a = 0.
void set_root_factors(const FilterSpec& spec, XPlane& xp, const WideRootSet& roots, Real d) {
    const bool odd = spec.degreeParity == 1;
    const Real root_eps = std::sqrt(xp.eps2);
    WideRootSet half = roots;
    half.multiplier = root_eps;
    if (!odd && is_parametric(spec)) half.append({d, 0});

    xp.fEven = xp.fOdd = {};
    if (!odd) {
        xp.fEven = half;
    } else {
        xp.fOdd = half;
        xp.fOdd.multiplier = root_eps * std::sqrt((1 - d) / (1 - xp.a));
        if (d > xp.a) {
            xp.fEven = half;
            xp.fEven.multiplier = root_eps * std::sqrt((d - xp.a) / (1 - xp.a));
        }
    }

    xp.FS = {};
    xp.FS.multiplier = xp.eps2;
    for (int i = 1; i <= half.count; ++i) {
        xp.FS.append(half.root(i));
        xp.FS.append(half.root(i));
    }
    if (odd) xp.FS.append({d, 0});
}

// Within the rounding of its frequency: s^2 + 1 = (1 - a)/(1 - x), s^2 + a = x (s^2 + 1).
bool lies_on_an_edge(Real a, Real magnitude) {
    constexpr Real rounding = 1e-14L;
    return 1 - a < rounding * magnitude || magnitude * (1 - a) < rounding * a;
}

// False where a zero of transmission lies on the pass band, its edges included: its factor has no phase there.
bool collect_angles(const FilterSpec& spec, const XPlane& xp, Real unit_element, AngleSum& angles) {
    angles.append({std::sqrt(xp.a), 0}, spec.zerosAtZero);
    angles.append({1, 0}, spec.zerosAtInfinity);
    if (spec.unitElements > 0) {
        if (!(unit_element > 0)) return false;
        angles.append({std::sqrt(unit_element), 0}, spec.unitElements);
    }
    for (int i = 1; i <= xp.zeroCount; ++i) {
        const Complex<Real> m = csqrt(xp.ARR(i), xp.ARI(i));
        if (!(m.re > 0) || lies_on_an_edge(xp.a, cabs(xp.ARR(i), xp.ARI(i)))) return false;
        angles.append(m, 2);
    }
    angles.append({std::sqrt(xp.xReal), 0}, -parametric_weight(spec));
    return true;
}

// Where a unit element has to be before the pass band is moved, so that it is where it belongs afterwards:
// u = (1 + p) ueX - p, p = eta_1^2 depending on u.
bool shifted_unit_element(const FilterSpec& spec, const XPlane& xp, Real& unit_element) {
    if (spec.unitElements == 0) return true;
    const Real goal = unit_element;
    Real u = goal;
    for (int turn = 1; turn <= 500; ++turn) {
        AngleSum angles;
        if (!collect_angles(spec, xp, u, angles)) return false;
        const Real eta = root_of_angle(angles, 1, spec.degree, 0);
        const Real next = goal - eta * eta * (1 - goal);
        const bool settled = std::fabs(next - u) <= 1e-18L * goal;
        u = next;
        if (settled) break;
    }
    unit_element = u;
    return u > 0;
}

// d from F/Q = eps2 at x = 0 as at infinity, then equal maxima. Where they do not come out the function is left as it
// is, its excess being a small one, unless its d makes E negative somewhere.
bool equalise(const FilterSpec& spec, const XPlane& xp, WideRootSet& roots, Real& d) {
    Real product = 1;
    for (int i = 1; i <= roots.count; ++i) product *= -roots.re(i);
    d = spec.degreeParity == 1 ? product_of_q(xp) / (product * product) : std::sqrt(product_of_q(xp)) / product;
    const bool in_range = d > xp.a && d < 1;
    if (roots.count == 0) return in_range;
    if (!in_range) d = xp.xReal;
    return equaliseRipple(xp.QS, xp.a, parametric_weight(spec), roots, d) || in_range;
}

// x -> (x + p)/(1 + p) keeps x = 1 and infinity and puts the root nearest to zero there.
void shift_pass_band(FilterSpec& spec, XPlane& xp, WideRootSet& roots, FrontNotes& notes) {
    const Real p = -roots.re(1);
    xp.prototype.shift = p;
    for (int i = 1; i <= roots.count; ++i) roots.re(i) = (roots.re(i) + p) / (1 + p);
    for (int i = 1; i <= xp.zeroCount; ++i) {
        xp.ARR(i) = (xp.ARR(i) + p) / (1 + p);
        xp.ARI(i) /= 1 + p;
    }
    fillQ(spec, xp);
    xp.termRatioLimit = 1;
    if (xp.zeroCount == 0) return;
    zerosToFrequency(spec, xp);
    notes.zeros_shifted = true;
}

}  // namespace

}  // namespace kavrel
