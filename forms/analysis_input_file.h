// Input data of the analysis forms (.qai), two unformatted records each. Lists are stored with room for all their rows,
// frequencies in the unit in which they were entered.
//
// A filter:
//   1  doubles: 25 poles and 25 zeros (real and imaginary part each), 25 numerator and 25 denominator factors
//      (quadratic, linear, constant), 25 feedback coefficients; then the five row counts as integers
//   2  lower_passband, upper_passband, sampling_or_qw as doubles; analysis_kind, analysis_type, zeros_at_infinity,
//      form, structure as integers
// A FIR filter:
//   1  1026 coefficients and 512 quadratics (linear, quadratic term) as doubles; the two row counts
//   2  the sampling frequency and two spare band values as doubles; filter_data, filter_symmetry, filter_length as
//      integers
#pragma once

#include <string>
#include <string_view>

#include "forms/analysis_form.h"
#include "forms/fir_analysis_form.h"
#include "shell/units.h"

namespace kavrel {

[[nodiscard]] std::string analysis_input_bytes(const FilterAnalysisRequest& request, const UnitSet& units);
[[nodiscard]] std::string fir_analysis_input_bytes(const FirAnalysisRequest& request, const UnitSet& units);

// The file has no units, and leaves them alone. False, with the request as it was, when the bytes are not such a file
// or hold what the form could not.
[[nodiscard]] bool read_analysis_input(std::string_view bytes, FilterAnalysisRequest& request, UnitSet& units);
[[nodiscard]] bool read_fir_analysis_input(std::string_view bytes, FirAnalysisRequest& request, UnitSet& units);

}  // namespace kavrel
