// The netlist for SStar, lumped circuits only.
#pragma once

#include "exchange/transfer_request.h"

namespace kavrel {

// The circuit between its terminations, node 1 at branch 1. A lattice keeps the resonance of its arms' pairs to six
// digits: they are given by frequency and capacitance. An internal error when the store is no circuit.
[[nodiscard]] TransferVerdict sstar_netlist(const TransferInput& input, const TransferRequest& request,
                                            std::vector<std::string>& lines);

}  // namespace kavrel
