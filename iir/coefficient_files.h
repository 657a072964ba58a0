// The cascade of a filter as data of other programs: a row a section, the front-end multiplier in the first one.
#pragma once

#include "iir/program_input.h"
#include "segment/program_text.h"
#include "shell/refusal.h"
#include "shell/watcher.h"

namespace kavrel {

// A header of C: b0 b1 b2 -a1 -a2 of each section as double, float, and fractions of 32 and 16 bits of one shift. Its
// names begin with that of the file. Refused where a coefficient is beyond a float.
[[nodiscard]] Refusal c_table_refusal(const ProgramInput& input, Watcher& watcher);
[[nodiscard]] ProgramLines c_table(const ProgramInput& input);

// b0 b1 b2 1 a1 a2 of each section, in 17 digits, behind heads that begin with "#".
[[nodiscard]] ProgramLines sos_text(const ProgramInput& input);

}  // namespace kavrel
