// The road of a delay design: form, saved input data, design.
#pragma once

#include "workbench/design_input.h"

namespace kavrel {

// Opens the delay form and takes the design as far as it goes. A form that is cancelled and a file that is refused
// leave everything as it was.
void delay_design_road(Workbench& bench, FormStart start);

}  // namespace kavrel
