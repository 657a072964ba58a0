// Windowed design of a linear-phase FIR filter: the ideal impulse response, truncated and weighed by a window.
#pragma once

#include <string>
#include <vector>

#include "fir/fir_design.h"

namespace kavrel {

// The pass band edges that a request's filter type has, in the unit of the request, the lower one first; 0 where it has
// none. A high-pass without a lower frequency takes the upper one.
struct WindowedEdges {
    double lower = 0;
    double upper = 0;
};
[[nodiscard]] WindowedEdges windowed_edges(const FirRequest& request);

// Filter type, window, edges and sampling rate of a windowed filter, a line each.
[[nodiscard]] std::vector<std::string> windowed_request_lines(const FirFilter& filter);

// Designs what the desk's request asks for: report, filter, and results as remez_design does. An even length of a
// high-pass or band-reject, which would be 0 at half the sampling frequency, is raised by one; the request keeps it.
// The filter is `made`, not the desk's; unless designed, it, the results and the retained coefficients stay as they
// were.
[[nodiscard]] FirDesignVerdict window_design(FirDesk& desk, FirFilter& made);

}  // namespace kavrel
