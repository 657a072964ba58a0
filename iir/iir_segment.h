// The IIR digital Segment: commands on a digital filter.
#pragma once

#include "iir/iir_desk.h"
#include "segment/command_table.h"

namespace kavrel {

// How the Segment is entered on its next call (`Session::segment_entry`).
namespace iir_entry {
inline constexpr int ordinary_command = 0;
inline constexpr int first_call = 1;      // after a design, or with a filter from outside
inline constexpr int stored_filter = -1;  // a stored filter is recalled, with the word "read"
}  // namespace iir_entry

// The words that the Segment knows, in the order in which it looks them up.
[[nodiscard]] CommandWords iir_words();
[[nodiscard]] std::string_view iir_hindrance(const IirDesk& desk, const CommandKeyword& word);

// Performs the one command in the Segment's cell, then clears the cell. A word that is in no table is ignored.
void iirSegment(IirDesk& desk);

}  // namespace kavrel
