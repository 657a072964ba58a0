#include "iir/limit_cycle_command.h"

namespace kavrel {

void report_limit_cycles(IirDesk&) {}

}  // namespace kavrel
