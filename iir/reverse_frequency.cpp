#include "iir/reverse_frequency.h"

namespace kavrel {

void reverse_frequency(IirDesk&) {}

}  // namespace kavrel
