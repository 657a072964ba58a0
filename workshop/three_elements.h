// Branches of three elements and their equivalents: a resonant branch and an element beside it.
#pragma once

#include "circuit/circuit.h"
#include "shell/refusal.h"

namespace kavrel {

[[nodiscard]] constexpr bool is_three_element(BranchId id) { return id == BranchId::lcc || id == BranchId::lcl; }

// A resonant branch lc and the inductor or capacitor `element` beside it, both in series or both across the rails with
// nothing between them that is not, become an lcl or lcc; of a branch that is one already, both come back, and
// `element` is not read. The two-port is kept.
[[nodiscard]] Refusal exchangeThree(Circuit& circuit, int resonant, int element);

}  // namespace kavrel
