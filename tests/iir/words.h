// Coefficients in finite words, for tests: by the digits themselves.
#pragma once

#include <cmath>

#include "iir/iir_filter.h"

namespace kavrel {

inline double in_word(double x, const WordLength& word) {
    const int exponent = word.number_form == NumberForm::floating_point && x != 0 ? std::ilogb(x) : 0;
    const long double steps = std::ldexp(std::fabs(static_cast<long double>(x)), word.bits - exponent);
    const long double whole = std::floor(word.method == WordMethod::round ? steps + 0.5L : steps);
    return std::copysign(static_cast<double>(std::ldexp(whole, exponent - word.bits)), x) + 0.0;  // 0 has no sign
}

// All numbers of all forms; the front-end multiplier in a floating word.
inline IirFilter in_words(IirFilter filter, const WordLength& word) {
    const double front = in_word(filter.cascade.CK, {word.bits, word.method, NumberForm::floating_point});
    const auto bring = [&](std::string_view, auto& field, auto...) {
        if constexpr (std::is_same_v<decltype(field), double&>) field = in_word(field, word);
        if constexpr (requires(double*& cells) { cells = field.begin(); }) {
            for (double& cell : field) cell = in_word(cell, word);
        }
    };
    fields_of(filter.cascade, bring), fields_of(filter.parallel, bring), fields_of(filter.direct, bring);
    fields_of(filter.lattice, bring), fields_of(filter.allpass, bring);
    filter.cascade.CK = front;
    return filter;
}

}  // namespace kavrel
