// The denominator E of the transfer function and its Hurwitz factors.
//
// A power E(x), (-1)^n |e|^2 at real frequencies, belongs to one polynomial e(s) with all zeros in the left half plane.
// That one is held as a pseudo-polynomial (numeric/pseudo_polynomial.h), E its roots in x; the two routines in the
// middle of this file go from one form to the other without a coefficient being formed.
#pragma once

#include <cmath>

#include "approximation/x_plane.h"
#include "numeric/even_odd_roots.h"
#include "numeric/solve_verdict.h"
#include "numeric/sum_roots.h"

namespace kavrel {

// What the extractions of a design work on; between calls it holds nothing of use.
struct ExtractionWorkspace {
    SumWorkspace sum;
    EvenOddWorkspace parts;
};

// E = F + Q: fills ES, sorted in conjugate order with the real roots last.
// Source: R. Feldtkeller, "Siebschaltungstheorie" (energy balance of a lossless two-port).
SolveVerdict feldtkeller(XPlane& x, ExtractionWorkspace& ws);

// F = E - Q: fills FS, in the same order.
SolveVerdict characteristicFromE(XPlane& x, ExtractionWorkspace& ws);

// Whether a set could be split. `value` is where it failed: an x on the real frequency axis.
struct [[nodiscard]] FactorVerdict {
    int status = 0;  // 0, or -1
    long double value = 0;

