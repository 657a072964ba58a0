// The dual of a circuit.
#pragma once

#include <string_view>

#include "circuit/circuit.h"
#include "shell/refusal.h"

namespace kavrel {

inline constexpr std::string_view no_dual = "No input termination, no dual";

// Impedances become admittances, by 1 ohm: L and C change places, R and Z are inverted, series and shunt change places,
// for which all branches but the load move up by a slot. The loss between the terminations, then 1/R, is what it was.
// Coupled triplets and quadruplets have no dual branch; a twin T has one where it is that of a pair of zeros: its two T
// with one ratio of arms and one resonance.
[[nodiscard]] Refusal dual(Circuit& circuit);

}  // namespace kavrel
