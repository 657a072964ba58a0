#include "iir/coefficient_files.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <fmt/format.h>

#include "shell/shown_text.h"

namespace kavrel {

namespace {

constexpr std::size_t a_section = 5;  // numbers
std::vector<double> five_a_section(const CascadeForm& cascade);
std::string c_name(std::string_view name);
template <class Word>
std::vector<std::string> whole_numbers(const std::vector<Word>& words);

}  // namespace

Refusal c_table_refusal(const ProgramInput& input, Watcher&) {
    const auto fits = [](double value) { return std::fabs(value) <= std::numeric_limits<float>::max(); };
    if (std::ranges::all_of(five_a_section(input.filter.cascade), fits)) return {};
    return {"A coefficient does not fit into a float", "dialect"};
}

ProgramLines c_table(const ProgramInput& input) {
    const std::vector<double> values = five_a_section(input.filter.cascade);
    const FractionWords words = fraction_words(values);
    const std::string name = c_name(input.name);
    std::vector<std::string> floats;
    for (const double value : values) floats.push_back(fmt::format("{:.8e}f", static_cast<float>(value)));
    ProgramLines lines;
    add_text(lines, R"(
   cascade form, five numbers a section: b0, b1, b2, -a1, -a2

       y[n] = b0*x[n] + b1*x[n-1] + b2*x[n-2] + (-a1)*y[n-1] + (-a2)*y[n-2]

   Numbers of 32 and 16 bits are fractions, q/2^31 and q/2^15, that are to be multiplied by 2^NAME_shift. */

#ifndef NAME_H
#define NAME_H

#include <stdint.h>

)");
    lines.push_back(
        fmt::format("enum {{ NAME_sections = {}, NAME_shift = {} }};", values.size() / a_section, words.shift));
    add_c_array(lines, "", "static const double NAME_double[5*NAME_sections]", c_decimals(values), a_section);
    add_c_array(lines, "", "static const float NAME_float[5*NAME_sections]", floats, a_section);
    add_c_array(lines, "", "static const int32_t NAME_q31[5*NAME_sections]", whole_numbers(words.q31), a_section);
    add_c_array(lines, "", "static const int16_t NAME_q15[5*NAME_sections]", whole_numbers(words.q15), a_section);
    add_text(lines, R"(

#endif
)");
    for (std::string& line : lines) line = replaced(line, "NAME", name);
    lines.insert(lines.begin(), "/* " + c_comment(input.title));
    return lines;
}

ProgramLines sos_text(const ProgramInput& input) {
    ProgramLines lines = {"# second-order sections of " + shown_text(input.title), "# b0 b1 b2 1 a1 a2"};
    for (const SectionRow& row : section_rows(input.filter.cascade)) {
        lines.push_back(
            fmt::format("{:23.16e} {:23.16e} {:23.16e} 1 {:23.16e} {:23.16e}", row.b0, row.b1, row.b2, row.a1, row.a2));
    }
    return lines;
}

namespace {

// Taken from 0, a 0 has no sign.
std::vector<double> five_a_section(const CascadeForm& cascade) {
    std::vector<double> values;
    for (const SectionRow& row : section_rows(cascade)) {
        for (const double value : {row.b0, row.b1, row.b2, 0 - row.a1, 0 - row.a2}) values.push_back(value);
    }
    return values;
}

// A file's name as names of C begin.
std::string c_name(std::string_view name) {
    const auto is_letter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    std::string text = name.empty() || !is_letter(name.front()) ? "filter_" : "";
    for (const char c : name) text += is_letter(c) || (c >= '0' && c <= '9') ? c : '_';
    return text;
}

template <class Word>
std::vector<std::string> whole_numbers(const std::vector<Word>& words) {
    std::vector<std::string> numbers;
    for (const Word word : words) numbers.push_back(fmt::format("{}", word));
    return numbers;
}

}  // namespace

}  // namespace kavrel
