// Sections of a lumped circuit as symmetrical lattices.
#pragma once

#include <string_view>

#include "circuit/circuit.h"
#include "shell/refusal.h"

namespace kavrel {

inline constexpr std::string_view no_lattice = "Microwave circuit, no lattice conversion";
inline constexpr std::string_view no_lattice_section = "Incorrect branches specified";
inline constexpr std::string_view no_such_section = "Incorrect section specified";

// Turns the branches from k1 to k2 into one lattice with arms of three elements, branch k. The section must have such
// arms, and, seen from the source, a constant times the impedances that it has seen from the load: by the square of
// that ratio all impedances behind it, towards the source, are scaled.
[[nodiscard]] Refusal toLattice(Circuit& circuit, int k1, int k2, int& k);

// Takes what the branches on either side of the lattice k have in common into it: two capacitors beside a lattice whose
// X are capacitors, two inductors beside the other kind, both in series or both across the rails. The smaller of the
// two impedances in series, or admittances across the rails, goes into both arms, and off both branches, one of which
// vanishes.
[[nodiscard]] Refusal includeIntoLattice(Circuit& circuit, int k);

}  // namespace kavrel
