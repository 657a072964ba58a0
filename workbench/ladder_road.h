// The road from a filter design to its circuit.
#pragma once

#include "workbench/workbench.h"

namespace kavrel {

// Synthesises the last design and, when a circuit comes of it, enters the passive Segment with it, drawn. Otherwise the
// menu from which the design came returns, and the former circuit stays.
void ladder_road(Workbench& bench);

}  // namespace kavrel
