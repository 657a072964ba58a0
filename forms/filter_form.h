// The filter design form, and what of its record counts.
#pragma once

#include "forms/filter_request.h"
#include "shell/form.h"

namespace kavrel {

extern const Form DESIGN_FILTER_DLG;
// "Filter Parameters", by what "Detail Parameters" has to ask for.
extern const Form SPECIFIED_ZEROS_DLG;  // transmission zeros
extern const Form FUNCTION_ZEROS_DLG;   // function zeros
extern const Form DOUBLETS_DLG;         // function and transmission zeros
extern const Form PLACER_DLG;           // requirements, fixed and movable zeros

// The request as the form's rules leave it: a number whose field is off is 0, a flag no; a group that is off, and a
// stopband that a functional pass band cannot have, have the choice that then holds.
[[nodiscard]] FilterRequest in_force(const FilterRequest& request);

}  // namespace kavrel
