// Scale factors in the L-infinity sense: no sine of the band is larger within the cascade than at its input.
#pragma once

#include "iir/iir_filter.h"

namespace kavrel {

struct PeakChoices {
    bool separately = false;          // each section by its own peak, not by that of all up to it
    bool denominators_first = false;  // the level at the delays of a section, not that at its output
};

// The factors for a filter that is not scaled; H stays with them. With P(k) the peak over the band of
//     N_1 ... N_k/(D_1 ... D_k),  or, denominators first, of N_1 ... N_(k-1)/(D_1 ... D_k),
// or separately the product of the single peaks, of N_j/D_j or N_(j-1)/D_j, they are
//     SC(1) = 1, SC(k) = P(k-1)/P(k), SC(N) = CK P(N-1) with P(0) = 1, or SC(k) = P(k)/P(k+1), SC(N) = CK P(N),
// so that each of these levels has a peak of 1, and the last section brings the filter's own level. The band reaches
// from 0.8 of the lower edge of the pass band to 1.2 of the upper one, at most to half the sampling frequency; that of
// a band-reject filter is all. N is the number of sections; denominators first, a last section that is a numerator
// alone is left out.
[[nodiscard]] ScaleFactors peakScale(const IirFilter& filter, const PeakChoices& choices);

// The band, in Hz.
[[nodiscard]] CheckBand peak_band(const IirFilter& filter);

}  // namespace kavrel
