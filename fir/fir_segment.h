// The FIR digital Segment: commands on an FIR filter and its functions.
#pragma once

#include "fir/fir_desk.h"
#include "segment/command_table.h"

namespace kavrel {

// How the Segment is entered on its next call (`Session::segment_entry`).
namespace fir_entry {
inline constexpr int first_call = 0;  // after a design, or with a filter from outside
inline constexpr int ordinary_command = 1;
inline constexpr int stored_filter = 55;  // a stored filter is recalled, with the word "read"
}  // namespace fir_entry

// The words that the Segment knows, in the order in which it looks them up.
[[nodiscard]] CommandWords fir_words();
[[nodiscard]] std::string_view fir_hindrance(const FirDesk& desk, const CommandKeyword& word);

// Performs the one command in the Segment's cell, then clears the cell. A word that is in no table is ignored.
void firSegment(FirDesk& desk);

}  // namespace kavrel
