// What was asked of a digital filter, as bands of its own frequencies.
#pragma once

#include "approximation/filter_driver.h"
#include "approximation/spectral_transform.h"
#include "iir/iir_filter.h"

namespace kavrel {

// Of a low-pass that was turned into another filter the pass band edges are those of `spectral`, the stopband edges the
// images of those asked for. A given function has no losses that were asked for, and no rows; nor has a linear phase
// low-pass, whose request is a delay. A stopband beyond half the sampling frequency is none.
[[nodiscard]] IirAsked asked_of_digital(const FilterSpec& found, const FilterDesign& design,
                                        const SpectralRequest& spectral);

}  // namespace kavrel
