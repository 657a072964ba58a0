// A digital filter against the request that it was designed for.
#pragma once

#include "iir/iir_filter.h"
#include "segment/request_check.h"
#include "shell/watcher.h"

namespace kavrel {

// The rows of `asked`, by the losses of the exact roots on the unit circle, and "stability": the largest magnitude of a
// pole, which is to be below 1. Asks the watcher at each frequency. Without a request there are no rows.
[[nodiscard]] RequestCheck check_iir(const IirFilter& filter, Watcher& watcher);

}  // namespace kavrel
