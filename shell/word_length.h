// The finite words that numbers are brought to, and the part of a form that asks for one.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include <fmt/format.h>

#include "shell/field_table.h"
#include "shell/fields.h"

namespace kavrel {

enum class WordMethod : int { round = 1, truncate = 2 };

// Floating point: the bits are those of a mantissa in [1, 2), behind its 1. Fixed point: the fraction bits of the
// value.
enum class NumberForm : int { floating_point = 1, fixed_point = 2 };

inline constexpr int unquantised_bits = 50;  // a word length from which on numbers are as they are

struct WordLength {
    int bits = 0;  // 0, or 50 and more: numbers are as they are
    WordMethod method = WordMethod::round;
    NumberForm number_form = NumberForm::floating_point;

    [[nodiscard]] constexpr bool quantises() const { return bits > 0 && bits < unquantised_bits; }
    friend bool operator==(const WordLength&, const WordLength&) = default;
};
template <ListedAs<WordLength> Record, class Visit>
constexpr void fields_of(Record& word, Visit&& visit) {
    visit("bits", word.bits);
    visit("method", word.method);
    visit("number_form", word.number_form);
}
static_assert(lists_each_field<WordLength>);

[[nodiscard]] constexpr std::string_view name_of(WordMethod method) {
    return method == WordMethod::round ? "round" : "truncate";
}
[[nodiscard]] constexpr std::string_view name_of(NumberForm form) {
    return form == NumberForm::floating_point ? "floating point" : "fixed point";
}

// "12 bits, fixed point, round".
[[nodiscard]] inline std::string text_of(const WordLength& word) {
    return fmt::format("{} bits, {}, {}", word.bits, name_of(word.number_form), name_of(word.method));
}

inline constexpr Choice word_methods[] = {{"Round", WordMethod::round}, {"Truncate", WordMethod::truncate}};
inline constexpr Choice number_forms[] = {{"Floating point", NumberForm::floating_point},
                                          {"Fixed point", NumberForm::fixed_point}};

// The fields of a WordLength that is the member `Member` of a form's record.
template <auto Member>
inline constexpr std::array<Field, 3> word_fields = {{
    integer<Member, &WordLength::bits>("bits", "Number of bits", 0, 99),
    radio<Member, &WordLength::method>("method", "Method", word_methods),
    radio<Member, &WordLength::number_form>("number_form", "Number form", number_forms),
}};

}  // namespace kavrel
