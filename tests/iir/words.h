// Filters in finite words, for tests.
#pragma once

#include "iir/iir_filter.h"
#include "tests/support/in_word.h"

namespace kavrel {

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
    filter.cascade.CK = front, filter.word = word;
    return filter;
}

}  // namespace kavrel
