#include "segment/program_text.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <fmt/format.h>

#include "shell/shown_text.h"
#include "shell/whole_part.h"

namespace kavrel {

namespace {

void add_rows(ProgramLines& lines, std::string_view indent, std::span<const std::string> numbers, std::size_t a_line,
              std::string_view behind_last, std::string_view line_end);
std::string c_name(std::string_view name);
template <class Word>
std::vector<std::string> c_words(const std::vector<Word>& words);
template <class Word>
bool is_word(double value, int shift);
template <class Word>
Word word_of(double value, int shift);

}  // namespace

void add_text(ProgramLines& lines, std::string_view text) {
    text.remove_prefix(1);
    while (!text.empty()) {
        const auto end = text.find('\n');
        lines.emplace_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
}

std::string replaced(std::string text, std::string_view word, std::string_view by) {
    for (auto at = text.find(word); at != std::string::npos; at = text.find(word, at + by.size())) {
        text.replace(at, word.size(), by);
    }
    return text;
}

std::string decimal(double x) { return fmt::format("{:.16e}", x); }

std::string fortran_decimal(double x) { return replaced(decimal(x), "e", "D"); }

std::string c_comment(std::string_view title) {
    return replaced(replaced(shown_text(title), "*/", "* /"), "/*", "/ *");
}

void add_c_array(ProgramLines& lines, std::string_view indent, std::string_view declaration,
                 std::span<const std::string> numbers, std::size_t a_line) {
    lines.push_back(fmt::format("{}{} = {{", indent, declaration));
    add_rows(lines, fmt::format("{}    ", indent), numbers, a_line, ",", "");
    lines.push_back(fmt::format("{}}};", indent));
}

std::vector<std::string> c_decimals(std::span<const double> values) {
    std::vector<std::string> numbers;
    for (const double value : values) numbers.push_back(decimal(value));
    return numbers;
}

void add_fortran_array(ProgramLines& lines, std::string_view name, std::span<const double> values) {
    std::vector<std::string> numbers;
    for (const double value : values) numbers.push_back(fortran_decimal(value));
    lines.push_back(fmt::format("  double precision, parameter :: {}({}) = [ &", name, values.size()));
    add_rows(lines, "    ", numbers, 3, "", " &");
    lines.emplace_back("  ]");
}

std::string_view c_quantiser() {
    return R"(
static double trun(double v, int i)
{
    if (i >= 50 || i <= -50) return v;
    const double steps = (double)((int64_t)1 << (i < 0 ? -i : i));
    const double a = (v < 0 ? -v : v)*steps;
    if (!(a < 4503599627370496.0)) return v;  /* no bits are behind the last one */
    int64_t whole = (int64_t)a;
    if (i >= 0 && a - (double)whole >= 0.5) ++whole;
    return v < 0 ? -((double)whole/steps) : (double)whole/steps;
}
)";
}

std::string_view fortran_quantiser() {
    return R"(
contains
  double precision function trun(v, i)
    double precision, intent(in) :: v
    integer, intent(in) :: i
    integer, parameter :: long = selected_int_kind(18)
    double precision :: a
    integer(long) :: whole
    trun = v
    if (abs(i) >= 50) return
    a = scale(abs(v), abs(i))
    if (.not. a < 2d0**52) return  ! no bits are behind the last one
    whole = int(a, long)
    if (i >= 0 .and. a - dble(whole) >= 0.5d0) whole = whole + 1
    trun = sign(scale(dble(whole), -abs(i)), v)
  end function trun
)";
}

void add_integer_quantiser(WordMethod method, ProgramLines& lines) {
    const bool round = method == WordMethod::round;
    lines.push_back(fmt::format("/* p/2^shift, its magnitude {} */", round ? "rounded, halves up" : "truncated"));
    add_text(lines, R"(
static int64_t trun(int64_t p, int shift)
{
)");
    lines.emplace_back(round ? "    const int64_t half = shift > 0 ? (int64_t)1 << (shift - 1) : 0;"
                             : "    const int64_t half = 0;");
    add_text(lines, R"(
    return p < 0 ? -((-p + half) >> shift) : (p + half) >> shift;
}
)");
}