    [[nodiscard]] bool good() const { return status == 0; }
};

// Hurwitz factors of a power: c, d of each pair of roots, c_n of a last single one, and sqrt|multiplier| divided by
// sqrt(d^2 + 1) of each pair and by sqrt(c_n^2 + 1). The set is brought into conjugate order, reals last, so that
// factor i belongs to the roots 2i - 1 and 2i. With x = p +- jr:
//   h = -p, r1 = |1 - x|, r2 = |a - x|, m = (a + h)(h + 1) - r^2, t = 2h + 1 + a, D = 2 (r1 r2 - m),
//   sqrt(d^2 + 1) = (r1 + r2)/sqrt D, d = t/sqrt D, c = sqrt(d^2 + 1) (P + (2h + P) a)/(r2 + a r1), P = |x|^2;
// two real roots are taken as r^2 = -((x1 - x2)/2)^2. A root on the real frequency axis, where D = 0, gives status -1
// and leaves `p` unfinished.
FactorVerdict toFactors(WideRootSet& set, long double a, WidePseudoPolynomial& p);

// The same of a set in that order, in any real type.
template <class Real>
FactorVerdict factorsOfPower(const RootSetOf<Real>& set, const Real& a, PseudoPolynomialOf<Real>& p);

// The power of a pseudo-polynomial: the roots of (c + d x)^2 = (x - a)(1 - x) for each pair, (c_n^2 + a)/(c_n^2 + 1)
// for the last factor, multiplier^2 product (d^2 + 1) (c_n^2 + 1). The order is that of the factors.
template <class Real>
[[nodiscard]] RootSetOf<Real> fromFactors(const PseudoPolynomialOf<Real>& p, const Real& a);

// The zero of e(s) that belongs to a root of E: s^2 = (x - a)/(1 - x), Re s <= 0, in units of the upper edge. Of a
// conjugate pair each root gives its own s, again conjugates.
[[nodiscard]] Complex<long double> hurwitzRoot(Complex<long double> x, long double a);

// The square of s that belongs to x.
[[nodiscard]] Complex<long double> squareOfS(Complex<long double> x, long double a);

// ---------------------------------------------------------------------------------------------------------------------

namespace hurwitz {

inline constexpr long double least_width = 1e-20L;  // D of a pair taken to lie on the axis

template <class Real>
[[nodiscard]] FactorVerdict off_axis_at(const Real& x) {
    return {-1, static_cast<long double>(x)};
}

// `width` receives sqrt(d^2 + 1).
template <class Real>
FactorVerdict factor_of_pair(const RootSetOf<Real>& set, int first, const Real& a, Real& c, Real& d, Real& width) {
    using std::sqrt;
    const Complex<Real> x1 = set.root(first);
    const Complex<Real> x2 = set.root(first + 1);
    const bool complex = x1.im != 0;
    const Real h = -(x1.re + x2.re) / 2;
    const Real half = (x1.re - x2.re) / 2;
    const Real r_squared = complex ? x1.im * x1.im : -half * half;
    const Real product = complex ? x1.re * x1.re + r_squared : x1.re * x2.re;
    const auto distances = [&](const Real& from) -> Real {
        return complex ? (from - x1.re) * (from - x1.re) + r_squared : (from - x1.re) * (from - x2.re);
    };

    const Real v1 = distances(1);
    const Real v2 = distances(a);
    if (v1 < 0) return {-1, 1};
    if (v2 < 0) return off_axis_at<Real>(a + 1e-9L);
    const Real r1 = sqrt(v1);
    const Real r2 = sqrt(v2);
    const Real t = 2 * h + 1 + a;
    const Real m = (a + h) * (h + 1) - r_squared;
    const Real residue = product + (2 * h + product) * a;  // (r2^2 - a^2 r1^2)/(1 - a)
    // (r1 r2)^2 - m^2 = (t r)^2
    const Real D = m <= 0 ? Real(2 * (r1 * r2 - m)) : Real(2 * t * t * r_squared / (r1 * r2 + m));
    if (!(D >= least_width)) return off_axis_at<Real>(-residue * (r1 + r2) / (t * (a * r1 + r2)));

    width = (r1 + r2) / sqrt(D);
    c = width * residue / (r2 + a * r1);
    d = t / sqrt(D);
    return {};
}

template <class Real>
FactorVerdict factor_of_single(const Real& x, const Real& a, Real& c) {
    using std::sqrt;
    const Real q = (x - a) / (1 - x);
    if (!(q >= 0)) return off_axis_at(x);
    c = sqrt(q);
    return {};
}

}  // namespace hurwitz

template <class Real>
FactorVerdict factorsOfPower(const RootSetOf<Real>& set, const Real& a, PseudoPolynomialOf<Real>& p) {
    using std::fabs, std::sqrt;
    p.degree = set.count;
    p.multiplier = sqrt(fabs(set.multiplier));
    for (int i = 1; i <= p.pairs(); ++i) {
        Real width = 1;
        const FactorVerdict verdict = hurwitz::factor_of_pair(set, 2 * i - 1, a, p.c(i), p.d(i), width);
        if (!verdict.good()) return verdict;
        p.multiplier /= width;
    }
    if (p.degree % 2 == 0) return {};

    const int last = p.factors();
    p.d(last) = 0;
    const Real x = set.re(set.count);
    if (const FactorVerdict verdict = hurwitz::factor_of_single(x, a, p.c(last)); !verdict.good()) return verdict;
    p.multiplier *= sqrt((1 - x) / (1 - a));
    return {};
}

template <class Real>
RootSetOf<Real> fromFactors(const PseudoPolynomialOf<Real>& p, const Real& a) {
    using std::fabs, std::sqrt;
    RootSetOf<Real> set;
    set.multiplier = p.multiplier * p.multiplier;
    for (int i = 1; i <= p.pairs(); ++i) {
        const Real c = p.c(i);
        const Real d = p.d(i);
        const Real lead = d * d + 1;
        const Real h = (2 * c * d - 1 - a) / (2 * lead);
        // h^2 - (a + c^2)/lead with the terms in c^2 d^2 taken out
        const Real v = ((1 - a) * (1 - a) / 4 - (c + d) * (c + a * d)) / (lead * lead);
        set.multiplier *= lead;
        const Real r = sqrt(fabs(v));
        if (v < 0) {
            set.append({-h, r});
            set.append({-h, -r});
            continue;
        }
        const Real larger = h > 0 ? Real(-(h + r)) : Real(r - h);
        const Real smaller = larger == 0 ? Real{0} : Real((a + c * c) / (lead * larger));
        set.append({h > 0 ? smaller : larger, 0});
        set.append({h > 0 ? larger : smaller, 0});
    }
    if (p.degree % 2 == 1) {
        const Real c2 = p.c(p.factors()) * p.c(p.factors());
        set.append({(c2 + a) / (c2 + 1), 0});
        set.multiplier *= c2 + 1;
    }
    return set;
}

}  // namespace kavrel
