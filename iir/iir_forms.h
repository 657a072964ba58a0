// The small forms that ask for what the commands of the IIR Segment need, and the two of the z step.
#pragma once

#include "iir/iir_request.h"
#include "shell/form.h"

namespace kavrel {

extern const Form Z_TRANSFORM_DLG;
extern const Form SPECTRAL_DLG;
extern const Form IIR_FREQUENCY_DLG;
extern const Form IIR_TIME_DLG;
extern const Form IIR_PLOT_FREQUENCY_DLG;
extern const Form IIR_PLOT_TIME_DLG;
extern const Form IIR_FLAT_DLG;
extern const Form IIR_ADD_DLG;
extern const Form IIR_DELETE_DLG;
extern const Form IIR_PERMUTE_DLG;
extern const Form IIR_TRUNCATE_DLG;
extern const Form IIR_SCALE_DLG;
extern const Form IIR_SCALE_FACTORS_DLG;
extern const Form IIR_ORDER_DLG;
extern const Form IIR_PROGRAM_DLG;
extern const Form IIR_SECTION_DLG;
extern const Form IIR_RESAMPLE_DLG;
extern const Form IIR_TITLE_DLG;
extern const Form IIR_PRINT_DLG;

}  // namespace kavrel
