// How a filter design ends that leaves no circuit.
#pragma once

#include "workbench/workbench.h"

namespace kavrel {

// What the form says of a design that has failed, where nothing else has said why.
inline constexpr std::string_view design_discontinued = "Design discontinued: the report says why";

// It did not come off: its request stands alone, beside the former design.
void discontinue(Workbench& bench);

// Its transfer function is all that there is, and is reported with what it misses. Where no filter is shown that has a
// Segment of its own, it takes the place of the former function, and of the last synthesis.
void end_with_function(Workbench& bench, std::string_view title);

}  // namespace kavrel
