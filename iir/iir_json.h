// The part of the state file that IIR work leaves.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "iir/iir_filter.h"
#include "iir/word_results.h"

namespace kavrel {

// Roots, all forms that there are, and what was found about this filter in finite words; null where there is no filter.
[[nodiscard]] nlohmann::ordered_json iir_part(const IirFilter& filter, const WordResults& words);

}  // namespace kavrel
