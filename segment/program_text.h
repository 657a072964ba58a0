// What programs that are written for a filter are made of, whatever the filter: numbers, arrays and quantisers of C and
// of standard Fortran, and numbers as fractions of 32 and 16 bits.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kavrel {

using ProgramLines = std::vector<std::string>;

// The lines of a text that begins with a line end, as a raw string does.
void add_text(ProgramLines& lines, std::string_view text);

// A copy with each occurrence of a word replaced.
[[nodiscard]] std::string replaced(std::string text, std::string_view word, std::string_view by);

// A number in 17 digits, from which it is read back to the last bit: 1.2345678901234567e-01, of Fortran with a D.
[[nodiscard]] std::string decimal(double x);
[[nodiscard]] std::string fortran_decimal(double x);

// A title as it may be in a comment of C: it neither ends nor begins one.
[[nodiscard]] std::string c_comment(std::string_view title);

// "static const double sc[] = {", the numbers, so many a line, "};". Numbers are literals of the type.
void add_c_array(ProgramLines& lines, std::string_view indent, std::string_view declaration,
                 std::span<const std::string> numbers, std::size_t a_line = 3);
[[nodiscard]] std::vector<std::string> c_decimals(std::span<const double> values);

// "double precision, parameter :: sc(7) = [ &", the numbers, three a line, "]".
void add_fortran_array(ProgramLines& lines, std::string_view name, std::span<const double> values);

// trun(v, i): v with |i| bits behind the point, rounded, halves up in magnitude; truncated with a negative i; unchanged
// from 50 bits on. It is `quantise` of a fixed word. In Fortran an internal function.
[[nodiscard]] std::string_view c_quantiser();
[[nodiscard]] std::string_view fortran_quantiser();

// Numbers as words of 32 and 16 bits, the value of which is a fraction times 2^shift; `shift` is the least, from 0 on,
// with which all of them are words.
struct FractionWords {
    int shift = 0;
    std::vector<std::int32_t> q31;
    std::vector<std::int16_t> q15;
};
[[nodiscard]] FractionWords fraction_words(std::span<const double> values);

}  // namespace kavrel
