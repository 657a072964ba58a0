// What many commands of the passive Segment do.
#pragma once

#include <string_view>

#include "passive/passive_desk.h"
#include "passive/stored_circuit.h"

namespace kavrel {

// "*** done ***": in a box with caption "Success", or, while display is suppressed, on the report.
void report_done(PassiveDesk& desk);

// The circuit as the kit keeps it.
[[nodiscard]] KeptFilter<PassiveFilter> kept(PassiveDesk& desk);

// Draws the circuit from `state.lastBranch` on, and sets that back to 1.
void show_circuit(PassiveDesk& desk);

// Where the design is reported but the circuit is no longer the designed one: whether the user wishes to go on.
[[nodiscard]] bool wishes_original(PassiveDesk& desk, std::string_view what);

}  // namespace kavrel
