// "prog": the filter as source text of another program.
#pragma once

#include "iir/iir_desk.h"

namespace kavrel {

void write_program(IirDesk& desk);

}  // namespace kavrel
