// From an analog design to a digital filter: the questions of the z step, the step, and its report.
#pragma once

#include "approximation/filter_driver.h"
#include "iir/iir_filter.h"
#include "iir/iir_request.h"
#include "shell/reporter.h"

namespace kavrel {

enum class DigitalDesignOutcome {
    done,
    cancelled,  // a form was left: the analog design is what there is
    failed,     // for the reason on the report
};

// The last design on its way: `found` the request with what was found for it, `design` the result. With another z
// transform than the bilinear one, or another sampling frequency than the design's, the approximation runs again with
// the edges as they were asked for, and takes the place of both. `filter` is the digital filter with its cascade.
[[nodiscard]] DigitalDesignOutcome digitalDesign(FilterSpec& found, FilterDesign& design, IirRequest& request,
                                                 const UnitSet& units, Reporter& reporter, IirFilter& filter);

}  // namespace kavrel
