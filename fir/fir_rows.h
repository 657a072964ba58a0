// The rows of the request check that a FIR request asks of taps.
#pragma once

#include "fir/fir_filter.h"
#include "segment/request_check.h"
#include "shell/watcher.h"

namespace kavrel {

// dB between the highest and the lowest value of a pass band of 1 +- deviation.
[[nodiscard]] double ripple_of(double deviation);

// Whether bands were asked of a function, which its deviations are those of.
[[nodiscard]] bool has_bands(const FirFilter& filter, int function);

// A row for each band of the filter's request, of the largest deviation of a function's taps in it: the ripple of a
// pass band and the loss of a stopband in dB where ripples were asked for, else the deviation, relative to the desired
// value where that is weighed so. Asks the watcher before each band. No rows where no bands were asked of the function.
[[nodiscard]] RequestCheck check_fir(const FirFilter& filter, int function, Watcher& watcher);

}  // namespace kavrel
