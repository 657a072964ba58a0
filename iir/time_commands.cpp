#include "iir/time_commands.h"

namespace kavrel {

void analyse_time(IirDesk&) {}
void tabulate_time(IirDesk&) {}
void plot_time(IirDesk&) {}

}  // namespace kavrel
