// What a request asks of the equal ripple design: bands, desired values and weights over normalised frequency.
#pragma once

#include "fir/fir_grid.h"
#include "fir/fir_request.h"

namespace kavrel {

inline constexpr const char* bad_fir_input = "Error in input data";

// Fills `task` but for a length that is to be estimated (0). A ripple in dB becomes the weight 1/delta: a pass band of
// 1 +- delta has the ripple 20 log10((1 + delta)/(1 - delta)), a stopband of delta the loss -20 log10 delta; so a
// weighted deviation of 1 is the ripple asked for. What is wrong, or null.
[[nodiscard]] const char* take_task(const FirRequest& request, FirTask& task);

// In the unit of the request's frequencies; of a filter twice its last band edge, 0 without one.
[[nodiscard]] double sampling_frequency_of(const FirRequest& request);

}  // namespace kavrel
