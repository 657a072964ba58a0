// A function as a subroutine fir(x, y, n, ibt) of Fortran, which filters one sample a call: the classic text, and the
// same in standard Fortran 2008.
//
// The classic text is as it always was: 1.do where 1.d0 is meant, a delay line that is shifted one cell beyond its end,
// and for an odd symmetry of odd length a delay line two cells short and its last pair taken for a middle tap. It has
// nine blocks of data, for 512 coefficients.
#pragma once

#include "fir/program_input.h"
#include "segment/program_text.h"
#include "shell/refusal.h"

namespace kavrel {

// Why there is no classic text.
[[nodiscard]] Refusal classic_program_refusal(const FirProgramInput& input);

// What the report says of it: that of an odd symmetry of odd length another filter is written.
[[nodiscard]] std::string_view classic_program_note(const FirProgramInput& input);

[[nodiscard]] ProgramLines classic_program(const FirProgramInput& input);
[[nodiscard]] ProgramLines standard_program(const FirProgramInput& input);

}  // namespace kavrel
