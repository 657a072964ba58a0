// The FIR design form.
#pragma once

#include "fir/fir_request.h"
#include "shell/form.h"

namespace kavrel {

extern const Form FIR_DESIGN_DLG;
extern const Form FIR_QUADS_DLG;  // "Band specification"
extern const Form FIR_TWIN_DLG;   // "Specified shape"

}  // namespace kavrel
