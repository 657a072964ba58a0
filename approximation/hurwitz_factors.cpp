#include "approximation/hurwitz_factors.h"

#include <cmath>

#include "numeric/guarded.h"
#include "numeric/root_order.h"

namespace kavrel {

namespace {

using Real = XPlane::Real;

SolveVerdict solve(const WideRootSet& A, const WideRootSet& B, WideRootSet& R, ExtractionWorkspace& ws);

}  // namespace

SolveVerdict feldtkeller(XPlane& x, ExtractionWorkspace& ws) { return solve(x.FS, x.QS, x.ES, ws); }

SolveVerdict characteristicFromE(XPlane& x, ExtractionWorkspace& ws) {
    WideRootSet minus_q = x.QS;
    minus_q.multiplier = -minus_q.multiplier;
    return solve(x.ES, minus_q, x.FS, ws);
}

FactorVerdict toFactors(WideRootSet& set, long double a, WidePseudoPolynomial& p) {
    sortConjugates(set, Reals::last);
    return factorsOfPower(set, a, p);
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

}  // namespace

}  // namespace kavrel
