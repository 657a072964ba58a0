// The forms of the FIR Segment's commands.
#pragma once

#include "shell/form.h"

namespace kavrel {

extern const Form FIR_FUNCTION_DLG;
extern const Form FIR_FREQUENCY_DLG;
extern const Form FIR_PLOT_FREQUENCY_DLG;
extern const Form FIR_PLOT_TIME_DLG;
extern const Form FIR_TRUNCATE_DLG;
extern const Form FIR_GAIN_DLG;
extern const Form FIR_PROGRAM_DLG;
extern const Form FIR_ADD_DLG;
extern const Form FIR_DELETE_DLG;
extern const Form FIR_CHANGE_DLG;
extern const Form FIR_SERIAL_DLG;
extern const Form FIR_TITLE_DLG;
extern const Form FIR_PRINT_DLG;

}  // namespace kavrel
