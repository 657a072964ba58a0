// From an analog design to a digital filter: the questions of the z step, the step, and its report.
#pragma once

#include "approximation/filter_driver.h"
#include "approximation/spectral_transform.h"
#include "iir/iir_filter.h"
#include "iir/iir_request.h"
#include "shell/reporter.h"

namespace kavrel {

enum class DigitalDesignOutcome {
    done,
    cancelled,  // a form was left: the analog design is what there is
    failed,     // for the reason in a box
};

// The last design on its way: `found` the request with what was found for it, `design` the result, of a sampled medium
// whose frequencies are warped for the bilinear transform. With the bilinear transform and another sampling frequency
// the approximation runs again, for that one; with another transform it runs again with the edges as they were asked
// for, lumped. Its result takes the place of both, once all is done. `filter` is the digital filter with its cascade.
[[nodiscard]] DigitalDesignOutcome digitalDesign(FilterSpec& found, FilterDesign& design, IirRequest& request,
                                                 const UnitSet& units, Reporter& reporter, IirFilter& filter);

// The sampling frequency that was typed: above 1 it is one, else a time; what the form opened with is one as well.
[[nodiscard]] double sampling_frequency_of(double typed, double opened_with);

// Whether the band edge lies below half the sampling frequency.
[[nodiscard]] Refusal refusal_of_sampling(const TransferFunction& transfer, double fs, const UnitSet& units);

// Whether the edges lie between 0 and half the sampling frequency, in their order, and the degree may be doubled.
[[nodiscard]] Refusal refusal_of_spectral(const SpectralRequest& request, int degree);

// A finished design, its z transform and its spectral transformation; `spectral` has its fs and edge set, the kind
// `none` leaves the digital filter as it is. Refused, with `filter` as it was, where a number is beyond the range.
[[nodiscard]] Refusal make_digital(const FilterSpec& found, const FilterDesign& design, ZTransform transform,
                                   const SpectralRequest& spectral, IirFilter& filter);

}  // namespace kavrel
