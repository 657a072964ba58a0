// "trun": a function in a finite word, or in the least that keeps its deviations.
#pragma once

#include "fir/fir_desk.h"

namespace kavrel {

void truncate(FirDesk& desk);

}  // namespace kavrel
