// The ladder synthesis Segment: from a finished approximation to a circuit.
#pragma once

#include "segment/command_table.h"
#include "synthesis/ladder_desk.h"

namespace kavrel {

// How the Segment is entered on its next call (`Session::segment_entry`).
namespace ladder_entry {
inline constexpr int ordinary_command = 0;
inline constexpr int designed = 1;  // an approximation is ready: the form comes up, and the run follows
}  // namespace ladder_entry

// The words that the Segment knows, in the order in which it looks them up.
[[nodiscard]] CommandWords ladder_words();

// Entered with a design: asks for the form, synthesises, and writes the report; `LadderWork::outcome` says how it
// ended. Otherwise performs the one command in the Segment's cell. A word that is in no table is ignored.
void ladderSegment(LadderDesk& desk);

}  // namespace kavrel
