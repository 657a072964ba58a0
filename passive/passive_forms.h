// The small forms that ask for what the commands of the passive Segment need.
#pragma once

#include "passive/passive_request.h"
#include "shell/form.h"

namespace kavrel {

extern const Form PASSIVE_FREQUENCY_DLG;
extern const Form PASSIVE_TIME_DLG;
extern const Form PASSIVE_PLOT_FREQUENCY_DLG;
extern const Form PASSIVE_PLOT_TIME_DLG;
extern const Form PASSIVE_INSERT_DLG;
extern const Form PASSIVE_DELETE_DLG;
extern const Form PASSIVE_CHANGE_DLG;
extern const Form PASSIVE_RESONANCE_DLG;
extern const Form PASSIVE_SUPPRESS_DLG;
extern const Form PASSIVE_TITLE_DLG;
extern const Form PASSIVE_TRANSFER_DLG;
extern const Form PASSIVE_PRINT_DLG;

}  // namespace kavrel
