// The factored form as lines.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "fir/fir_filter.h"

namespace kavrel {

// For the report: a factor a line behind its serial number, the multiplier at the end.
[[nodiscard]] std::vector<std::string> factor_table(const FirFactors& factors);

// For a file: a row a factor, linear and quadratic coefficient in 17 digits, as lists of quadratics are read from
// files; title, multiplier, and what taps of 0 there are, in lines that begin with "!". (numpy.loadtxt with
// comments="!", textscan of Octave with "CommentStyle", "!".)
[[nodiscard]] std::vector<std::string> factor_rows(const FirFactors& factors, std::string_view title);

}  // namespace kavrel
