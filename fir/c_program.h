// A function as a file of C99 with one function, which filters one sample a call: in numbers, void fir(double x,
// double *y, int n, int ibt), and, of one that was truncated to a fixed word, in whole numbers, void fir(int32_t x,
// int64_t *y, int n), which are values times 2^bits.
#pragma once

#include "fir/program_input.h"
#include "segment/program_text.h"

namespace kavrel {

[[nodiscard]] ProgramLines c_program(const FirProgramInput& input);

// Products are brought to the word of the function, the exact ones. With samples of full scale, -2^bits to 2^bits, a
// coefficient of 32 bits and 30 bits at most, they are within 2^62, and 518 of them within 2^62 after that: where the
// coefficients fit nothing overflows.
[[nodiscard]] ProgramLines integer_program(const FirProgramInput& input);
[[nodiscard]] Refusal integer_program_refusal(const FirProgramInput& input);

}  // namespace kavrel
