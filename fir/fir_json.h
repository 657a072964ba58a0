// The part of the state file that FIR work leaves.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "fir/fir_filter.h"

namespace kavrel {

// The functions with all their taps; null where there is no filter.
[[nodiscard]] nlohmann::ordered_json fir_part(const FirFilter& filter);

}  // namespace kavrel
