// The parts of the state file that a filter design leaves: spec, transfer, x_plane, immittance, terminations.
#pragma once

#include <nlohmann/json.hpp>

#include "approximation/filter_driver.h"
#include "synthesis/ladder_desk.h"

namespace kavrel {

// Each empty where there is nothing to tell. `worked` is the request as the approximation left it.
[[nodiscard]] nlohmann::ordered_json spec_part(const FilterSpec& spec);
[[nodiscard]] nlohmann::ordered_json transfer_part(const TransferFunction& transfer);
[[nodiscard]] nlohmann::ordered_json x_plane_part(const FilterSpec& worked, const XPlane& x_plane);
[[nodiscard]] nlohmann::ordered_json immittance_part(const XPlane& x_plane);
// The ratio that can be had is that of the circuit, or, before there is one, the bound that the function sets.
[[nodiscard]] nlohmann::ordered_json terminations_part(const FilterSpec& worked, const XPlane& x_plane,
                                                       const LadderWork& ladder);

}  // namespace kavrel
