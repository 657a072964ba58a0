// The passive Segment: commands on a circuit.
#pragma once

#include "passive/passive_desk.h"
#include "passive/passive_forms.h"
#include "segment/command_table.h"

namespace kavrel {

// How the Segment is entered on its next call (`Session::segment_entry`).
namespace passive_entry {
inline constexpr int ordinary_command = 0;
inline constexpr int stored_circuit = -1;  // a stored circuit is recalled, with the word "read"
inline constexpr int analysis = -2;     // of a circuit to be typed in: kind, band and fnorm are set, the rest is empty
inline constexpr int synthesised = -5;  // ladder synthesis has left a new circuit
inline constexpr int stored_lattice = -6;  // a stored lattice is recalled, with the word "read"
}  // namespace passive_entry

// The words that the Segment knows, in the order in which it looks them up.
[[nodiscard]] CommandWords passive_words();
[[nodiscard]] std::string_view passive_hindrance(const PassiveDesk& desk, const CommandKeyword& word);

// Performs the one command in the Segment's cell, then clears the cell. A word that is in no table is ignored. An entry
// other than an ordinary command comes first: what was to be undone is forgotten, since it belongs to another circuit.
void passiveSegment(PassiveDesk& desk);

}  // namespace kavrel
