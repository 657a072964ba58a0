// The denominator E of the transfer function and its Hurwitz factors.
//
// A power E(x), (-1)^n |e|^2 at real frequencies, belongs to one polynomial e(s) with all zeros in the left half plane.
// That one is held as a pseudo-polynomial (numeric/pseudo_polynomial.h), E its roots in x; the two routines in the
// middle of this file go from one form to the other without a coefficient being formed.
#pragma once

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

// The power of a pseudo-polynomial: the roots of (c + d x)^2 = (x - a)(1 - x) for each pair, (c_n^2 + a)/(c_n^2 + 1)
// for the last factor, multiplier^2 product (d^2 + 1) (c_n^2 + 1). The order is that of the factors.
[[nodiscard]] WideRootSet fromFactors(const WidePseudoPolynomial& p, long double a);

// The zero of e(s) that belongs to a root of E: s^2 = (x - a)/(1 - x), Re s <= 0, in units of the upper edge. Of a
// conjugate pair each root gives its own s, again conjugates.
[[nodiscard]] Complex<long double> hurwitzRoot(Complex<long double> x, long double a);

// The square of s that belongs to x.
[[nodiscard]] Complex<long double> squareOfS(Complex<long double> x, long double a);

}  // namespace kavrel
