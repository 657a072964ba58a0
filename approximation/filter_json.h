// The parts of the state file that an approximation leaves: spec, transfer, x_plane, immittance.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "approximation/filter_spec.h"
#include "approximation/x_plane.h"

namespace kavrel {

// Each null where there is nothing to report. `worked` is the request as the approximation left it, `used_q` that of a
// predistortion, 0 where there is none.
[[nodiscard]] nlohmann::ordered_json spec_part(const FilterSpec& spec);
[[nodiscard]] nlohmann::ordered_json transfer_part(const FilterSpec& request, const FilterSpec& found,
                                                   const TransferFunction& transfer, double used_q);
[[nodiscard]] nlohmann::ordered_json x_plane_part(const FilterSpec& worked, const XPlane& x_plane);
[[nodiscard]] nlohmann::ordered_json immittance_part(const XPlane& x_plane);

}  // namespace kavrel
