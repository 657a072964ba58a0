// The road of an analysis: form, saved input data, and the Segment of the filter's kind.
#pragma once

#include "workbench/design_input.h"

namespace kavrel {

// Opens the analysis form. A passive or microwave filter opens the passive Segment on an empty store, to be filled by
// inserting branches or from a stored circuit. A form that is cancelled and a file that is refused leave everything as
// it was.
void analysis_road(Workbench& bench, FormStart start);

// From the finished form of a passive or microwave filter on: nothing of a former filter's design and analysis is of
// this one.
void typed_circuit_road(Workbench& bench);

// The same for a FIR filter, which is shown in the FIR Segment.
void fir_analysis_road(Workbench& bench, FormStart start);

}  // namespace kavrel
