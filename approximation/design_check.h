// What a request that comes from a file must fulfil.
#pragma once

#include "approximation/filter_spec.h"

namespace kavrel {

// Whether its choices are such as there are, and its counts within their tables.
[[nodiscard]] bool sound_spec(const FilterSpec& spec);

}  // namespace kavrel
