// "prog": a function as a program.
#pragma once

#include "fir/fir_desk.h"

namespace kavrel {

void write_program(FirDesk& desk);

}  // namespace kavrel
