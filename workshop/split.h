// One element in two.
#pragma once

#include "circuit/circuit.h"
#include "shell/refusal.h"

namespace kavrel {

// An inductor or a capacitor becomes two of its kind: `part`, as the store holds it, as branch k, and the rest behind
// it, such that the two-port is kept.
[[nodiscard]] Refusal splitBranch(Circuit& circuit, int k, double part);

// The part that splits it into equal ones; 0 of what is no inductor or capacitor.
[[nodiscard]] double half_of_branch(const Circuit& circuit, int k);

}  // namespace kavrel
