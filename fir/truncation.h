// The coefficients of a function in a finite word.
#pragma once

#include "fir/command_tools.h"

namespace kavrel {

// Brings the stored coefficients of function n, so that its symmetry stays, to a word of 1 to 47 bits.
void quantise_function(FirFilter& filter, int n, const WordLength& word);

// "trun": function `function_number` in the word asked for. A word that is not shorter than the function's changes
// nothing, which a line says; one in which nothing is left of it is refused. Factors of the function become those of
// none.
[[nodiscard]] Refusal truncate_function(FirFilter& filter, const FirCommandRequest& request, Lines& lines);

}  // namespace kavrel
