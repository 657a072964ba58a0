// A digital filter against the request that it was designed for.
#pragma once

#include <vector>

#include "iir/iir_filter.h"
#include "iir/iir_request.h"
#include "segment/request_check.h"
#include "shell/watcher.h"

namespace kavrel {

// The rows of `asked`, by the losses of the exact roots on the unit circle, and "stability": the largest magnitude of a
// pole, which is to be below 1. Of a truncated filter they are made for each form that there is, by its own
// coefficients, and say so. Asks the watcher at each frequency. Without a request there are no rows.
[[nodiscard]] RequestCheck check_iir(const IirFilter& filter, Watcher& watcher);

// The rows of one form that there is, by its own coefficients; of one that is not stable that row alone. `roots` are
// those about which its response has extremes (iir/form_poles.h).
[[nodiscard]] std::vector<CheckRow> rows_of_form(const IirFilter& filter, Implementation form,
                                                 const DigitalRoots& roots, Watcher& watcher);

}  // namespace kavrel
