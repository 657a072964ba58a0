#include "numeric/even_odd_roots.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "numeric/guarded.h"
#include "numeric/root_hunt.h"

namespace kavrel {

namespace {

enum class Part { even, odd };

void sort_factors(WidePseudoPolynomial& p);
void find_degrees(EvenOddWorkspace& ws);
[[nodiscard]] bool find_part_roots(EvenOddWorkspace& ws, Part part, const SolveOptions& options);
[[nodiscard]] bool has_complex_root(const WideRootSet& set);

}  // namespace

SolveVerdict solveEvenOdd(const WidePseudoPolynomial& p, Wide a, bool reactance, WideRootSet& even, WideRootSet& odd,
                          EvenOddWorkspace& ws, const SolveOptions& options) {
    if (p.degree > max_degree) return {SolveFault::degree_too_high};
    ws.tol = toleranceOf<Wide>(options);
    ws.a = static_cast<Wide>(a);
    ws.p.multiplier = static_cast<Wide>(p.multiplier);
    ws.p.degree = p.degree;
    for (int i = 1; i <= p.factors(); ++i) {
        ws.p.c(i) = static_cast<Wide>(p.c(i));
        ws.p.d(i) = i <= p.pairs() ? static_cast<Wide>(p.d(i)) : Wide{0};
    }
    sort_factors(ws.p);
    ws.rough.degree = ws.p.degree;
    ws.rough.multiplier = static_cast<double>(ws.p.multiplier);
    for (int i = 1; i <= p.factors(); ++i) {
        ws.rough.c(i) = static_cast<double>(ws.p.c(i));
        ws.rough.d(i) = static_cast<double>(ws.p.d(i));
    }
    find_degrees(ws);
    for (const Part part : {Part::even, Part::odd}) {
        if (!find_part_roots(ws, part, options)) return {SolveFault::part_no_convergence};
    }
    if (reactance && (has_complex_root(ws.even) || has_complex_root(ws.odd))) return {SolveFault::root_off_axis};
    copyRootSet(ws.even, even);
    copyRootSet(ws.odd, odd);
    return {};
}

namespace {

// Pairs by |c|, ascending; the last factor of odd degree keeps its place.
void sort_factors(WidePseudoPolynomial& p) {
    for (int i = 2; i <= p.pairs(); ++i) {
        for (int j = i; j > 1 && std::fabs(p.c(j)) < std::fabs(p.c(j - 1)); --j) {
            std::swap(p.c(j), p.c(j - 1));
            std::swap(p.d(j), p.d(j - 1));
        }
    }
}

// Degree and leading coefficient of each part. For large x, w = j x, so that |k product (d_i + j)| (c_n + j) measures
// both leading coefficients: what is small beside it is the rounding of a coefficient that vanishes.
void find_degrees(EvenOddWorkspace& ws) {
    ws.coefficients = evenOddCoefficients(ws.p, ws.a);
    Wide scale = std::fabs(ws.p.multiplier);
    for (int i = 1; i <= ws.p.pairs(); ++i) scale *= cabs(ws.p.d(i), Wide{1});
    if (ws.p.degree % 2 == 1) scale *= cabs(ws.p.c(ws.p.factors()), Wide{1});
    const Wide least = 10 * ws.tol * scale;

    const auto lead = [&](const Table<Wide, max_part_coefficients>& coefficient, int degree, WideRootSet& set) {
        while (degree > 0 && std::fabs(coefficient(degree + 1)) <= least) --degree;
        set.count = 0;
        set.multiplier = coefficient(degree + 1);
        if (std::fabs(set.multiplier) <= least) set.multiplier = 0;
        return degree;
    };
    // The degree waits in `count` until the hunt.
    ws.even.count = lead(ws.coefficients.CE, ws.p.even_degree(), ws.even);
    ws.odd.count = lead(ws.coefficients.CO, ws.p.odd_degree(), ws.odd);
    if (ws.p.degree == 0) ws.odd.multiplier = 0;
}

// Samples of one part: Ev = (P+ + P-)/2, Od = (P+ - P-)/(2 root).
template <class Real>
struct PartFunction {
    const PseudoPolynomialOf<Real>& p;
    Real a;
    Part part;

    FunctionSample<Real> operator()(Complex<Real> x, bool /*with_derivative*/) const {
        const PseudoValue<Real> v = evalPseudo(p, a, x);
        const Real size = std::max(cabs(v.plus), cabs(v.minus)) / 2;
        constexpr Real half = 0.5;
        if (part == Part::even) {
            return {half * (v.plus + v.minus), half * (v.plus_derivative + v.minus_derivative), size, v.exponent};
        }
        // Od' = (P+' - P-' - 2 Od root')/(2 root)
        const Complex<Real> od = cdiv(half * (v.plus - v.minus), v.root, solver_decades);
        const Complex<Real> slope = half * (v.plus_derivative - v.minus_derivative) - od * v.root_derivative;
        return {od, cdiv(slope, v.root, solver_decades), size / cabs(v.root), v.exponent};
    }
};

// Starting points for root r: around -c_r on the negative axis, where the pass band lies.
hunt::Points startingPoints(const PseudoPolynomial& p, int r) {
    const double c = p.c(std::min(r, p.factors()));
    const double x1 = c == 0 ? -0.01 : -c / 2;
    const double x2 = c == 0 ? -0.02 : -c;
    return {{{{x1, 0}, {x2, 0}, {(x1 + x2) / 2, 0}}}};
}

// The multiplier from the value of the part at that one of a few places in the pass band where it is largest beside the
// terms that it is made of.
void set_multiplier(WideRootSet& set, const PartFunction<Wide>& function) {
    Wide best = -1;
    set.multiplier = 1;
    Wide multiplier = 0;
    for (const double place : pass_band_places) {
        const Complex<Wide> x{static_cast<Wide>(place), 0};
        const FunctionSample<Wide> s = function(x, false);
        const Wide share = cabs(s.value) / s.size;
        if (!(share > best)) continue;
        best = share;
        const ScaledValue<Wide> product = scaledProduct(set, x);
        multiplier = shifted(cdiv(s.value, product.value, solver_decades), s.exponent - product.exponent).re;
    }
    set.multiplier = multiplier;
}

bool find_part_roots(EvenOddWorkspace& ws, Part part, const SolveOptions& options) {
    WideRootSet& set = part == Part::even ? ws.even : ws.odd;
    const int degree = std::exchange(set.count, 0);
    if (set.multiplier == 0) return true;
    if (!std::isfinite(set.multiplier)) return false;

    const PartFunction<double> rough{ws.rough, static_cast<double>(ws.a), part};
    const PartFunction<Wide> fine{ws.p, ws.a, part};
    HuntRules rules = huntRules(options, degree, 75);
    rules.real_only = isHurwitz(ws.p, ws.a);
    if (!huntRoots(
            rough, fine, [&] { return startingPoints(ws.rough, set.count + 1); }, rules, set))
        return false;
    set_multiplier(set, fine);
    return true;
}

bool has_complex_root(const WideRootSet& set) {
    for (int i = 1; i <= set.count; ++i) {
        if (set.im(i) != 0) return true;
    }
    return false;
}

}  // namespace

}  // namespace kavrel
