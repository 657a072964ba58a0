// The roots and factors of an IIR filter as texts: a pole-zero file, the lists of "func", and a file for a
// switched-capacitor filter. Of roots the real part is negated, so that they have the sign of an analog filter's.
#pragma once

#include <string_view>

#include "iir/iir_filter.h"
#include "iir/iir_report.h"

namespace kavrel {

// ".pz": zeros, then poles, a row each of real and imaginary part; of a conjugate pair the upper root alone, as list
// forms read them. All other lines begin with "!".
[[nodiscard]] Lines pole_zero_lines(const IirFilter& filter, std::string_view title);

// Zeros, then poles, of a filter that was equalized those of before, of a truncated one those of its factors; every
// root a row.
[[nodiscard]] Lines root_lines(const IirFilter& filter);

// ".swc": the factors, a row each: SC(k), C1N(k), C2N(k), the first one times CK; then 1, C1D(k), C2D(k).
[[nodiscard]] Lines switched_capacitor_lines(const IirFilter& filter, std::string_view title);

}  // namespace kavrel
