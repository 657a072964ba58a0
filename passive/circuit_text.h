// The text twin of a stored circuit, for people and for programs that read lines of fixed format:
//
//   20A4            title
//   16I6            klast, ilast, kind, count of natural modes; 12 spare
//   43I6     3 x    quadruplets, second part (passive/circuit_records.h)
//   8D16.8  42 x    quadruplets, first part
//   10I10   10 x    INDX1
//   10D16.8 15 x    VALUE
//   13D16.8         R1, R2, fa, fb, fnorm, fs, mod; 6 spare
//   10D16.8 10 x    natural modes, five a line, each as real and imaginary part
//   17A4            the first 68 characters of the title again
//
// D16.8 keeps eight digits: a circuit comes back with values that differ in the ninth, not to the last bit, and without
// its design. What must stay as it is goes into records.
#pragma once

#include <string>
#include <string_view>

#include "passive/passive_filter.h"

namespace kavrel {

// A character of the title that would end its line is left out for a blank.
[[nodiscard]] std::string circuit_text(const PassiveFilter& filter, const FixedText<80>& title);

// False, with the filter and the title as they were, when the text is not made of such lines to its end, or holds
// what no circuit could be. The exponent letter may be D, E or none; a line may end in a carriage return; spare numbers
// and the short title are passed over. The circuit is one without design.
[[nodiscard]] bool read_circuit_text(std::string_view text, PassiveFilter& filter, FixedText<80>& title);

}  // namespace kavrel
