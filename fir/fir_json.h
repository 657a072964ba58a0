// The FIR part of the state file.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "fir/fir_desk.h"

namespace kavrel {

// Null without a filter.
[[nodiscard]] nlohmann::ordered_json fir_part(const FirFilter& filter, const FirState& state);

}  // namespace kavrel
