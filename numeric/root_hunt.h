// The extraction of roots one by one, common to all functions that can be evaluated but not expanded.
//
// A function S of a complex x is given by its samples. Roots found so far are divided out of its value: Muller's
// iteration runs on S(x)/(kR product (x - found root)), whose own rounding errors do not pass from root to root, since
// S is always evaluated afresh. Every root then gets Newton corrections until they no longer shrink. S is real on the
// real axis: a complex root brings its conjugate along.
//
// The approach to a root runs in double, the corrections in long double: two or three of them carry a root from 1e-14
// to 1e-19, at a fraction of the cost of an approach in long double.
//
// A `Function` of type Real has one member: FunctionSample<Real> operator()(Complex<Real> x, bool with_derivative)
// const.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <utility>

#include "numeric/guarded.h"
#include "numeric/muller.h"
#include "numeric/scaled_value.h"
#include "numeric/solve_verdict.h"
#include "shell/whole_part.h"

namespace kavrel {

template <class Real>
struct FunctionSample {
    Complex<Real> value;       // times 2^exponent
    Complex<Real> derivative;  // times 2^exponent; unset when not asked for
    Real size{};               // times 2^exponent: magnitude of the largest term whose sum the value is
    int exponent = 0;
};

struct HuntRules {
    int degree = 0;    // roots to be found, those in the list at the start included
    int approach = 0;  // digits at which the approach ends
    int target = 0;    // digits that a root must have
    int turns = 50;    // Muller steps, and Newton corrections, for each root
    double clean = 0;  // |S| beside its terms, or beside |x S'|, up to which a root may be moved onto an axis or to 0
    bool real_only = false;  // all roots are known to be real
};

// Decimal digits that the type carries: 16 and 19.
template <class Real>
inline constexpr int digits_of = std::numeric_limits<Real>::digits10 + 1;

// The digits an iteration in `Real` aims at, of a function of degree n: those of the type, as far as the options
// differ from 16 fewer, less one and less the decades of n + 1.
template <class Real>
[[nodiscard]] int targetDigits(const SolveOptions& options, int n) {
    const int carried = std::min(digits_of<Real>, options.precisionDigits + digits_of<Real> - 16);
    return whole_part(carried - 1 - std::log10(static_cast<double>(n + 1)));
}

// 10^(1 - precisionDigits).
template <class Real>
[[nodiscard]] Real toleranceOf(const SolveOptions& options) {
    return std::pow(Real{10}, static_cast<Real>(1 - options.precisionDigits));
}

// S(x)/(kR product (x - found root)), as a value with an exponent of its own.
template <class Real>
[[nodiscard]] ScaledValue<Real> deflatedValue(const FunctionSample<Real>& s, const RootSetOf<Real>& found,
                                              Complex<Real> x) {
    const ScaledValue<Real> divisor = scaledProduct(found, x);
    return {cdiv(s.value, divisor.value, solver_decades), s.exponent - divisor.exponent};
}

// Newton's correction for the deflated function: S R/(S' R - S R').
[[nodiscard]] inline Complex<Wide> newtonCorrection(const FunctionSample<Wide>& s, const WideRootSet& found,
                                                    Complex<Wide> x) {
    const ScaledPair<Wide> r = scaledProductAndDerivative(found, x);
    return cdiv(s.value * r.value, s.derivative * r.value - s.value * r.derivative, solver_decades);
}

// int(v), also for a v that is no number or beyond all counts of digits.
template <class Real>
[[nodiscard]] int wholeDigits(Real v) {
    return whole_part(std::fmin(std::fmax(v, Real{-1000}), Real{1000}));
}

// Estimate of the correct digits of x as a root: the larger of the digits lost in the sum that makes the value, and of
// the digits to which Newton's step |S/S'| is small beside |x|, less two.
template <class Real>
[[nodiscard]] int correctDigits(const FunctionSample<Real>& s, Complex<Real> x) {
    const Real residual = cabs(s.value);
    if (residual == 0) return digits_of<Real>;
    int digits = wholeDigits(std::log10(s.size / residual));
    const Real t = cabs(x) * cabs(s.derivative);
    if (t > 0) digits = std::max(digits, wholeDigits(std::log10(t / residual) - 2));
    return digits;
}

// The rules of a hunt for the roots of a function of degree n.
[[nodiscard]] inline HuntRules huntRules(const SolveOptions& options, int n, int turns) {
    return {.degree = n,
            .approach = targetDigits<double>(options, n),
            .target = targetDigits<Wide>(options, n),
            .turns = turns,
            .clean = 16 * toleranceOf<double>(options)};
}

// Finds the roots of `fine` until `found` holds rules.degree of them; found.multiplier is kR, found.count the number
// known beforehand. `rough` is the same function in double. `start()` gives three starting points at each call. False
// when a root does not converge.
template <class Rough, class Fine, class Start>
[[nodiscard]] bool huntRoots(const Rough& rough, const Fine& fine, Start start, const HuntRules& rules,
                             WideRootSet& found);

// ---------------------------------------------------------------------------------------------------------------------

namespace hunt {

template <class Real>
using PointsOf = Table<Complex<Real>, 3>;
using Points = PointsOf<double>;

// A point that is on a found root, or at 0 where it could not be moved by a factor, is moved off it. A point at the
// end of the range cannot be moved at all; a number of turns that no other point needs ends the loop.
inline constexpr int start_moves = 4 * max_degree;

template <class Real>
void move_off_found(PointsOf<Real>& x, const RootSetOf<Real>& found) {
    constexpr auto near = static_cast<Real>(1e-10);
    bool moved = true;
    for (int turn = 0; moved && turn < start_moves; ++turn) {
        moved = false;
        for (Complex<Real>& point : x) {
            for (int j = 1; j <= found.count; ++j) {
                if (!(sum_of_parts(point - found.root(j)) <= sum_of_parts(point) * near)) continue;
                point = point == Complex<Real>{} ? Complex<Real>{static_cast<Real>(0.01), 0} : Real{1.125} * point;
                moved = true;
            }
        }
    }
}

// Newton corrections from y on. Below the target every step is taken; from there on only steps that shrink, until they
// are at the level of rounding.
template <class Function>
bool polish(const Function& function, const HuntRules& rules, const WideRootSet& found, Complex<Wide>& y) {
    FunctionSample<Wide> s = function(y, true);
    int digits = correctDigits(s, y);
    Wide last = digits >= rules.target ? cabs(y) / 50 : std::numeric_limits<Wide>::infinity();
    for (int i = 1; i <= rules.turns; ++i) {
        const Complex<Wide> delta = newtonCorrection(s, found, y);
        const Wide step = cabs(delta);
        if (digits >= rules.target && !(step < last / 2)) return true;
        y -= delta;
        if (step == 0) return digits >= rules.target;
        last = step;
        s = function(y, true);
        const int moved = wholeDigits(-std::log10(step / cabs(y) + static_cast<Wide>(1e-25)));
        digits = std::max(correctDigits(s, y), moved);
    }
    return digits >= rules.target;
}

// Muller's iteration from three points. A step on which the value grows more than tenfold is halved (Muller's own
// rule): where one product rules and is nearly constant, the parabola points far out of the picture.
inline constexpr int halving_limit = 20;

template <class Real, class Function>
Complex<Real> approach(const Function& function, int digits, int turns, const RootSetOf<Real>& found,
                       PointsOf<Real> x) {
    MullerPoints<Real> p;
    int reference = 0;

    const auto begin = [&] {
        move_off_found(x, found);
        Table<ScaledValue<Real>, 3> v;
        for (int i = 1; i <= 3; ++i) v(i) = deflatedValue(function(x(i), false), found, x(i));
        const auto magnitude = [&](int i) { return binaryMagnitude(v(i).value, v(i).exponent); };
        reference = std::max({magnitude(1), magnitude(2), magnitude(3)});
        if (std::abs(reference) < 200) reference = 0;  // plain numbers will do
        for (int i = 1; i <= 3; ++i) p.x(i) = x(i), p.f(i) = shifted(v(i).value, v(i).exponent - reference);
        for (int i = 1; i <= 2; ++i) {
            for (int j = i + 1; j <= 3; ++j) {
                if (cabs(p.f(i)) < cabs(p.f(j))) std::swap(p.f(i), p.f(j)), std::swap(p.x(i), p.x(j));
            }
        }
    };
    const auto take_value = [&](const FunctionSample<Real>& s) {
        const ScaledValue<Real> v = deflatedValue(s, found, p.x(4));
        p.f(4) = shifted(v.value, v.exponent - reference);
    };

    begin();
    bool retried = false;
    for (int k = 1; k <= turns;) {
        const Real step = mullerStep(p, k);
        const Real reach = cabs(p.x(4));
        if (k == 1 && !retried && step <= reach * static_cast<Real>(1e-12) && !(p.f(3) == Complex<Real>{})) {
            retried = true;  // the three values were as good as equal: start again from wider points
            x = {{{Real{2} * p.x(3), Real{0.5} * p.x(3), p.x(3)}}};
            begin();
            continue;
        }
        const bool negligible = step <= reach * static_cast<Real>(1e-5);
        const FunctionSample<Real> s = function(p.x(4), negligible);
        if (negligible && correctDigits(s, p.x(4)) >= digits) return p.x(4);
        take_value(s);
        for (int i = 1; i <= halving_limit && cabs(p.f(4)) > 10 * cabs(p.f(3)); ++i) {
            p.x(4) = Real{0.5} * (p.x(3) + p.x(4));
            take_value(function(p.x(4), false));
        }
        for (int i = 1; i <= 3; ++i) p.x(i) = p.x(i + 1), p.f(i) = p.f(i + 1);
        ++k;
    }
    return p.x(3);
}

// Moves a root that lies on an axis, or at 0, within reach onto it, provided that it is a root there as well.
template <class Function>
Complex<Wide> cleaned(const Function& function, const HuntRules& rules, Complex<Wide> root) {
    const auto take = [&](Complex<Wide> z) {
        const FunctionSample<Wide> s = function(z, true);
        const Wide level = std::fmax(s.size, cabs(root) * cabs(s.derivative));
        if (cabs(s.value) <= static_cast<Wide>(rules.clean) * level) root = z;
    };
    constexpr auto aside = static_cast<Wide>(1e-8);
    constexpr auto floor = static_cast<Wide>(1e-10);
    if (root.re != 0 && std::fabs(root.re) < std::fabs(root.im) * aside) take({0, root.im});
    if (root.im != 0 && (std::fabs(root.im) < std::fabs(root.re) * aside || std::fabs(root.im) < floor))
        take({root.re, 0});
    if (sum_of_parts(root) <= floor) take({0, 0});
    return root;
}

// One more root, from the approach in double or, where that leads nowhere, in long double.
template <class Rough, class Fine>
bool find_root(const Rough& rough, const Fine& fine, const HuntRules& rules, const WideRootSet& found,
               const Points& start, Complex<Wide>& root) {
    RootSet rounded;
    copyRootSet(found, rounded);
    const Complex<double> near = approach(rough, rules.approach, rules.turns, rounded, start);
    root = {near.re, rules.real_only ? 0 : near.im};
    if (polish(fine, rules, found, root)) return true;

    PointsOf<Wide> x;
    for (int i = 1; i <= 3; ++i) x(i) = {start(i).re, start(i).im};
    root = approach(fine, rules.target, rules.turns, found, x);
    if (rules.real_only) root.im = 0;
    return polish(fine, rules, found, root);
}

inline void delete_real_roots(WideRootSet& found) {
    int kept = 0;
    for (int i = 1; i <= found.count; ++i) {
        if (found.im(i) != 0) found.set_root(++kept, found.root(i));
    }
    found.count = kept;
}

}  // namespace hunt

template <class Rough, class Fine, class Start>
bool huntRoots(const Rough& rough, const Fine& fine, Start start, const HuntRules& rules, WideRootSet& found) {
    // A complex root without room for its conjugate sends the real ones back; the budget ends a search in circles.
    for (int budget = 3 * rules.degree + 3; found.count < rules.degree; --budget) {
        if (budget == 0) return false;
        Complex<Wide> root;
        if (!hunt::find_root(rough, fine, rules, found, start(), root)) return false;
        root = hunt::cleaned(fine, rules, root);
        if (root.im == 0) {
            found.append(root);
            continue;
        }
        if (found.count + 2 > rules.degree) hunt::delete_real_roots(found);
        if (found.count + 2 > rules.degree) continue;
        if (root.im < 0) root = conjugate(root);
        found.append(root);
        found.append(conjugate(root));
    }
    return true;
}

}  // namespace kavrel
