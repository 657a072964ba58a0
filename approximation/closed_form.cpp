#include "approximation/closed_form.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "approximation/elliptic.h"
#include "numeric/guarded.h"
#include "numeric/root_order.h"

namespace kavrel {

namespace {

using Real = XPlane::Real;
using Root = Complex<Real>;

constexpr Real largest_correction = 1e-10L;  // relative

[[nodiscard]] LowPassPrototype prototype_of(const FilterSpec& spec, const XPlane& xp);
struct SineCosine {
    Real s, c;
};
SineCosine sine_cosine(int k, int n);
// [k] the pole of angle theta, im >= 0, k = 1 ... (n + 1)/2; the last one of odd n is real.
using Poles = Table<Root, max_pairs>;
void flat_poles(const LowPassPrototype& p, Real eps2, Poles& x);
void ripple_poles(const LowPassPrototype& p, Real eps2, Poles& x);
void flat_minima_poles(const LowPassPrototype& p, Real eps2, Poles& x);
void elliptic_poles(const LowPassPrototype& p, Real eps2, Poles& x);
void append(WideRootSet& E, Root x);
void append_band_pass(WideRootSet& E, Root X, Real r);
// A product of real roots, most of them twice: k g^2 h.
struct SquaredProduct {
    Real k = 0;
    int doubles = 0, singles = 0;
    Table<Real, max_pairs> twice;
    Table<Real, max_degree> once;
};
[[nodiscard]] bool squared_product(const WideRootSet& set, SquaredProduct& product);
[[nodiscard]] bool correct(const SquaredProduct& F, const SquaredProduct& Q, Root& x);

}  // namespace

bool closedPoles(const FilterSpec& spec, XPlane& xp) {
    const LowPassPrototype p = prototype_of(spec, xp);
    if (p.degree == 0 || p.degree > max_degree) return false;
    Poles poles;
    const bool minima = p.edge > 0;
    (p.flat ? (minima ? flat_minima_poles : flat_poles) : (minima ? elliptic_poles : ripple_poles))(p, xp.eps2, poles);

    WideRootSet E;
    E.multiplier = xp.FS.multiplier + xp.QS.multiplier;
    const Real r = std::sqrt(xp.a);
    for (int k = (p.degree + 1) / 2; k >= 1; --k) {  // by magnitude, ascending
        const Root x = {(p.scale * poles(k).re + p.shift) / (1 + p.shift), p.scale * poles(k).im / (1 + p.shift)};
        spec.filterType == band_pass ? append_band_pass(E, x, r) : append(E, x);
    }
    if (E.count != xp.FS.count || E.count != xp.QS.count) return false;
    if (minima || spec.filterType == band_pass) {
        SquaredProduct F, Q;
        if (!squared_product(xp.FS, F) || !squared_product(xp.QS, Q)) return false;
        for (int i = 1; i <= E.count; ++i) {
            Root x = E.root(i);
            if (x.im < 0)
                x = conjugate(E.root(i - 1));
            else if (!correct(F, Q, x))
                return false;
            E.set_root(i, x);
        }
    }
    sortConjugates(E, Reals::last);
    xp.ES = E;
    return true;
}

ReflectionZeros closedReflectionZeros(const FilterSpec& spec, const XPlane& xp) {
    const LowPassPrototype p = prototype_of(spec, xp);
    ReflectionZeros zeros;
    if (p.degree == 0 || p.degree > max_degree || p.flat || spec.filterType == band_pass) return zeros;
    const Real kc = p.edge > 0 ? complement_of_edge(p.edge) : 1;
    const JacobiFunctions functions(p.edge > 0 ? 1 / p.edge : 0, kc);
    for (int k = p.degree / 2; k >= 1; --k) {
        const auto [s, c] = sine_cosine(k, p.degree);
        const auto at = functions.at(s, c);
        zeros.eta(++zeros.count) = std::sqrt(p.scale) * at.cn / (at.sn * kc);
    }
    return zeros;
}

namespace {

// With all zeros at infinity no step before has made one.
LowPassPrototype prototype_of(const FilterSpec& spec, const XPlane& xp) {
    const bool flat = spec.passbandType == maximally_flat;
    if (spec.unitElements > 0 || (!flat && spec.passbandType != equal_ripple)) return {};
    const bool band = spec.filterType == band_pass;
    if (spec.filterType > band_pass || (band && spec.bandpassType != conventional)) return {};
    LowPassPrototype p = xp.prototype;
    if (xp.zeroCount == 0) {
        if (spec.zerosAtZero != (band ? spec.zerosAtInfinity : 0)) return {};
        p.degree = spec.zerosAtInfinity;
        p.edge = 0;
        p.scale = 1;
    }
    p.flat = flat;
    return p;
}

// Of (2k - 1) pi/(2n), both without cancellation: above pi/4 from the complement.
SineCosine sine_cosine(int k, int n) {
    const int turn = 2 * k - 1, rest = n - turn;
    const Real angle = std::numbers::pi_v<Real> * std::min(turn, rest) / (2 * n);
    const SineCosine at{std::sin(angle), std::cos(angle)};
    return turn <= rest ? at : SineCosine{at.c, at.s};
}

void flat_poles(const LowPassPrototype& p, Real eps2, Poles& x) {
    const Real u = -std::log(eps2) / (2 * p.degree);
    const Real sh = std::sinh(u), ch = std::cosh(u), e = std::exp(u);
    for (int k = 1; k <= (p.degree + 1) / 2; ++k) {
        const auto [s, c] = sine_cosine(k, p.degree);
        const Real D = 2 * (sh * sh + s * s);
        x(k) = {e * (ch * s * s + sh * c * c) / D, s * c / D};
    }
}

Root from_parts(Real P, Real Q) { return {(Q - P) * (Q + P), 2 * P * Q}; }

void ripple_poles(const LowPassPrototype& p, Real eps2, Poles& x) {
    const Real v = std::asinh(1 / std::sqrt(eps2)) / p.degree;
    const Real sh = std::sinh(v), ch = std::cosh(v);
    for (int k = 1; k <= (p.degree + 1) / 2; ++k) {
        const auto [s, c] = sine_cosine(k, p.degree);
        const Real D = s * s + sh * sh;
        x(k) = from_parts(s * c / D, sh * ch / D);
    }
}

void flat_minima_poles(const LowPassPrototype& p, Real eps2, Poles& x) {
    const Real w = p.edge;
    const Real v = std::asinh(std::sqrt(eps2) * std::cosh(p.degree * std::acosh(w))) / p.degree;
    const Real sh = std::sinh(v), ch = std::cosh(v);
    for (int k = 1; k <= (p.degree + 1) / 2; ++k) {
        const auto [s, c] = sine_cosine(k, p.degree);
        const Root z = {c * ch, s * sh};
        x(k) = cdiv(Root{w * w, 0}, Root{w - z.re, -z.im} * Root{w + z.re, z.im}, solver_decades);
    }
}

Real square(Real x) { return x * x; }

void elliptic_poles(const LowPassPrototype& p, Real eps2, Poles& x) {
    const int n = p.degree;
    const Real k = 1 / p.edge, kc = complement_of_edge(p.edge);
    const JacobiFunctions functions(k, kc), of_complement(kc, k);
    Table<JacobiFunctions::Values, max_pairs> at;
    Real k1 = std::pow(k, static_cast<Real>(n));
    for (int i = 1; i <= (n + 1) / 2; ++i) {
        const auto [s, c] = sine_cosine(i, n);
        at(i) = functions.at(s, c);
        if (i <= n / 2) k1 *= square(square(at(i).sn));
    }
    const Real t = 1 / std::sqrt(eps2);
    const Real integral = t * carlson_rf(1, 1 + k1 * k1 * t * t, 1 + t * t);  // F(atan t, k1')
    const Real quarters_of_K1 = integral * arithmetic_geometric_mean(1, std::sqrt((1 - k1) * (1 + k1)));
    const Real phi = quarters_of_K1 / n * of_complement.mean() / functions.mean();
    const auto [s1, c1, d1] = of_complement.at(std::sin(phi), std::cos(phi));
    for (int i = 1; i <= (n + 1) / 2; ++i) {
        const auto [s, c, d] = at(i);
        const Real A = square(c1) + square(k * s * s1);
        const Real D = (square(s * d1) + square(c * d * s1 * c1)) * kc;
        x(i) = from_parts(s * c * c1 * d1 * A / D, d * s1 * (square(c * c1) + square(s * d1)) / D);
    }
}

void append(WideRootSet& E, Root x) {
    E.append(x);
    if (x.im != 0) E.append(conjugate(x));
}

// The low-pass X is (x + r)^2/((1 + r)^2 x) of the band-pass whose lower edge is r times the upper one.
void append_band_pass(WideRootSet& E, Root X, Real r) {
    const Root T = (1 + r) * (1 + r) / 2 * X;
    const Root B = T - Root{r, 0}, D = csqrt(T * (T - Root{2 * r, 0}));
    const Root plus = B + D, minus = B - D;
    const Root larger = sum_of_parts(plus) > sum_of_parts(minus) ? plus : minus;
    const Root smaller = cdiv(Root{r * r, 0}, larger, solver_decades);
    if (X.im == 0 && larger.im != 0) {
        append(E, {larger.re, std::fabs(larger.im)});
        return;
    }
    for (const Root& x : {smaller, larger}) append(E, {x.re, std::fabs(x.im)});
}

bool squared_product(const WideRootSet& set, SquaredProduct& product) {
    product.k = set.multiplier;
    for (int i = 1; i <= set.count; ++i) {
        if (set.im(i) != 0) return false;
        if (i < set.count && set.re(i) == set.re(i + 1)) {
            product.twice(++product.doubles) = set.re(i++);
        } else {
            product.once(++product.singles) = set.re(i);
        }
    }
    return true;
}

struct Sample {
    Root value, slope;
};
Sample sample(const SquaredProduct& product, Root x) {
    const auto expand = [x](const auto& roots, int count) {
        Sample s{{1, 0}, {0, 0}};
        for (int i = 1; i <= count; ++i) {
            const Root factor{x.re - roots(i), x.im};
            s.slope = s.slope * factor + s.value;
            s.value *= factor;
        }
        return s;
    };
    const Sample g = expand(product.twice, product.doubles), h = expand(product.once, product.singles);
    return {product.k * (g.value * g.value * h.value),
            product.k * (g.value * (2.0L * (g.slope * h.value) + g.value * h.slope))};
}

// One step of Newton's iteration on F + Q.
bool correct(const SquaredProduct& F, const SquaredProduct& Q, Root& x) {
    const Sample f = sample(F, x), q = sample(Q, x);
    Root step = cdiv(f.value + q.value, f.slope + q.slope, solver_decades);
    if (x.im == 0) step.im = 0;
    x -= step;
    return sum_of_parts(step) <= largest_correction * sum_of_parts(x);
}

}  // namespace

}  // namespace kavrel
