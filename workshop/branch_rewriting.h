// One branch in place of another.
#pragma once

#include <span>

#include "circuit/circuit.h"

namespace kavrel {

// Gives the branch in slot k another kind and other values, not of a quadruplet; it keeps its slot and its neighbours.
// More values than it had take new cells. A full store changes nothing.
[[nodiscard]] CircuitVerdict replace_branch(Circuit& circuit, int k, BranchId id, std::span<const double> values);

// Inserts a branch right behind that of slot k, towards the source, in a slot of the same parity, k + 2.
[[nodiscard]] CircuitVerdict insert_behind(Circuit& circuit, int k, BranchId id, std::span<const double> values);

}  // namespace kavrel
