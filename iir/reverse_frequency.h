// "conv": z to -z, which turns a low-pass into a high-pass.
#pragma once

#include "iir/iir_desk.h"

namespace kavrel {

void reverse_frequency(IirDesk& desk);

}  // namespace kavrel
