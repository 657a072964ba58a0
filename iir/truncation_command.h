// "trun": the coefficients of all forms in a finite word, or in the least that meets the request.
#pragma once

#include "iir/iir_desk.h"

namespace kavrel {

void truncate(IirDesk& desk);

}  // namespace kavrel
