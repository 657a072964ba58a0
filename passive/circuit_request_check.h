// A circuit against the request that it was designed for.
#pragma once

#include <string>
#include <vector>

#include "passive/passive_filter.h"
#include "segment/request_check.h"
#include "shell/watcher.h"

namespace kavrel {

// The rows of the losses between the terminations that the circuit has, and of their ratio R2/R1. Elements are without
// loss, unless the design allowed for a Q: then they have that, as in an analysis. No request: a circuit that was typed
// in, or read from a file that carries none. Asks the watcher at each frequency.
[[nodiscard]] RequestCheck check_circuit(const PassiveFilter& filter, Watcher& watcher);

// What the report says of it: a line for each row that is missed, and the terminations where their ratio is more than
// 0.1 % off.
[[nodiscard]] std::vector<std::string> missed_request_lines(const PassiveFilter& filter, Watcher& watcher);

}  // namespace kavrel
