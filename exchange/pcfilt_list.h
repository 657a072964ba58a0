// The element list for PCFilt: a value, a letter and a code on each line.
#pragma once

#include <string>
#include <vector>

#include "circuit/circuit.h"

namespace kavrel {

// Both terminations are lines of it. Lines and stubs are two lines each, Z their impedance and D their length in
// degrees at the quarter-wave frequency. Kinds that the list has no code for leave a line that says so. False when the
// store is no circuit.
[[nodiscard]] bool pcfilt_list(const Circuit& circuit, std::vector<std::string>& lines);

}  // namespace kavrel
