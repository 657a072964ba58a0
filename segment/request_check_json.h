// The part of the state file that a request check makes.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "segment/request_check.h"

namespace kavrel {

// A list of {what, band, asked, reached, margin, met}, band [from, to] in Hz with null for infinity, or null where a
// row has none; null without a request.
[[nodiscard]] nlohmann::ordered_json check_part(const RequestCheck& check);

}  // namespace kavrel
