// The parts of the state file that passive work leaves: synthesis, circuit, parts.
#pragma once

#include <nlohmann/json.hpp>

#include "circuit/circuit.h"
#include "synthesis/ladder_desk.h"

namespace kavrel {

// Each empty where there is nothing to tell. Values are those of the store, in ohm, henry and farad; in a microwave
// circuit impedances of short-circuited stubs and lines, admittances of open stubs.
[[nodiscard]] nlohmann::ordered_json synthesis_part(const LadderWork& work);
[[nodiscard]] nlohmann::ordered_json circuit_part(const Circuit& circuit);
[[nodiscard]] nlohmann::ordered_json parts_part(const Circuit& circuit);

}  // namespace kavrel
