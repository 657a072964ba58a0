// Numbers in finite words, for tests: by the digits themselves.
#pragma once

#include <cmath>

#include "shell/word_length.h"

namespace kavrel {

inline double in_word(double x, const WordLength& word) {
    const int exponent = word.number_form == NumberForm::floating_point && x != 0 ? std::ilogb(x) : 0;
    const long double steps = std::ldexp(std::fabs(static_cast<long double>(x)), word.bits - exponent);
    const long double whole = std::floor(word.method == WordMethod::round ? steps + 0.5L : steps);
    return static_cast<double>(std::copysign(std::ldexp(whole, exponent - word.bits), static_cast<long double>(x)));
}

}  // namespace kavrel
