// A circuit turned end for end.
#pragma once

#include <string_view>

#include "circuit/circuit.h"
#include "shell/refusal.h"

namespace kavrel {

inline constexpr std::string_view no_flip = "Circuit may not be turned end-for-end";

[[nodiscard]] bool can_flip(const Circuit& circuit);

// The branch in slot k comes to slot klast - k + 1, each branch turned end for end: the two-port is the reverse of what
// it was. Between two resistors only, and with an odd klast, so that branches keep their parity.
[[nodiscard]] Refusal flip(Circuit& circuit);

}  // namespace kavrel
