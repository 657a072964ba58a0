#include "iir/coefficient_files.h"

#include <fmt/format.h>

#include "shell/shown_text.h"

namespace kavrel {

namespace {

constexpr std::size_t a_section = 5;  // numbers
std::vector<double> five_a_section(const CascadeForm& cascade);

}  // namespace

Refusal c_table_refusal(const ProgramInput& input, Watcher&) {
    return c_table_refusal(five_a_section(input.filter.cascade));
}

ProgramLines c_table(const ProgramInput& input) {
    const std::vector<double> values = five_a_section(input.filter.cascade);
    const std::string counts = fmt::format("NAME_sections = {}", values.size() / a_section);
    return c_table({.title = input.title,
                    .name = input.name,
                    .head = R"(
   cascade form, five numbers a section: b0, b1, b2, -a1, -a2

       y[n] = b0*x[n] + b1*x[n-1] + b2*x[n-2] + (-a1)*y[n-1] + (-a2)*y[n-2]

)",
                    .counts = counts,
                    .extent = "5*NAME_sections",
                    .a_line = a_section},
                   values);
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

}  // namespace

}  // namespace kavrel
