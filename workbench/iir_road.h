// From a finished transfer function, or a filter from outside, to the IIR Segment.
#pragma once

#include <string_view>

#include "workbench/workbench.h"

namespace kavrel {

void iir_road(Workbench& bench, std::string_view title);
void typed_digital_road(Workbench& bench);

}  // namespace kavrel
