// How a filter design ends that leaves no circuit.
#pragma once

#include "workbench/workbench.h"

namespace kavrel {

// It did not come off: its request stands alone, beside the former design.
void discontinue(Workbench& bench);

// Its transfer function is all that there is: it takes the place of the former one, and of the last synthesis. What it
// misses of its request is reported.
void keep_function(Workbench& bench, std::string_view title);

}  // namespace kavrel
