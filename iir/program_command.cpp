#include "iir/program_command.h"

namespace kavrel {

void write_program(IirDesk&) {}

}  // namespace kavrel
