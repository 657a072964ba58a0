// The FIR digital Segment: commands on a designed impulse response.
#pragma once

#include "fir/fir_desk.h"
#include "segment/command_table.h"

namespace kavrel {

extern const Form FIR_FUNCTION_DLG;  // "Function number"
extern const Form FIR_PRINT_DLG;     // "Printing to"

// The words that the Segment knows, in the order in which it looks them up.
[[nodiscard]] CommandWords fir_words();
[[nodiscard]] std::string_view fir_hindrance(const FirDesk& desk, const CommandKeyword& word);

// Performs the one command in the Segment's cell, then clears the cell. A word that is in no table is ignored.
void firSegment(FirDesk& desk);

}  // namespace kavrel
