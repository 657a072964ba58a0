// A form of a filter as a Fortran subroutine tim(x, y, n, ibt), which filters sample by sample by the equations of
// iir/steppers.h: called with n = 1 it resets its state and leaves y as it is, with n = 2, 3, ... it takes sample x to
// y. Products are brought to |ibt| bits behind the point, rounded, with a negative ibt truncated. The lattice's call
// with n = 1 is its first sample, which sets the state that a 1 leaves.
#pragma once

#include "iir/program_input.h"
#include "segment/program_text.h"

namespace kavrel {

// The classic text, whose spelling, layout and 12 digits others read; compilers of today do not take it.
[[nodiscard]] ProgramLines classic_program(const ProgramInput& input);

// The same subroutine in standard Fortran (2008), its state 0 before the first call. Products are left as they are from
// 50 bits on, as in simulation.
[[nodiscard]] ProgramLines standard_program(const ProgramInput& input);

}  // namespace kavrel
