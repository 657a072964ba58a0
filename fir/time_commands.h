// "time", "tabt", "pltt": what a function does over time.
#pragma once

#include "fir/fir_desk.h"

namespace kavrel {

void analyse_time(FirDesk& desk);   // "time"
void tabulate_time(FirDesk& desk);  // "tabt"
void plot_time(FirDesk& desk);      // "pltt"

}  // namespace kavrel
