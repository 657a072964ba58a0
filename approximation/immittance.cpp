#include "approximation/immittance.h"

#include <cmath>

#include "numeric/root_order.h"
#include "numeric/scaled_value.h"

namespace kavrel {
namespace {

using Real = long double;

SolveVerdict sum_and_difference(const XPlane& x, const WideRootSet& e, const WideRootSet& f, WideRootSet& sum,
                                WideRootSet& difference, ExtractionWorkspace& ws);
void make_real(WideRootSet& R);
void settle_forced_root(const WideRootSet& A, const WideRootSet& B, const WideRootSet& Q, Real place, WideRootSet& R);

}  // namespace

SolveVerdict immittancePolynomials(XPlane& x, ExtractionWorkspace& ws) {
    const SolveVerdict even = sum_and_difference(x, x.eEven, x.fEven, x.es, x.ed, ws);
    return even.good() ? sum_and_difference(x, x.eOdd, x.fOdd, x.os, x.od, ws) : even;
}

void immittanceOfDenominator(XPlane& x) {
    x.es = x.eEven;
    x.os = x.eOdd;
    x.ed = {};
    x.od = {};
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
        settle_forced_root(e, B, x.QS, 1, *R);
        if (x.a > 0) settle_forced_root(e, B, x.QS, x.a, *R);
    }
    return {};
}

// |f| <= |e| at real frequencies: e + f and e - f have no zeros in the right half plane, and the zeros of their parts
// are real in x (Hermite-Biehler). A double one may have come out as a conjugate pair.
void make_real(WideRootSet& R) {
    for (int i = 1; i <= R.count; ++i) R.im(i) = 0;
    sortConjugates(R, Reals::Last);
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
    for (int i = 1; i <= R.count; ++i) {
        if (R.im(i) == 0 && std::fabs(R.re(i) - place) <= reach) {
            R.re(i) = place;
            return;
        }
    }
}

}  // namespace
}  // namespace kavrel
