// How a filter design ends that leaves no circuit.
#pragma once

#include "workbench/workbench.h"

namespace kavrel {

// It did not come off: its request stands alone, beside the former design.
void discontinue(Workbench& bench);

// The form says why, where no box has: in the words of the report's last line, if that is what it is of.
void report_failed_design(Workbench& bench);

// Its transfer function is all that there is, and is reported with what it misses. Where no filter is shown that has a
// Segment of its own, it takes the place of the former function, and of the last synthesis.
void end_with_function(Workbench& bench, std::string_view title);

}  // namespace kavrel
