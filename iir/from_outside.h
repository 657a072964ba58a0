// A digital filter from outside, given by its roots or by its factors.
#pragma once

#include <span>
#include <vector>

#include "iir/iir_filter.h"

namespace kavrel {

// quadratic z^2 + linear z + constant; of first order with quadratic 0, a mere number with both 0.
struct GivenFactor {
    double quadratic = 0;
    double linear = 0;
    double constant = 0;
};

// Fills in the cascade and the roots of a filter that has its sampling frequency, edges and kind, and nothing yet of H.
//
// Factors: the leading coefficients give the level, the factors keep their order. One whose other coefficients are 0 is
// a power of z, which a ratio in z^-1 does not see.
void take_factors(std::span<const GivenFactor> numerator, std::span<const GivenFactor> denominator, IirFilter& filter);

// Roots, of conjugate pairs the one with the positive imaginary part. They have no level: the least loss in the pass
// band becomes 0 dB; without edges that is all from 0 to half the sampling frequency.
void take_roots(std::span<const Complex<double>> zeros, std::span<const Complex<double>> poles, IirFilter& filter);

}  // namespace kavrel
