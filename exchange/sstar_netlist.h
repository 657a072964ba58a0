// The netlist for SStar, lumped circuits only.
#pragma once

#include <string>
#include <vector>

#include "circuit/circuit.h"
#include "exchange/text_parts.h"

namespace kavrel {

// The circuit between its terminations, node 1 at branch 1. A lattice keeps the resonance of its arms' pairs to six
// digits: they are told by frequency and capacitance. False when the store is no circuit.
[[nodiscard]] bool sstar_netlist(const Circuit& circuit, bool half_lattices, const Sweep& sweep,
                                 std::vector<std::string>& lines);

}  // namespace kavrel
