// What programs that are written for a filter are made of, whatever the filter: numbers, arrays and quantisers of C and
// of standard Fortran, and numbers as fractions of 32 and 16 bits.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "shell/refusal.h"
#include "shell/word_length.h"

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

// What a program says of its products: lines of a comment, of C its last ones.
inline constexpr std::string_view c_products = R"(
   Products are rounded to ibt bits behind the point, with ibt < 0 truncated to -ibt; with 50 and more they are as
   they are. */
)";
inline constexpr std::string_view fortran_products =
    "\n! Products are rounded to ibt bits behind the point, with ibt < 0 truncated to -ibt; "
    "with 50 and more they are as they are.\n";

// trun(v, i): v with |i| bits behind the point, rounded, halves up in magnitude; truncated with a negative i; unchanged
// from 50 bits on. It is `quantise` of a fixed word. In Fortran an internal function.
[[nodiscard]] std::string_view c_quantiser();
[[nodiscard]] std::string_view fortran_quantiser();

// static int64_t trun(int64_t p, int shift): p/2^shift, the magnitude brought to a whole number by the method.
void add_integer_quantiser(WordMethod method, ProgramLines& lines);

// Why numbers, which are those of the word times 2^bits, are no whole ones of 32 bits: the word is not a fixed one of 2
// to 30 bits, or one of them does not fit.
[[nodiscard]] Refusal integer_refusal(const WordLength& word, std::span<const double> numbers);

// Values times 2^bits, which are whole numbers of 32 bits, as literals of C.
[[nodiscard]] std::vector<std::string> c_integers(std::span<const double> values, int bits);

// Numbers as words of 32 and 16 bits, the value of which is a fraction times 2^shift; `shift` is the least, from 0 on,
// with which all of them are words.
struct FractionWords {
    int shift = 0;
    std::vector<std::int32_t> q31;
    std::vector<std::int16_t> q15;
};
[[nodiscard]] FractionWords fraction_words(std::span<const double> values);

// A header of C with values as arrays NAME_double, NAME_float, NAME_q31 and NAME_q15, so many a line; NAME is that of
// the file, as names of C are.
struct CTable {
    std::string_view title;
    std::string_view name;    // of the file
    std::string_view head;    // what the values are, lines of a comment
    std::string_view counts;  // enumerators: "NAME_taps = 5"
    std::string_view extent;  // of each array, in these
    std::size_t a_line = 3;
};
[[nodiscard]] ProgramLines c_table(const CTable& table, std::span<const double> values);
[[nodiscard]] Refusal c_table_refusal(std::span<const double> values);

}  // namespace kavrel
