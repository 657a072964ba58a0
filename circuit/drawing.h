// The drawing of a circuit: each branch in rows of box characters, the two rails running down the page from the load to
// the source, ground at the left.
#pragma once

#include <string>
#include <vector>

#include "circuit/circuit.h"
#include "shell/units.h"

namespace kavrel {

// Lines from branch `firstBranch` (or the next that exists) to the end: the branch number in the middle row of each
// branch, the drawing, and beside the rows the values, one a row, with what is to be noted of resonances.
[[nodiscard]] std::vector<std::string> showCircuit(const Circuit& circuit, int firstBranch, const UnitSet& units);

}  // namespace kavrel
