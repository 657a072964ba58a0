// The part of the state file that FIR work leaves.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "fir/fir_filter.h"
#include "fir/fir_request.h"

namespace kavrel {

// The functions with all their taps, and with the request that it was made for the largest weighted deviation of the
// first one; null where there is no filter.
[[nodiscard]] nlohmann::ordered_json fir_part(const FirFilter& filter, const FirRequest* request);

}  // namespace kavrel
