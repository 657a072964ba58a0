// Branches that change places.
#pragma once

#include "circuit/circuit.h"
#include "shell/refusal.h"

namespace kavrel {

// Exchanges what two slots hold. Both branches and all between them must be single immittances of inductors and
// capacitors, all in series or all across the rails. The two-port is kept.
[[nodiscard]] Refusal interchangeBranches(Circuit& circuit, int k1, int k2);

}  // namespace kavrel
