// The classic netlists for Scompact and Touchstone.
#pragma once

#include "exchange/transfer_request.h"

namespace kavrel {

inline constexpr int max_numbered_lattices = 4;  // as four-ports: two arms each, arms have one digit

// Lines of the circuit between its terminations, node 1 at branch 1, and of the analysis that is asked for. Too many
// lattices beyond four of them, but in a microwave circuit, which has none, and as half-lattices. An internal error
// when the store is no circuit.
[[nodiscard]] TransferVerdict scompact_netlist(const TransferInput& input, const TransferRequest& request,
                                               std::vector<std::string>& lines);
[[nodiscard]] TransferVerdict touchstone_netlist(const TransferInput& input, const TransferRequest& request,
                                                 std::vector<std::string>& lines);

}  // namespace kavrel
