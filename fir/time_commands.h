// The commands on time.
#pragma once

#include "fir/fir_desk.h"

namespace kavrel {

void analyse_time(FirDesk& desk);  // "time"

}  // namespace kavrel
