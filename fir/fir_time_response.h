// The time analysis of an FIR filter: its taps are its impulse response.
#pragma once

#include "fir/fir_filter.h"
#include "shell/analysis_result.h"

namespace kavrel {

// Impulse and step response of a function as time results, up to 501 samples: t = (i - 1)/fs in seconds. False, the
// results as they were, where one of them is beyond the range of single precision.
[[nodiscard]] bool fir_time_response(const FirFilter& filter, int function, AnalysisResult& results);

}  // namespace kavrel
