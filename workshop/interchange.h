// Branches that change places.
#pragma once

#include "circuit/circuit.h"
#include "shell/refusal.h"

namespace kavrel {

// Whether a branch is one immittance of inductors and capacitors in its slot: it may change places with others beside
// it that lie in series, or across the rails, as it does.
[[nodiscard]] bool is_reactance(const Circuit& circuit, int k);

// Exchanges what two slots hold. Both branches and all between them must be such immittances at even distances. The
// two-port is kept.
[[nodiscard]] Refusal interchangeBranches(Circuit& circuit, int k1, int k2);

}  // namespace kavrel
