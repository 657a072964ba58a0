// A form of a filter that was truncated to a fixed word, as a file of C99 with one function in whole numbers,
// void tim(int32_t x, int64_t *y, int n): the numbers are values times 2^bits. It gives what simulation with that word
// gives (iir/sampled_response.h), to the last bit.
#pragma once

#include "iir/program_input.h"
#include "segment/program_text.h"
#include "shell/refusal.h"
#include "shell/watcher.h"

namespace kavrel {

// Why there is no such program: the filter is not truncated, to another word than a fixed one of 2 to 30 bits, a
// coefficient does not fit into 32 bits, or a product may pass 2^62 with an input of full scale, -1 to 1.
//
// The products' bounds: the sum of their magnitudes over the impulse response, which an input of full scale can reach,
// and for each state the same over the response to a 1 added to it, times its quantisers, each of which errs by one
// unit at most. Where the sums do not settle, of an unstable filter, there is no bound.
[[nodiscard]] Refusal integer_program_refusal(const ProgramInput& input, Watcher& watcher);

// Of a form that is not refused.
[[nodiscard]] ProgramLines integer_program(const ProgramInput& input);

}  // namespace kavrel
