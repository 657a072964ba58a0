// The parts of the state file that a synthesis leaves: terminations, synthesis.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "synthesis/ladder_desk.h"

namespace kavrel {

// Each null where there is nothing to report. `worked` is the request as the approximation left it. The ratio that can
// be had is that of the circuit, or, before there is one, the bound that the function sets.
[[nodiscard]] nlohmann::ordered_json terminations_part(const FilterSpec& worked, const XPlane& x_plane,
                                                       const LadderWork& ladder);
[[nodiscard]] nlohmann::ordered_json synthesis_part(const LadderWork& ladder);

}  // namespace kavrel
