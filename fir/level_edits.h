// Edits of a function's level. Its gain moves with it, and so do the factors, as long as they are of that function;
// coefficients in a word leave it, which a line says.
#pragma once

#include "fir/command_tools.h"

namespace kavrel {

// The sum of the taps' magnitudes: what inputs within one can lead to.
[[nodiscard]] double largest_output(const FirFilter& filter, int n);

// "flat": multiplies function `function_number` by 10^(gain/20).
[[nodiscard]] Refusal add_flat_gain(FirFilter& filter, const FirCommandRequest& request, Lines& lines);

// "scal": the largest possible output for inputs within one becomes 1. A line has the
// factor. A function that is there to rounding stays as it is.
[[nodiscard]] Refusal scale_to_one(FirFilter& filter, const FirCommandRequest& request, Lines& lines);

}  // namespace kavrel
