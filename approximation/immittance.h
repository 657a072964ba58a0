// The immittance polynomials that ladder synthesis takes: even and odd parts of e + f and e - f.
//
// With P = Ev + w Od the odd part in s is s Od for odd degree, s (1 - x) Od for even degree, times the same power of
// (1 - x) as the even part; sums and differences of the parts are free of both.
#pragma once

#include "approximation/hurwitz_factors.h"
#include "approximation/x_plane.h"

namespace kavrel {

// es = eEven + fEven, ed = eEven - fEven, os = eOdd + fOdd, od = eOdd - fOdd. Where a part of f is 0, that of e is
// alone: the difference then has multiplier 0, as a function that does not exist. Zeros of transmission at zero and at
// infinity make an e - f or e + f of lower degree: its parts then have roots at a and 1, which are put there exactly.
// All roots are real. In the stopband e + f or e - f is the small difference of large numbers: maximally flat functions
// of high degree (from 25 on, ratio of terminations 2) have pairs of roots there that lie closer than the wide type can
// part: such a pair is taken from a quadratic about it, sum and product as one, its distance is open. Fault:
// no_convergence; the sets are unfinished then.
SolveVerdict immittancePolynomials(XPlane& x, ExtractionWorkspace& ws);

// Of a design with a single termination, which does without until a ladder or its state asks: eEven and eOdd from the
// factors of e, where they are not there, as es and os. False when e is not Hurwitz.
[[nodiscard]] bool immittanceOfDenominator(XPlane& x);

}  // namespace kavrel
