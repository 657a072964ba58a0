// The road of a filter design: form, saved input data, design, and whoever takes the design over.
#pragma once

#include "workbench/design_input.h"

namespace kavrel {

// Opens the filter form and takes the design to its end. A form that is cancelled and a file that is refused leave
// everything as it was; after a design that does not come off all is the former one, but for `discontinued_request`.
void filter_design_road(Workbench& bench, FormStart start);

}  // namespace kavrel
