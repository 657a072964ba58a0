#include "synthesis/long_immittance.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

#include "approximation/hurwitz_factors.h"
#include "numeric/complex.h"
#include "numeric/pseudo_polynomial.h"
#include "synthesis/long_roots.h"

namespace kavrel {

namespace {

using Long = LongReal;
using LongComplex = Complex<Long>;
using LongSet = RootSetOf<Long>;
using Rough = Complex<long double>;

constexpr int newton_turns = 40;
constexpr long double settled = 1e-140L;         // relative step at which a root is found
constexpr long double enough = 1e-100L;          // ... with which it has to do after the last turn
constexpr long double no_coefficient = 1e-100L;  // of two, the relative size of one that is only rounding
constexpr long double off_axis = 1e-5L;          // relative imaginary part up to which a rough root is real
constexpr long double same_filter = 1e-9L;       // agreement with the approximation's own numbers
constexpr long double one_place = 1e-9L;         // relative distance of two rough roots that are found together
constexpr int pair_turns = 6;
constexpr long double at_infinity = 1e12L;   // size of a rough root under a leading coefficient that is rounding
constexpr long double same_point = 1e-120L;  // distance of a root from a or 1 that is one of these
constexpr int sweeps_from_afar = 400;

using LongFactors = PseudoPolynomialOf<Long>;
// e as a product of Hurwitz factors, and the coefficients of its parts.
struct LongHurwitz {
    LongFactors factors;
    PartCoefficientsOf<Long> parts;
};

[[nodiscard]] LongSet long_set(const WideRootSet& set);
using PowerOfF = std::array<LongSet, 2>;  // F as a sum of products
[[nodiscard]] PowerOfF power_of_parts(const XPlane& xp);
[[nodiscard]] bool refine_poles(const XPlane& xp, const PowerOfF& f, Watcher& watcher, LongSet& e);
[[nodiscard]] bool refine_pair(std::span<const LongSet> terms, int i, int j, LongSet& e);
[[nodiscard]] bool use_factors_of_f(const XPlane& xp, Watcher& watcher, LongSet& e, LongSet& f_even, LongSet& f_odd);
[[nodiscard]] LongSet reals_last(const LongSet& set);
[[nodiscard]] bool refine_part(const LongHurwitz& p, const Long& a, bool even, const WideRootSet& rough, LongSet& part);
[[nodiscard]] bool refine_sum(const Long& a, const LongSet& e, const LongSet& f, int sign, const WideRootSet& rough,
                              ReactanceRoots& sum);
[[nodiscard]] bool copy_real(const LongSet& set, ReactanceRoots& roots);

}  // namespace

bool long_immittance(const XPlane& xp, bool single_termination, Watcher& watcher, LongImmittance& out) {
    out = {};
    out.degree = xp.ES.count;
    const Long a = xp.a;
    LongSet e = long_set(xp.ES);
    LongSet f_even = long_set(xp.fEven);
    LongSet f_odd = long_set(xp.fOdd);
    out.even_f = f_even.multiplier.sign() != 0;
    out.odd_f = f_odd.multiplier.sign() != 0;
    const bool with_f = !single_termination && (out.even_f || out.odd_f);
    if (with_f && !refine_poles(xp, power_of_parts(xp), watcher, e) &&
        !use_factors_of_f(xp, watcher, e, f_even, f_odd)) {
        return false;
    }

    LongHurwitz p;
    if (!factorsOfPower(reals_last(e), a, p.factors).good()) return false;
    p.parts = evenOddCoefficients(p.factors, a);
    LongSet even, odd;
    if (!watcher.go_on() || !refine_part(p, a, true, xp.eEven, even)) return false;
    if (!watcher.go_on() || !refine_part(p, a, false, xp.eOdd, odd)) return false;
    if (!with_f) return copy_real(even, out.es) && copy_real(odd, out.os);
    const auto refined = [&](const LongSet& of_e, const LongSet& of_f, int sign, const WideRootSet& rough, auto& sum) {
        return watcher.go_on() && refine_sum(a, of_e, of_f, sign, rough, sum);
    };
    return refined(even, f_even, 1, xp.es, out.es) && refined(even, f_even, -1, xp.ed, out.ed) &&
           refined(odd, f_odd, 1, xp.os, out.os) && refined(odd, f_odd, -1, xp.od, out.od);
}

namespace {

LongSet long_set(const WideRootSet& set) {
    LongSet to;
    to.multiplier = set.multiplier;
    for (int i = 1; i <= set.count; ++i) to.append({set.re(i), set.im(i)});
    return to;
}

LongComplex product_at(const LongSet& set, const LongComplex& x) {
    LongComplex product{set.multiplier, 0};
    const bool real = x.im.sign() == 0;
    for (int i = 1; i <= set.count; ++i) {
        if (real && set.im(i).sign() == 0) {
            product.re *= x.re - set.re(i);
            product.im *= x.re - set.re(i);
        } else {
            product *= x - set.root(i);
        }
    }
    return product;
}

// The sum over the roots of 1/(x - root); x must not be one of them.
Rough log_slope(const LongSet& set, const LongComplex& x) {
    Rough sum{0, 0};
    for (int i = 1; i <= set.count; ++i) {
        const Rough distance = rounded(x - set.root(i));
        sum += quotient(Rough{1, 0}, distance);
    }
    return sum;
}

// Newton's iteration for a root of the sum of all terms. The slope is rough: each turn adds its 18 digits.
[[nodiscard]] bool newton(std::span<const LongSet> terms, LongComplex& x) {
    const bool real = x.im.sign() == 0;
    long double step = 1;
    for (int turn = 0; turn < newton_turns; ++turn) {
        for (const LongSet& term : terms) {
            for (int i = 1; i <= term.count; ++i) {
                if (x == term.root(i)) x.re += x.re * 1e-25L + 1e-30L;
            }
        }
        LongComplex value{0, 0};
        Rough slope{0, 0};
        for (const LongSet& term : terms) {
            if (term.multiplier.sign() == 0) continue;
            const LongComplex p = product_at(term, x);
            value += p;
            slope += rounded(p) * log_slope(term, x);
        }
        Rough delta = quotient(rounded(value), slope);
        if (real) delta.im = 0;
        if (!std::isfinite(delta.re) || !std::isfinite(delta.im)) return false;
        x -= LongComplex{delta.re, delta.im};
        const long double size = std::hypot(rounded(x.re), rounded(x.im));
        step = std::hypot(delta.re, delta.im) / (size > 0 ? size : 1);
        if (step < settled) return true;
    }
    return step < enough;
}

// From the parts of f: with P+ P- of f as in pseudo_polynomial.h,
//   F = Fe^2 - w^2 Fo^2 for even degree, F = (x - a) Fo^2 - (1 - x) Fe^2 for odd degree.
PowerOfF power_of_parts(const XPlane& xp) {
    const bool even_degree = xp.ES.count % 2 == 0;
    const auto square = [](const WideRootSet& part) {
        LongSet s;
        s.multiplier = Long{part.multiplier} * part.multiplier;
        for (int turn = 1; turn <= 2; ++turn) {
            for (int i = 1; i <= part.count; ++i) s.append({part.re(i), part.im(i)});
        }
        return s;
    };
    PowerOfF terms = {square(xp.fEven), square(xp.fOdd)};
    if (terms[0].multiplier.sign() != 0 && !even_degree) terms[0].append({1, 0});
    if (terms[1].multiplier.sign() != 0) {
        terms[1].append({xp.a, 0});
        if (even_degree) terms[1].append({1, 0});
    }
    return terms;
}

// Where f has its zeros on one side, the squares of its parts cancel to a small F on the real s axis, and 18 digits of
// the parts are not enough for it. The factors of f are: they are taken as the exact numbers then.
bool use_factors_of_f(const XPlane& xp, Watcher& watcher, LongSet& e, LongSet& f_even, LongSet& f_odd) {
    if (xp.fFactors.degree != xp.ES.count) return false;
    const Long a = xp.a;
    LongHurwitz p;
    p.factors.degree = xp.fFactors.degree;
    p.factors.multiplier = xp.fFactors.multiplier;
    for (int i = 1; i <= xp.fFactors.factors(); ++i) {
        p.factors.c(i) = xp.fFactors.c(i);
        p.factors.d(i) = xp.fFactors.d(i);
    }
    p.parts = evenOddCoefficients(p.factors, a);
    e = long_set(xp.ES);
    return refine_poles(xp, {fromFactors(p.factors, a), {}}, watcher, e) && refine_part(p, a, true, xp.fEven, f_even) &&
           refine_part(p, a, false, xp.fOdd, f_odd);
}

// [i] the root that is at one place with root i, to the accuracy at hand: its conjugate, or another real one; 0: none.
Table<int, max_degree> close_pairs(const LongSet& e) {
    Table<int, max_degree> partner;
    partner.fill(0);
    for (int i = 1; i <= e.count; ++i) {
        const Long reach = abs(e.re(i)) * one_place;
        for (int j = i + 1; j <= e.count && partner(i) == 0; ++j) {
            if (partner(j) != 0 || !(abs(e.re(i) - e.re(j)) <= reach) || !(abs(e.im(i)) <= reach)) continue;
            if (e.im(j) != -e.im(i)) continue;
            partner(i) = j;
            partner(j) = i;
        }
    }
    return partner;
}

// Roots of E = F + Q. Newton's iteration does not part two roots that are closer than the rough type can hold.
bool refine_poles(const XPlane& xp, const PowerOfF& f, Watcher& watcher, LongSet& e) {
    const std::array<LongSet, 3> terms = {long_set(xp.QS), f[0], f[1]};
    Long leading = 0;
    for (const LongSet& term : terms) {
        if (term.count == e.count) leading += term.multiplier;
    }
    if (!(abs(leading - e.multiplier) <= abs(e.multiplier) * same_filter)) return false;
    e.multiplier = leading;
    const Table<int, max_degree> partner = close_pairs(e);
    for (int i = 1; i <= e.count; ++i) {
        if (partner(i) != 0) continue;
        if (e.im(i).sign() < 0) {
            e.re(i) = e.re(i - 1);
            e.im(i) = -e.im(i - 1);
            continue;
        }
        LongComplex x = e.root(i);
        const LongComplex start = x;
        if (!watcher.go_on() || !newton(terms, x)) return false;
        const Rough moved = rounded(x - start);
        if (std::hypot(moved.re, moved.im) > same_filter * std::hypot(rounded(start.re), rounded(start.im))) {
            return false;
        }
        e.set_root(i, x);
    }
    for (int i = 1; i <= e.count; ++i) {
        if (partner(i) > i && !refine_pair(terms, i, partner(i), e)) return false;
    }
    return true;
}

// Beside a double zero of f on the real s axis E has two roots whose distance, and whether they are real, is beyond the
// rough type. With C the product over all other roots S/C = y^2 + b y + c about their middle, known from two values.
bool refine_pair(std::span<const LongSet> terms, int i, int j, LongSet& e) {
    LongSet others;
    others.multiplier = e.multiplier;
    for (int k = 1; k <= e.count; ++k) {
        if (k != i && k != j) others.append(e.root(k));
    }
    const auto over_others = [&](const Long& x) {
        Long value = 0;
        for (const LongSet& term : terms) value += product_at(term, {x, 0}).re;
        return value / product_at(others, {x, 0}).re;
    };
    const Long start = shifted(e.re(i) + e.re(j), -1);
    Long middle = start;
    Long h = abs(start) * one_place;
    Long discriminant;
    for (int turn = 0; turn < pair_turns && h.sign() != 0; ++turn) {
        const Long below = over_others(middle - h);
        const Long above = over_others(middle + h);
        const Long b = (above - below) / shifted(h, 1);
        const Long c = shifted(above + below, -1) - h * h;
        discriminant = shifted(b * b, -2) - c;
        middle -= shifted(b, -1);
        h = sqrt(abs(discriminant));
        if (!is_finite(middle) || !is_finite(h)) return false;
    }
    const Long bound = abs(start) * same_filter;
    if (abs(middle - start) > bound || h > shifted(bound, 1)) return false;
    const bool real = discriminant.sign() >= 0;
    e.set_root(i, real ? LongComplex{middle + h, 0} : LongComplex{middle, h});
    e.set_root(j, real ? LongComplex{middle - h, 0} : LongComplex{middle, -h});
    return true;
}

// Two roots of one place may have turned out real, or not.
LongSet reals_last(const LongSet& set) {
    LongSet sorted;
    sorted.multiplier = set.multiplier;
    for (const bool real : {false, true}) {
        for (int i = 1; i <= set.count; ++i) {
            if ((set.im(i) == 0) == real) sorted.append(set.root(i));
        }
    }
    return sorted;
}

// Ev and Od at a real x outside (a, 1), where w = j |w|, and the slope over the value of P in rough numbers.
struct PartSample {
    Long even, odd;
    long double even_slope = 0, odd_slope = 0;
};
PartSample sample_parts(const LongFactors& p, const Long& a, const Long& x) {
    const Long w2 = (x - a) * (x - 1);  // |w|^2
    const Long w = sqrt(w2);
    const Long slope_of_w = (shifted(x, 1) - a - 1) / shifted(w, 1);
    LongComplex product{p.multiplier, 0};
    Rough slope{0, 0};
    for (int i = 1; i <= p.degree / 2; ++i) {
        const LongComplex factor{p.c(i) + p.d(i) * x, w};
        slope += quotient(Rough{rounded(p.d(i)), rounded(slope_of_w)}, rounded(factor));
        product *= factor;
    }
    Long root = w;
    Long root_slope = slope_of_w;
    if (p.degree % 2 == 1) {
        // sqrt(x - a) + c sqrt(1 - x) over sqrt(1 - x): c + s, s = j |s|.
        const Long s = w / abs(1 - x);
        // s^2 = (x - a)/(1 - x): d|s|/dx = -(1 - a)/(2 |s| (1 - x)^2).
        const Long s_slope = -(1 - a) / (shifted(s, 1) * (1 - x) * (1 - x));
        const LongComplex factor{p.c((p.degree + 1) / 2), s};
        // w = s (1 - x) takes the sign of 1 - x.
        if ((1 - x).sign() < 0) {
            product = conjugate(product);
            slope = conjugate(slope);
        }
        slope += quotient(Rough{0, rounded(s_slope)}, rounded(factor));
        product *= factor;
        root = s;
        root_slope = s_slope;
    }
    PartSample out;
    out.even = product.re;
    out.odd = product.im / root;
    const Rough derivative = rounded(product) * slope;
    out.even_slope = derivative.re;
    const Long quotient = product.im * root_slope / (root * root);
    out.odd_slope = derivative.im / rounded(root) - rounded(quotient);
    return out;
}

bool refine_part(const LongHurwitz& p, const Long& a, bool even, const WideRootSet& rough, LongSet& part) {
    const int expected = even ? p.factors.even_degree() : p.factors.factors() - 1;
    const auto& coefficients = even ? p.parts.CE : p.parts.CO;
    part = {};
    if (expected < 0) return true;
    for (int i = 1; i <= rough.count; ++i) {
        if (rough.im(i) != 0) return false;
        if (std::fabs(rough.re(i)) < at_infinity) part.append({rough.re(i), 0});
    }
    part.multiplier = coefficients(expected + 1);
    if (part.count == expected - 1) {
        // The last root lies near s = j, x beyond all bounds.
        const Long next = coefficients(expected);
        if (abs(part.multiplier) <= abs(next) * no_coefficient)
            part.multiplier = next;
        else
            part.append({-next / part.multiplier, 0});
    } else if (part.count != expected) {
        return false;
    }
    for (int i = 1; i <= part.count; ++i) {
        Long x = part.re(i);
        long double step = 1;
        for (int turn = 0; turn < newton_turns && step >= settled; ++turn) {
            const PartSample s = sample_parts(p.factors, a, x);
            const long double value = even ? rounded(s.even) : rounded(s.odd);
            const long double delta = value / (even ? s.even_slope : s.odd_slope);
            if (!std::isfinite(delta)) return false;
            x -= delta;
            step = std::fabs(delta) / std::fabs(rounded(x));
        }
        if (!(step < enough)) return false;
        part.re(i) = x;
    }
    return true;
}

// e + f or e - f, one part.
bool refine_sum(const Long& a, const LongSet& e, const LongSet& f, int sign, const WideRootSet& rough,
                ReactanceRoots& sum) {
    sum = {};
    if (f.multiplier.sign() == 0) return sign < 0 || copy_real(e, sum);
    std::array<LongSet, 2> terms = {e, f};
    if (sign < 0) terms[1].multiplier = -f.multiplier;
    const auto sum_of_roots = [](const LongSet& set) {
        Long total = 0;
        for (int i = 1; i <= set.count; ++i) total += set.re(i);
        return total;
    };
    // The two highest coefficients.
    const int expected = std::max(e.count, f.count);
    Long leading = 0;
    Long next = 0;
    for (const LongSet& term : terms) {
        if (term.count == expected) leading += term.multiplier, next -= term.multiplier * sum_of_roots(term);
        if (term.count == expected - 1) next += term.multiplier;
    }
    if (expected == 0 && abs(leading) <= abs(e.multiplier) * no_coefficient) return true;
    // Close pairs may have come out with imaginary parts: these are their distance.
    for (int i = 1; i <= rough.count; ++i) {
        if (std::fabs(rough.im(i)) > off_axis * std::fabs(rough.re(i))) return false;
        sum.append(rough.re(i) + rough.im(i));
    }
    sum.multiplier = leading;
    if (rough.count == expected - 1) {
        if (abs(leading) <= abs(next) * no_coefficient)
            sum.multiplier = next;
        else
            sum.append(-next / leading);
    } else if (rough.count != expected) {
        return false;
    }
    // A zero of transmission at 0 or infinity, where e = f or e = -f, is an exact root.
    const auto value = [&](const Long& x) {
        const Long first = product_at(terms[0], {x, 0}).re;
        const Long s = first + product_at(terms[1], {x, 0}).re;
        return abs(s) <= abs(first) * long_rounding ? Long{0} : s;
    };
    if (!refine_real_roots(sum.root, sum.count, sum.multiplier, value)) {
        // In a deep stop band the rough roots may have one twice in place of another. Those of e are near them all.
        if (e.count != sum.count) return false;
        for (int i = 1; i <= e.count; ++i) sum.root(i) = e.re(i);
        if (!refine_real_roots(sum.root, sum.count, sum.multiplier, value, {.sweeps = sweeps_from_afar})) return false;
    }
    for (int i = 1; i <= sum.count; ++i) {
        for (const Long& point : {a, Long{1}}) {
            if (abs(sum.root(i) - point) <= same_point) sum.root(i) = point;
        }
    }
    return true;
}

bool copy_real(const LongSet& set, ReactanceRoots& roots) {
    roots = {};
    roots.multiplier = set.multiplier;
    for (int i = 1; i <= set.count; ++i) {
        if (set.im(i).sign() != 0) return false;
        roots.append(set.re(i));
    }
    return true;
}

}  // namespace

}  // namespace kavrel
