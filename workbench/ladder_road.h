// The road from a filter design to its circuit.
#pragma once

#include "workbench/workbench.h"

namespace kavrel {

// Synthesises the design that is drafted and, when a circuit comes of it, enters the passive Segment with it, drawn.
// Otherwise the menu from which the design came returns, and the former circuit stays; after a synthesis that failed
// so does all else. When the form was left the design ends with its transfer function.
void ladder_road(Workbench& bench, std::string_view title);

}  // namespace kavrel
