// The part of the state file that IIR work leaves.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "iir/iir_filter.h"

namespace kavrel {

// Roots and all forms that there are; null where there is no filter.
[[nodiscard]] nlohmann::ordered_json iir_part(const IirFilter& filter);

}  // namespace kavrel
