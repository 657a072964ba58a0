// Complex arithmetic that neither overflows nor stops. "Infinite" is the number 1e38 in both parts: callers compare
// against it or let it fall out of their iteration.
//
// All routines exist for double and long double.
#pragma once

#include "numeric/complex.h"

namespace kavrel {

inline constexpr double infinite_part = 1e38;  // in place of an infinite part of a quotient
inline constexpr int quotient_decades = 37;    // reach of cdiv to either side
inline constexpr int solver_decades = 280;     // reach inside the solvers, whose values may legally pass 1e37

// Magnitude of re + j im, without overflow of a square.
template <class Real>
[[nodiscard]] Real cabs(Real re, Real im);
template <class Real>
[[nodiscard]] Real cabs(Complex<Real> z) {
    return cabs(z.re, z.im);
}

// Square root with real part >= 0. A number on the negative real axis, be its imaginary part 0.0 or -0.0, gives the
// root on the positive imaginary axis.
template <class Real>
[[nodiscard]] Complex<Real> csqrt(Real re, Real im);
template <class Real>
[[nodiscard]] Complex<Real> csqrt(Complex<Real> z) {
    return csqrt(z.re, z.im);
}

// Quotient (nr + j ni)/(dr + j di). A numerator 0 gives 0, also over 0; a divisor 0 gives (1e38, 1e38). With
// L = int(log10 N) - int(log10 D), N and D being the larger parts: L < -decades gives 0, L >= decades (1e38, 1e38);
// decades 37 or more.
// Source: R. L. Smith, "Algorithm 116: Complex division", CACM 5 (1962).
template <class Real>
[[nodiscard]] Complex<Real> cdiv(Real nr, Real ni, Real dr, Real di, int decades = quotient_decades);
template <class Real>
[[nodiscard]] Complex<Real> cdiv(Complex<Real> n, Complex<Real> d, int decades = quotient_decades) {
    return cdiv(n.re, n.im, d.re, d.im, decades);
}

// Reciprocal of re + j im under the rules of cdiv.
template <class Real>
[[nodiscard]] Complex<Real> cinv(Real re, Real im);

// A number of magnitude above 1 is replaced by its reciprocal, others are left alone.
template <class Real>
[[nodiscard]] Complex<Real> reflectIntoUnitCircle(Complex<Real> z);

template <class Real>
struct RootPair {
    Complex<Real> first;
    Complex<Real> second;
};

// Roots of x^2 + a1 x + a0, h + r first, with h = -a1/2 and r = sqrt(|h^2 - a0|), or h + jr and h - jr. Of two real
// roots the smaller is taken as a0 over the larger, which keeps its digits when h and r nearly cancel.
template <class Real>
[[nodiscard]] RootPair<Real> rootsOfQuadratic(Real a1, Real a0, bool reflect = false);

// z + sqrt(z^2 - c) and z - sqrt(z^2 - c), in this order, the smaller one as c over the larger; `reflect` puts both
// inside the unit circle.
template <class Real>
[[nodiscard]] RootPair<Real> csqrtDifference(Real zr, Real zi, Real cr, Real ci, bool reflect = false);

}  // namespace kavrel
