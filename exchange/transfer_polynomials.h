// The transfer function h(s) = output over source as a ratio of polynomials, s normalised so that the normalisation
// frequency is 1; of a microwave filter s is the variable j tan, 1 at the band edge. The numerator has the function's
// level, with which h is the one of the circuit's analysis: what unit elements let through has the factor
// sqrt(a^2 - s^2) of each, which is positive at s = 0. An odd one of them has a - s in its place.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "approximation/filter_spec.h"

namespace kavrel {

struct TransferPolynomials {
    std::vector<double> numerator;  // [i] coefficient of s^i
    std::vector<double> denominator;
    double fnorm = 0;  // Hz
};

// `warped`: the roots are those of a microwave or sampled filter, already normalised.
[[nodiscard]] TransferPolynomials transfer_polynomials(const TransferFunction& transfer, bool warped);

// What a file says, behind its comment mark, of the factor that stands for half an odd unit element; nothing of others.
[[nodiscard]] std::vector<std::string> half_factor_lines(const TransferFunction& transfer, std::string_view mark);

// The lines of the screen: "******* Transfer function polynomials *******" and what follows it.
[[nodiscard]] std::vector<std::string> polynomial_lines(const TransferPolynomials& polynomials);

}  // namespace kavrel
