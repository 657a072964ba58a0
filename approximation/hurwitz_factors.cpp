#include "approximation/hurwitz_factors.h"

#include <cmath>

#include "numeric/guarded.h"
#include "numeric/root_order.h"

namespace kavrel {

namespace {

using Real = XPlane::Real;

constexpr Real least_width = 1e-20L;  // D of a pair taken to lie on the axis

SolveVerdict solve(const WideRootSet& A, const WideRootSet& B, WideRootSet& R, ExtractionWorkspace& ws);
FactorVerdict factor_of_pair(const WideRootSet& set, int first, Real a, Real& c, Real& d, Real& width);
FactorVerdict factor_of_single(Real x, Real a, Real& c);

}  // namespace

SolveVerdict feldtkeller(XPlane& x, ExtractionWorkspace& ws) { return solve(x.FS, x.QS, x.ES, ws); }

SolveVerdict characteristicFromE(XPlane& x, ExtractionWorkspace& ws) {
    WideRootSet minus_q = x.QS;
    minus_q.multiplier = -minus_q.multiplier;
    return solve(x.ES, minus_q, x.FS, ws);
}

FactorVerdict toFactors(WideRootSet& set, long double a, WidePseudoPolynomial& p) {
    sortConjugates(set, Reals::last);
    p.degree = set.count;
    p.multiplier = std::sqrt(std::fabs(set.multiplier));
    for (int i = 1; i <= p.pairs(); ++i) {
        Real width = 1;
        const FactorVerdict verdict = factor_of_pair(set, 2 * i - 1, a, p.c(i), p.d(i), width);
        if (!verdict.good()) return verdict;
        p.multiplier /= width;
    }
    if (p.degree % 2 == 0) return {};

    const int last = p.factors();
    p.d(last) = 0;
    const Real x = set.re(set.count);
    if (const FactorVerdict verdict = factor_of_single(x, a, p.c(last)); !verdict.good()) return verdict;
    p.multiplier *= std::sqrt((1 - x) / (1 - a));
    return {};
}

WideRootSet fromFactors(const WidePseudoPolynomial& p, long double a) {
    WideRootSet set;
    set.multiplier = p.multiplier * p.multiplier;
    for (int i = 1; i <= p.pairs(); ++i) {
        const Real c = p.c(i);
        const Real d = p.d(i);
        const Real lead = d * d + 1;
        const Real h = (2 * c * d - 1 - a) / (2 * lead);
        // h^2 - (a + c^2)/lead with the terms in c^2 d^2 taken out
        const Real v = ((1 - a) * (1 - a) / 4 - (c + d) * (c + a * d)) / (lead * lead);
        set.multiplier *= lead;
        const Real r = std::sqrt(std::fabs(v));
        if (v < 0) {
            set.append({-h, r});
            set.append({-h, -r});
            continue;
        }
        const Real larger = h > 0 ? -(h + r) : r - h;
        const Real smaller = larger == 0 ? Real{0} : (a + c * c) / (lead * larger);
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

Complex<long double> squareOfS(Complex<long double> x, long double a) {
    return cdiv(Complex<Real>{x.re - a, x.im}, Complex<Real>{1 - x.re, -x.im});
}

Complex<long double> hurwitzRoot(Complex<long double> x, long double a) {
    const Complex<Real> s = csqrt(squareOfS(x, a));
    return {-s.re, x.im == 0 ? s.im : -s.im};
}

namespace {

// The roots of A + B in conjugate order.
SolveVerdict solve(const WideRootSet& A, const WideRootSet& B, WideRootSet& R, ExtractionWorkspace& ws) {
    const SolveVerdict verdict = solveSum(A, B, R, ws.sum);
    if (verdict.good()) sortConjugates(R, Reals::last);
    return verdict;
}

// `width` receives sqrt(d^2 + 1).
FactorVerdict factor_of_pair(const WideRootSet& set, int first, Real a, Real& c, Real& d, Real& width) {
    const Complex<Real> x1 = set.root(first);
    const Complex<Real> x2 = set.root(first + 1);
    const bool complex = x1.im != 0;
    const Real h = -(x1.re + x2.re) / 2;
    const Real half = (x1.re - x2.re) / 2;
    const Real r_squared = complex ? x1.im * x1.im : -half * half;
    const Real product = complex ? x1.re * x1.re + r_squared : x1.re * x2.re;
    const auto distances = [&](Real from) {
        return complex ? (from - x1.re) * (from - x1.re) + r_squared : (from - x1.re) * (from - x2.re);
    };

    const Real v1 = distances(1);
    const Real v2 = distances(a);
    if (v1 < 0) return {-1, 1};
    if (v2 < 0) return {-1, a + 1e-9L};
    const Real r1 = std::sqrt(v1);
    const Real r2 = std::sqrt(v2);
    const Real t = 2 * h + 1 + a;
    const Real m = (a + h) * (h + 1) - r_squared;
    const Real residue = product + (2 * h + product) * a;  // (r2^2 - a^2 r1^2)/(1 - a)
    // (r1 r2)^2 - m^2 = (t r)^2
    const Real D = m <= 0 ? 2 * (r1 * r2 - m) : 2 * t * t * r_squared / (r1 * r2 + m);
    if (!(D >= least_width)) return {-1, -residue * (r1 + r2) / (t * (a * r1 + r2))};

    width = (r1 + r2) / std::sqrt(D);
    c = width * residue / (r2 + a * r1);
    d = t / std::sqrt(D);
    return {};
}

FactorVerdict factor_of_single(Real x, Real a, Real& c) {
    const Real q = (x - a) / (1 - x);
    if (!(q >= 0)) return {-1, x};
    c = std::sqrt(q);
    return {};
}

}  // namespace

}  // namespace kavrel
