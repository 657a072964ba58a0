// The store as it is, for diagnosis.
#pragma once

#include <string>
#include <vector>

#include "circuit/circuit.h"

namespace kavrel {

// Band scalars, then each branch with the fields of its word and its values; " no circuit" when there is none.
[[nodiscard]] std::vector<std::string> listCircuit(const Circuit& circuit);

}  // namespace kavrel
