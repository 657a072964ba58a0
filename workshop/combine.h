// Neighbours of one kind that become one element.
#pragma once

#include <string_view>

#include "circuit/circuit.h"
#include "shell/refusal.h"

namespace kavrel {

inline constexpr std::string_view nothing_to_combine = "Incorrect branches specified";

// Two inductors or two capacitors, next to each other in series, or across the rails, become one, the one of the
// smaller number; two that cancel both go. The two-port is kept. Refused where the end of a circuit without a source's
// resistor would go from one place to the other: it says what drives the circuit.
[[nodiscard]] Refusal combineBranches(Circuit& circuit, int k1, int k2);

// One pass along the chain: neighbours are combined, and inductors above 1e25 and capacitors of 0 across the rails are
// deleted. What ends a circuit without a source's resistor stays.
void squeezeAll(Circuit& circuit);

}  // namespace kavrel
