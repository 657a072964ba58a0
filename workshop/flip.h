// A circuit turned end for end.
#pragma once

#include "circuit/circuit.h"
#include "shell/refusal.h"

namespace kavrel {

// The branch in slot k comes to slot klast - k + 1, each branch turned end for end: the two-port is the reverse of what
// it was. Between two resistors only, and with an odd klast, so that branches keep their parity.
[[nodiscard]] Refusal flip(Circuit& circuit);

}  // namespace kavrel
