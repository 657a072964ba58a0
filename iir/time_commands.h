// "time", "tabt", "pltt": impulse and step response of a form, sample by sample.
#pragma once

#include "iir/iir_desk.h"

namespace kavrel {

void analyse_time(IirDesk& desk);
void tabulate_time(IirDesk& desk);
void plot_time(IirDesk& desk);

}  // namespace kavrel
