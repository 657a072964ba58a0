// The FIR digital Segment: commands on a designed impulse response.
#pragma once

#include <span>

#include "fir/fir_desk.h"
#include "shell/commands.h"

namespace kavrel {

extern const Form FIR_FUNCTION_DLG;  // "Function number"
extern const Form FIR_PRINT_DLG;     // "Printing to"

// The words that the Segment knows, in the order in which it looks them up.
[[nodiscard]] std::span<const CommandKeyword> fir_words();

// Whether the Segment has a routine behind a word of its table.
[[nodiscard]] bool fir_performs(const CommandKeyword& word);

// Performs the one command in the Segment's cell, then clears the cell. A word that is in no table is ignored.
void firSegment(FirDesk& desk);

}  // namespace kavrel
