// The parts of the state file that a synthesis leaves: terminations, synthesis.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "synthesis/ladder_desk.h"

namespace kavrel {

// Null where there is nothing to report. `worked` is the request as the approximation left it. The ratio that can be
// had is that of the circuit, or, without a synthesis (null), the bound that the function sets.
[[nodiscard]] nlohmann::ordered_json terminations_part(const FilterSpec& worked, const XPlane& x_plane,
                                                       const SynthesisState* synthesis);
[[nodiscard]] nlohmann::ordered_json synthesis_part(const SynthesisState& state);

}  // namespace kavrel
