// The road of a FIR design: form, saved input data, design, FIR Segment.
#pragma once

#include "workbench/design_input.h"

namespace kavrel {

// Opens the FIR form and takes the design to its Segment. A form that is cancelled, a file that is refused and a design
// that does not come off leave filter, results and the current Segment as they were.
void fir_design_road(Workbench& bench, FormStart start);

// Shows a filter that is new in the FIR Segment, with the word, if there is one, as its first command; an undo leads
// back to the filter of before.
void enter_fir(Workbench& bench, const FirFilter& filter, std::string_view title, std::string_view word = "");

}  // namespace kavrel
