// Products over roots, evaluated without overflow.
//
// Where roots of very different sizes meet, the running product leaves the range of the type, however its factors are
// scaled; so it carries a binary exponent of its own. Products of different degree are added by shifting one of them,
// and no factor is lost.
//
// All routines exist for double and long double.
#pragma once

#include "numeric/root_set.h"

namespace kavrel {

// The number value * 2^exponent.
template <class Real>
struct ScaledValue {
    Complex<Real> value;
    int exponent = 0;
};

// A number and its derivative on one scale: value * 2^exponent and derivative * 2^exponent.
template <class Real>
struct ScaledPair {
    Complex<Real> value;
    Complex<Real> derivative;
    int exponent = 0;

    // Appends a factor g with derivative dg to the product: (p g)' = p' g + p g'.
    void multiply(Complex<Real> g, Complex<Real> dg) {
        derivative = derivative * g + value * dg;
        value *= g;
        keep_in_range();
    }
    void keep_in_range();
};

// multiplier times the product of (x - root); the second form also gives the derivative of it.
template <class Real>
[[nodiscard]] ScaledValue<Real> scaledProduct(const RootSetOf<Real>& set, Complex<Real> x);
template <class Real>
[[nodiscard]] ScaledPair<Real> scaledProductAndDerivative(const RootSetOf<Real>& set, Complex<Real> x);

// value * 2^shift, saturated at the ends of the range instead of infinite.
template <class Real>
[[nodiscard]] Complex<Real> shifted(Complex<Real> value, int shift);

// int(log2) of the larger part of z 2^exponent; a very low number for z = 0.
template <class Real>
[[nodiscard]] int binaryMagnitude(Complex<Real> z, int exponent = 0);

}  // namespace kavrel
