// On which side of the imaginary axis the zeros of f lie, and to which chain of an allpass pair each pole belongs.
//
// F = (-1)^n f(s) f(-s) leaves it open which zeros f takes. toFactors takes those of the left half plane; a factor is
// mirrored by negating its c and d, and for a pair the multiplier of f, which leaves the leading coefficient of f.
#pragma once

#include "approximation/filter_spec.h"
#include "approximation/x_plane.h"

namespace kavrel {

// Fills factor_sign by alternation, + - + -, from the factor whose zero lies deepest in the left half plane to the one
// next to the axis, and mirrors the factors of sign -1. The depth is the real part of the zero in s, of two real ones
// the right one; for high-pass that of the frequency proper. `left_alone` is a factor that takes no part, 0 for none.
void signRoots(XPlane& x, bool high_pass, int left_alone = 0);

// Mirrors the factors of sign -1; the signs are the caller's.
void applySigns(XPlane& x);

// Depth of factor i of a pseudo-polynomial as above, at most 0 for Hurwitz factors.
[[nodiscard]] long double depthOfFactor(const WidePseudoPolynomial& p, long double a, bool high_pass, int i);

// Even parametric band-pass: the first pair with two real zeros -p1, -p2 in s gets one of them mirrored,
//   D = sqrt((1 - a)^2 - 4 (c + d)(c + da)), c' = (2ad + (1 + a)c)/D, d' = -(2c + (1 + a)d)/D,
// the multiplier of f times -D/(1 - a). Returns the factor, 0 if there is none.
[[nodiscard]] int mirrorRealZero(XPlane& x);

// LARR: the sign of psi = f/q at each zero s_i of e, which is +1 or -1 exactly where psi is odd, since then
// e(s) e(-s) = (q - f)(q + f). Odd low-pass and high-pass, and band-pass with an odd number of zeros at zero; other
// functions, and those with unit elements, have no such form: LARR is 0. Returns whether it was set. Needs fEven and
// fOdd with their multipliers, and ES. Source: L. Gazsi, "Explicit formulas for lattice wave digital filters", IEEE
// Trans. CAS-32 (1985).
bool assignPoleChains(const FilterSpec& spec, XPlane& x);

// Even part of q, which is even for odd low-pass and high-pass functions with an even number of unit elements:
// (1 - x)^((nzi - 1)/2) times the product of sigma (x - xz), sigma = sign(1 - xz), one factor for each zero pair and
// for each two unit elements; Q = -(1 - x) Ev^2. Of an odd number of unit elements q is no polynomial.
[[nodiscard]] WideRootSet evenPartOfQ(const FilterSpec& spec, const XPlane& x);

// f of F = L F0 + (L - 1) Q where f0 is odd and q even: f = sqrt(L) f0 +- sqrt(L - 1) q is the one of alternating
// signs. Its parts are those of f0 and q, many of whose roots may coincide, so that they cannot be found from the
// factors. The sign is that of fFactors at the one place where the smaller part has the largest share. Fills fEven and
// fOdd; false, and nothing done, where fFactors are not those of that f. `raised` is L > 1.
[[nodiscard]] bool superposeParts(const WideRootSet& even_q, const WideRootSet& odd_f0, long double raised, XPlane& x);

// The largest |F - F of fEven, fOdd| over |E| at places of all bands:
//   F = Ev^2 - (x - a)(1 - x) Od^2 for even, (x - a) Od^2 - (1 - x) Ev^2 for odd degree.
[[nodiscard]] long double deviationOfParts(const XPlane& x);

}  // namespace kavrel
