// The classic netlists for Scompact and Touchstone.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "circuit/circuit.h"
#include "exchange/text_parts.h"

namespace kavrel {

enum class RfProgram { scompact = 0, touchstone = 1 };

struct RfNetlistRequest {
    RfProgram program = RfProgram::scompact;
    std::string_view title{};
    bool half_lattices = false;
    bool variable_block = false;
    Sweep sweep;
};

inline constexpr int max_numbered_lattices = 4;  // as four-ports: two arms each, arms have one digit

enum class RfNetlistVerdict { written, too_many_lattices, no_circuit };

// Lines of the circuit between its terminations, node 1 at branch 1, and of the analysis that is asked for.
[[nodiscard]] RfNetlistVerdict rf_netlist(const Circuit& circuit, const RfNetlistRequest& request,
                                          std::vector<std::string>& lines);

}  // namespace kavrel