Refusal integer_refusal(const WordLength& word, std::span<const double> numbers) {
    constexpr int least_bits = 2, most_bits = 30;
    constexpr std::string_view no_fixed_word = "Filter is not truncated to a fixed word", field = "dialect";
    using Word = std::numeric_limits<std::int32_t>;
    if (!word.quantises() || word.number_form != NumberForm::fixed_point) return {no_fixed_word, field};
    if (word.bits < least_bits || word.bits > most_bits) return {"Word of the filter is not of 2 to 30 bits", field};
    for (const double number : numbers) {
        if (number != std::trunc(number)) return {no_fixed_word, field};
        if (number < Word::min() || number > Word::max()) return {"A coefficient does not fit into 32 bits", field};
    }
    return {};
}

std::vector<std::string> c_integers(std::span<const double> values, int bits) {
    std::vector<std::int32_t> words;
    for (const double value : values) words.push_back(whole_part<std::int32_t>(std::ldexp(value, bits)));
    return c_words(words);
}

FractionWords fraction_words(std::span<const double> values) {
    FractionWords words;
    const auto too_large = [&](double value) {
        return !is_word<std::int32_t>(value, words.shift) || !is_word<std::int16_t>(value, words.shift);
    };
    while (std::ranges::any_of(values, too_large)) ++words.shift;
    for (const double value : values) {
        words.q31.push_back(word_of<std::int32_t>(value, words.shift));
        words.q15.push_back(word_of<std::int16_t>(value, words.shift));
    }
    return words;
}

ProgramLines c_table(const CTable& table, std::span<const double> values) {
    const FractionWords words = fraction_words(values);
    std::vector<std::string> floats;
    for (const double value : values) floats.push_back(fmt::format("{:.8e}f", static_cast<float>(value)));
    ProgramLines lines;
    add_text(lines, table.head);
    add_text(lines, R"(
   Numbers of 32 and 16 bits are fractions, q/2^31 and q/2^15, that are to be multiplied by 2^NAME_shift. */

#ifndef NAME_H
#define NAME_H

#include <stdint.h>

)");
    lines.push_back(fmt::format("enum {{ {}, NAME_shift = {} }};", table.counts, words.shift));
    const auto add = [&](std::string_view type, std::string_view array, std::span<const std::string> numbers) {
        add_c_array(lines, "", fmt::format("static const {} NAME_{}[{}]", type, array, table.extent), numbers,
                    table.a_line);
    };
    add("double", "double", c_decimals(values));
    add("float", "float", floats);
    add("int32_t", "q31", c_words(words.q31));
    add("int16_t", "q15", c_words(words.q15));
    add_text(lines, R"(

#endif
)");
    for (std::string& line : lines) line = replaced(line, "NAME", c_name(table.name));
    lines.insert(lines.begin(), "/* " + c_comment(table.title));
    return lines;
}

Refusal c_table_refusal(std::span<const double> values) {
    const auto fits = [](double value) { return std::fabs(value) <= std::numeric_limits<float>::max(); };
    if (std::ranges::all_of(values, fits)) return {};
    return {"A coefficient does not fit into a float", "dialect"};
}

namespace {

// A file's name as names of C begin.
std::string c_name(std::string_view name) {
    const auto is_letter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    std::string text = name.empty() || !is_letter(name.front()) ? "filter_" : "";
    for (const char c : name) text += is_letter(c) || (c >= '0' && c <= '9') ? c : '_';
    return text;
}

template <class Word>
std::vector<std::string> c_words(const std::vector<Word>& words) {
    std::vector<std::string> numbers;
    for (const Word word : words) numbers.push_back(fmt::format("{}", word));
    return numbers;
}

void add_rows(ProgramLines& lines, std::string_view indent, std::span<const std::string> numbers, std::size_t a_line,
              std::string_view behind_last, std::string_view line_end) {
    for (std::size_t first = 0; first < numbers.size(); first += a_line) {
        const auto row = numbers.subspan(first, std::min(a_line, numbers.size() - first));
        const bool last = first + a_line >= numbers.size();
        lines.push_back(fmt::format("{}{}{}{}", indent, fmt::join(row, ", "), last ? behind_last : ",", line_end));
    }
}

template <class Word>
double steps_of(double value, int shift) {
    return std::round(std::ldexp(value, std::numeric_limits<Word>::digits - shift));
}

template <class Word>
bool is_word(double value, int shift) {
    using Limits = std::numeric_limits<Word>;
    return steps_of<Word>(value, shift) >= Limits::min() && steps_of<Word>(value, shift) <= Limits::max();
}

template <class Word>
Word word_of(double value, int shift) {
    return whole_part<Word>(steps_of<Word>(value, shift));
}

}  // namespace

}  // namespace kavrel
