#include "approximation/immittance.h"

#include <cmath>

#include "approximation/hurwitz_parts.h"
#include "numeric/root_order.h"
#include "numeric/scaled_value.h"

namespace kavrel {

namespace {

using Real = XPlane::Real;

SolveVerdict sum_and_difference(const XPlane& x, const WideRootSet& e, const WideRootSet& f, WideRootSet& sum,
                                WideRootSet& difference, ExtractionWorkspace& ws);
void make_real(WideRootSet& R);
void correct_pairs(const WideRootSet& A, const WideRootSet& B, WideRootSet& R);
void settle_forced_root(const WideRootSet& A, const WideRootSet& B, const WideRootSet& Q, Real place, WideRootSet& R);

}  // namespace

SolveVerdict immittancePolynomials(XPlane& x, ExtractionWorkspace& ws) {
    const SolveVerdict even = sum_and_difference(x, x.eEven, x.fEven, x.es, x.ed, ws);
    return even.good() ? sum_and_difference(x, x.eOdd, x.fOdd, x.os, x.od, ws) : even;
}

bool immittanceOfDenominator(XPlane& x) {
    const bool made = x.eEven.multiplier != 0 || x.eOdd.multiplier != 0;
    if (!made && !partsOfHurwitz(x.eFactors, x.a, x.eEven, x.eOdd)) return false;
    x.es = x.eEven;
    x.os = x.eOdd;
    x.ed = {};
    x.od = {};
    return true;
}

namespace {

SolveVerdict sum_and_difference(const XPlane& x, const WideRootSet& e, const WideRootSet& f, WideRootSet& sum,
                                WideRootSet& difference, ExtractionWorkspace& ws) {
    if (f.multiplier == 0) {
        sum = e;
        difference = {};
        return {};
    }
    WideRootSet minus_f = f;
    minus_f.multiplier = -f.multiplier;
    for (WideRootSet* R : {&sum, &difference}) {
        const WideRootSet& B = R == &sum ? f : minus_f;
        const SolveVerdict verdict = solveSum(e, B, *R, ws.sum);
        if (!verdict.good()) return verdict;
        make_real(*R);
        correct_pairs(e, B, *R);
        settle_forced_root(e, B, x.QS, 1, *R);
        if (x.a > 0) settle_forced_root(e, B, x.QS, x.a, *R);
    }
    return {};
}

// |f| <= |e| at real frequencies: e + f and e - f have no zeros in the right half plane, and the zeros of their parts
// are real in x (Hermite-Biehler). A double one may have come out as a conjugate pair.
void make_real(WideRootSet& R) {
    for (int i = 1; i <= R.count; ++i) R.im(i) = 0;
    sortConjugates(R, Reals::last);
}

// Two roots so close that the wide type does not part them were found one by one and do not belong together. With C the
// product over all others S/C is a quadratic about them, y^2 + b y + c, which follows from its values at some distance
// h:
//   v = S/C(m - h), w = S/C(m + h), b = (w - v)/(2h), c = (v + w)/2 - h^2, y = x - m.
void correct_pairs(const WideRootSet& A, const WideRootSet& B, WideRootSet& R) {
    constexpr Real close = 1e-6L;
    constexpr Real share = 1e-3L;  // of the distance to the next root
    for (int i = 1; i <= R.count; ++i) {
        for (int j = i + 1; j <= R.count; ++j) {
            const Real middle = (R.re(i) + R.re(j)) / 2;
            const Real apart = std::fabs(R.re(i) - R.re(j));
            if (!(apart <= close * std::fabs(middle))) continue;

            WideRootSet others;
            others.multiplier = R.multiplier;
            Real h = std::fabs(middle);
            for (int k = 1; k <= R.count; ++k) {
                if (k == i || k == j) continue;
                others.append(R.root(k));
                h = std::fmin(h, std::fabs(R.re(k) - middle));
            }
            h *= share;
            if (!(h > apart)) continue;
            const auto quotient = [&](Real x) {
                const ScaledValue<Real> a = scaledProduct(A, {x, 0});
                const ScaledValue<Real> b = scaledProduct(B, {x, 0});
                const ScaledValue<Real> c = scaledProduct(others, {x, 0});
                return (shifted(a.value, a.exponent - c.exponent).re + shifted(b.value, b.exponent - c.exponent).re) /
                       c.value.re;
            };
            const Real v = quotient(middle - h);
            const Real w = quotient(middle + h);
            const Real half_b = (w - v) / (4 * h);
            const Real disc = half_b * half_b - ((v + w) / 2 - h * h);
            const Real half_width = disc > 0 ? std::sqrt(disc) : Real{0};
            if (!(std::fabs(half_b) + half_width <= close * std::fabs(middle))) continue;
            R.re(i) = middle - half_b - half_width;
            R.re(j) = middle - half_b + half_width;
        }
    }
}

// At a zero of transmission |e| = |f|: where A + B vanishes there, its root is the place itself.
void settle_forced_root(const WideRootSet& A, const WideRootSet& B, const WideRootSet& Q, Real place, WideRootSet& R) {
    constexpr Real level = 1e-9L;
    constexpr Real reach = 1e-8L;
    bool zero_of_q = false;
    for (int i = 1; i <= Q.count; ++i) zero_of_q = zero_of_q || (Q.re(i) == place && Q.im(i) == 0);
    if (!zero_of_q) return;

    const ScaledValue<Real> va = scaledProduct(A, {place, 0});
    const ScaledValue<Real> vb = scaledProduct(B, {place, 0});
    const Real b = shifted(vb.value, vb.exponent - va.exponent).re;
    if (!(std::fabs(va.value.re + b) <= level * (std::fabs(va.value.re) + std::fabs(b)))) return;
    int settled = 0;
    int neighbour = 0;
    for (int i = 1; i <= R.count; ++i) {
        const Real distance = std::fabs(R.re(i) - place);
        if (R.im(i) != 0 || !(distance <= reach)) continue;
        if (settled == 0 || distance < std::fabs(R.re(settled) - place)) {
            neighbour = settled;
            settled = i;
        } else if (neighbour == 0 || distance < std::fabs(R.re(neighbour) - place)) {
            neighbour = i;
        }
    }
    if (settled == 0) return;
    // Of two roots so close only the sum is known to the last digits; none lies between the places at a and 1.
    if (neighbour != 0) {
        const Real other = R.re(neighbour) + (R.re(settled) - place);
        R.re(neighbour) = place < 1 ? std::fmin(other, place) : std::fmax(other, place);
    }
    R.re(settled) = place;
}

}  // namespace

}  // namespace kavrel
