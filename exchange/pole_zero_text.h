// The poles and zeros of a transfer function as a text file, ".pz" or ".dat".
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "approximation/filter_spec.h"

namespace kavrel {

// Zeros, then poles, a row each of real and imaginary part, in Hz (`warped`: of the normalised variable); of a
// conjugate pair the upper root alone. Then the coefficients of numerator and denominator, in ascending order. All
// other lines begin with "!", so that list forms read the rows.
[[nodiscard]] std::vector<std::string> pole_zero_lines(const TransferFunction& transfer, bool warped,
                                                       std::string_view title);

}  // namespace kavrel
