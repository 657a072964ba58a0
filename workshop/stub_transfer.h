// Low-pass and high-pass of commensurate stubs into each other.
#pragma once

#include <string_view>

#include "circuit/circuit.h"
#include "shell/refusal.h"

namespace kavrel {

inline constexpr std::string_view no_transfer = "Not microwave, no transfer";

// Replaces the tangent t by 1/t: short-circuited stubs become open ones, with the same impedance, and what the filter
// did at f it does at fs/2 - f. Edges, and the normalisation frequency, go there, too. Unit elements and sections of
// several nodes have no such counterpart.
[[nodiscard]] Refusal transfer(Circuit& circuit);

}  // namespace kavrel
