// The block diagram of a section, for "des ".
#pragma once

#include "iir/iir_report.h"

namespace kavrel {

enum class SectionOf { cascade, parallel };

// Section k of the cascade, y = SC x + C1N x1 + C2N x2 - C1D y1 - C2D y2 (x1, y2: one and two samples ago), the first
// behind the front-end multiplier CK; or block k of the parallel form, y = AL x + BE x1 - GA y1 - DE y2. Words are
// those of the form's table. At most 81 columns; no lines where there is no such section.
[[nodiscard]] Lines section_diagram(const IirFilter& filter, SectionOf form, int k, DiagramChoice diagram,
                                    DisplayFormat format);

}  // namespace kavrel
