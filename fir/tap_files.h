// The taps of a function as tables for programs of others, all of them, first to last.
#pragma once

#include "fir/program_input.h"
#include "segment/program_text.h"

namespace kavrel {

// A header of C with arrays NAME_double, NAME_float, NAME_q31 and NAME_q15. Refused where a tap passes the largest
// float.
[[nodiscard]] ProgramLines c_table(const FirProgramInput& input);
[[nodiscard]] Refusal c_table_refusal(const FirProgramInput& input);

// A tap a line in 17 digits, behind lines that begin with "#": a table for numpy.loadtxt, and for load of Octave.
[[nodiscard]] ProgramLines tap_text(const FirProgramInput& input);

}  // namespace kavrel
