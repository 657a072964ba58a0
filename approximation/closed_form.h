// Poles of the designs whose function is known in closed form, or is an image of one that is: the functions of
// Butterworth, Chebyshev (with the ripple on either side) and Cauer, with all zeros of transmission at infinity or in
// an equal minima stopband; those of even degree whose last zero is put to infinity, and whose first root of F is put
// to 0; and the conventional band-passes made of them.
//
// With theta = (2k - 1) pi/(2n), s and c its sine and cosine, k = 1 ... n, x = s'^2/(s'^2 + 1) of the low-pass
//
//   flat            u = -ln(eps2)/(2n):  re x = e^u (cosh u s^2 + sinh u c^2)/D, im x = +- s c/D,
//                   D = 2 (sinh^2 u + s^2)
//   ripple          v = asinh(1/eps)/n:  x = -cot^2(theta + j v)
//   flat, minima    v = asinh(eps cosh(n acosh w))/n:  x = w^2/(w^2 - z^2), z = c cosh v - j s sinh v
//   ripple, minima  s, c, d are sn, cn, dn of (2k - 1) K/n of modulus 1/w, s1, c1, d1 those of v of the complementary
//                   modulus, v = F(atan(1/eps), k1') K/(n K1), k1 = w^-n prod sn^4:
//                   x = (Q - P)(Q + P) + 2j P Q, P = s c c1 d1 A/D, Q = d s1 ((c c1)^2 + (s d1)^2)/D,
//                   A = c1^2 + (k s s1)^2, D = ((s d1)^2 + (c d s1 c1)^2) k'
//
// w being the stop edge. No term is a difference of nearly equal ones.
// Sources: W. Cauer, "Theorie der linearen Wechselstromschaltungen" (1941); S. Darlington, J. Math. Phys. 18 (1939).
#pragma once

#include "approximation/filter_spec.h"
#include "approximation/x_plane.h"

namespace kavrel {

// Roots -eta^2 of F, ascending eta; count 0 for any other function, and for band-passes. Those of a stopband with equal
// minima are good to a few digits less than the zeros of transmission, and are to be corrected on these.
struct ReflectionZeros {
    int count = 0;
    Table<XPlane::Real, max_pairs> eta;
};
[[nodiscard]] ReflectionZeros closedReflectionZeros(const FilterSpec& spec, const XPlane& xp);

// Fills ES, E = F + Q, from the prototype of xp: to the rounding of the form itself where that has a few digits in
// hand, else corrected on the products F and Q. False, with ES as it was, for any other function, or when the
// correction is larger than the error of the form can be.
[[nodiscard]] bool closedPoles(const FilterSpec& spec, XPlane& xp);

}  // namespace kavrel
