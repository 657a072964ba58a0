// "conv": z to -z, which turns a low-pass into a high-pass: what was at f is at fs/2 - f.
#pragma once

#include "iir/iir_desk.h"
#include "iir/iir_report.h"
#include "shell/units.h"

namespace kavrel {

// Turns all roots and factors of a filter, and gives the forms up that are made of them; the chains of a differential
// allpass are known still, where the filter is one of their outputs still. Of a filter that was not converted before
// also the kind, the edges and what was asked of it; the lines then list its transmission zeros. Else only roots and
// factors turn back, and nothing is asked of it any more. Whether it was converted before.
bool turn_frequency(IirFilter& filter, const UnitSet& units, Lines& lines);

void reverse_frequency(IirDesk& desk);

}  // namespace kavrel
