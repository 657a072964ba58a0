// A number in a finite word, for tests: by its whole steps in long doubles.
#pragma once

#include <cmath>

#include "shell/word_length.h"

namespace kavrel {

inline double in_word(double x, const WordLength& word) {
    const int exponent = word.number_form == NumberForm::floating_point && x != 0 ? std::ilogb(x) : 0;
    const long double steps = std::ldexp(std::fabs(static_cast<long double>(x)), word.bits - exponent);
    const long double whole = std::floor(word.method == WordMethod::round ? steps + 0.5L : steps);
    return std::copysign(static_cast<double>(std::ldexp(whole, exponent - word.bits)), x) + 0.0;  // 0 has no sign
}

}  // namespace kavrel
