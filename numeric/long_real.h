// Real numbers of 513 bits, 154 decimal digits, and of any other length.
//
// Extraction of a ladder from one end magnifies the rounding of its polynomials step by step. In a deep stop band the
// immittance has pairs of roots at a relative distance of |q/f|, 1e-69 in an equal ripple filter of degree 50, and what
// follows the first branches hangs on that distance. So the chain of removals runs in numbers that hold its square. The
// coefficients that a lattice is made of lose as much on their way down. The impulse response of a low-pass of degree n
// begins as the (n - 1)th power of the time, while the terms of its partial fractions are large: their sum is had in
// the same way.
//
// The numbers are those of GNU MPFR, held in place: sums, products, quotients and roots are rounded to the nearest.
// Division by 0 and the root of a negative number give a number that is not finite. A number that was given no value
// is not finite either: records say `= 0` where they mean it.
#pragma once

#include <boost/multiprecision/mpfr.hpp>

#include "numeric/complex.h"

namespace kavrel {

template <unsigned digits>
using LongRealOf = boost::multiprecision::number<
    boost::multiprecision::mpfr_float_backend<digits, boost::multiprecision::allocate_stack>,
    boost::multiprecision::et_off>;
using LongReal = LongRealOf<154>;
using LongestReal = LongRealOf<616>;

[[nodiscard]] inline long double rounded(const LongReal& x) { return static_cast<long double>(x); }
[[nodiscard]] inline Complex<long double> rounded(const Complex<LongReal>& z) { return {rounded(z.re), rounded(z.im)}; }
[[nodiscard]] inline bool is_finite(const LongReal& x) { return boost::multiprecision::isfinite(x); }

// x 2^power.
[[nodiscard]] inline LongReal shifted(const LongReal& x, int power) { return ldexp(x, power); }

// Relative rounding of a product of long numbers, with a margin: a sum whose terms cancel to less is 0.
inline constexpr long double long_rounding = 1e-148L;

}  // namespace kavrel
