// The rows of the request check that a FIR request asks of taps.
#pragma once

#include "fir/fir_filter.h"
#include "fir/fir_request.h"
#include "segment/request_check.h"
#include "shell/watcher.h"

namespace kavrel {

// A row for each band, of the largest deviation of the taps in it: the ripple of a pass band and the loss of a stopband
// in dB where ripples were asked for, else the deviation, relative to the desired value where that is weighed so. Asks
// the watcher before each band.
[[nodiscard]] RequestCheck check_fir(const FirRequest& request, const FirFilter& filter, Watcher& watcher);

}  // namespace kavrel
