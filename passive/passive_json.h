// The parts of the state file that passive work leaves: circuit, parts.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "circuit/circuit.h"

namespace kavrel {

// Each null where there is no circuit. Values are those of the store, in ohm, henry and farad; in a microwave circuit
// impedances of short-circuited stubs and lines, admittances of open stubs.
[[nodiscard]] nlohmann::ordered_json circuit_part(const Circuit& circuit);
[[nodiscard]] nlohmann::ordered_json parts_part(const Circuit& circuit);

}  // namespace kavrel
