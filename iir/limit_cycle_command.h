// "lim ": the limit cycles of the sections.
#pragma once

#include "iir/iir_desk.h"

namespace kavrel {

void report_limit_cycles(IirDesk& desk);

}  // namespace kavrel
