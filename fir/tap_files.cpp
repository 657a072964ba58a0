#include "fir/tap_files.h"

#include <fmt/format.h>

#include "shell/shown_text.h"

namespace kavrel {

Refusal c_table_refusal(const FirProgramInput& input) {
    return c_table_refusal(full_response(input.filter, input.function));
}

ProgramLines c_table(const FirProgramInput& input) {
    const std::string head = fmt::format("\n   {}: y[n] = h[0]*x[n] + h[1]*x[n-1] + ...\n\n", function_text(input));
    const std::string counts = fmt::format("NAME_taps = {}", input.shape().taps);
    return c_table({.title = input.title, .name = input.name, .head = head, .counts = counts, .extent = "NAME_taps"},
                   full_response(input.filter, input.function));
}

ProgramLines tap_text(const FirProgramInput& input) {
    ProgramLines lines = {"# taps of " + shown_text(input.title), "# " + function_text(input)};
    for (const double h : full_response(input.filter, input.function)) lines.push_back(fmt::format("{:23.16e}", h));
    return lines;
}

}  // namespace kavrel
