// How far an FIR filter, as its taps are, is from what was asked of it: a function without symmetry in magnitude, one
// whose level was moved at that level. Frequencies are in cycles per
// sample, 0 to 0.5. The exchange levels its deviation on a grid; here the taps are judged, between grid points, too.
#pragma once

#include "fir/fir_filter.h"
#include "fir/fir_grid.h"

namespace kavrel {

// Real amplitude of a function: its response without the linear phase (and the factor j of an antisymmetric one).
// Negative where the response is turned round. The magnitude where there is no symmetry.
[[nodiscard]] double amplitude(const FirFilter& filter, int function, double f);

// Where a filter deviates most in a band, and what is there.
struct FirDeviation {
    double frequency = 0;
    double weighted = -1;  // weight |amplitude - desired|; -1 when nothing was searched
};

// The largest weighted deviation in band `band` of `task`, both edges included: extrema are refined between the points
// of a dense search, and a shape is searched from point to point, since its desired response may jump there. A
// differentiator, whose weight is infinite at 0, is judged down to 1e-9.
[[nodiscard]] FirDeviation largest_deviation(const FirTask& task, const FirFilter& filter, int function, int band);

// The largest one of all bands.
[[nodiscard]] FirDeviation largest_deviation(const FirTask& task, const FirFilter& filter, int function);

// The largest gain outside the bands of `task`, in what they leave of 0 to 0.5; -1 when that is nothing.
[[nodiscard]] double largest_outside_gain(const FirTask& task, const FirFilter& filter, int function);

}  // namespace kavrel
