// What a windowed design reached.
#pragma once

#include <optional>
#include <vector>

#include "fir/fir_filter.h"

namespace kavrel {

// Found between the points of a dense search. The gain in the middle of a pass band (0, half the sampling frequency,
// or amid the edges) is what the loss counts from; a figure that the filter does not have is missing.
struct WindowFigures {
    std::optional<double> sidelobe;       // dB by which the window's highest side lobe is below its peak
    std::vector<double> edges_6db;        // Hz: where the gain has fallen to half, the lower one first
    std::optional<double> stopband_loss;  // dB, the least beyond the first null outside each edge, or the main lobe
};

// Of function 1 of a windowed design, as its taps are. Takes some 16 length^2 operations.
[[nodiscard]] WindowFigures window_figures(const FirFilter& filter);

// Whether function 1 is that of a windowed design.
[[nodiscard]] bool has_window(const FirFilter& filter);

}  // namespace kavrel
