#include "iir/frequency_commands.h"

namespace kavrel {

void analyse_frequency(IirDesk&) {}
void tabulate_frequency(IirDesk&) {}
void plot_frequency(IirDesk&) {}

}  // namespace kavrel
