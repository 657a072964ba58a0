// What there is to say of an FIR filter beside its coefficients.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "fir/fir_filter.h"

namespace kavrel {

// Title, origin, sampling rate; of a design its length and bands or window; the functions with length, symmetry, word,
// gain and sum of magnitudes; the cells left in the store; the factors.
[[nodiscard]] std::vector<std::string> design_lines(const FirFilter& filter, std::string_view title);

// Title, number and length of a function, and its impulse response; with a line where all of it is 0.
[[nodiscard]] std::vector<std::string> function_lines(const FirFilter& filter, int n, std::string_view title);

}  // namespace kavrel
