// Numbers of branches without gaps.
#pragma once

#include "circuit/circuit.h"

namespace kavrel {

// Gives all branches the smallest numbers that keep their parity and the distances of insertion; values are packed in
// the order of the chain. No number grows.
void renumberBranches(Circuit& circuit);

}  // namespace kavrel
