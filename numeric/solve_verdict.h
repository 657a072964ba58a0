// What a root extraction answers, and the report lines that belong to each answer. The solvers write nothing: a caller
// with a reporter looks up the line and prints it.
#pragma once

#include <array>
#include <string_view>

namespace kavrel {

enum class SolveFault {
    none,
    degree_too_high,       // a sum or a pseudo-polynomial of degree above 50
    no_convergence,        // a root of a sum
    real_degree_too_high,  // a real sum of degree above 25; number: the degree
    real_no_convergence,   // a root of a real sum; number: which one
    part_no_convergence,   // a root of an even or odd part
    root_off_axis,         // a complex root of a part that has to be a reactance
    created_root_missing,  // a root put in on purpose did not come out
};

struct [[nodiscard]] SolveVerdict {
    SolveFault fault = SolveFault::none;
    int number = 0;  // the value in the line, where it has one

    [[nodiscard]] constexpr bool good() const { return fault == SolveFault::none; }
    [[nodiscard]] constexpr int status() const { return good() ? 0 : -1; }
};

// The lines of a fault: `first`, then `number` and `after_number` where `has_number` is set; `second` when not empty.
struct SolveMessage {
    SolveFault fault;
    std::string_view first;
    bool has_number = false;
    std::string_view after_number = {};
    std::string_view second = {};
};

inline constexpr std::array<SolveMessage, 7> solve_messages = {{
    {.fault = SolveFault::degree_too_high, .first = " **** Polynomial is of too high degree ****"},
    {.fault = SolveFault::no_convergence, .first = " **** No convergence ****"},
    {.fault = SolveFault::real_degree_too_high,
     .first = " **** Polynomial is of degree ",
     .has_number = true,
     .after_number = " which is too high ****"},
    {.fault = SolveFault::real_no_convergence,
     .first = " **** No convergence of root no.",
     .has_number = true,
     .after_number = " ****"},
    {.fault = SolveFault::part_no_convergence,
     .first = " Pseudo-polynomial root extraction did not converge",
     .second = " **** design discontinued ****"},
    {.fault = SolveFault::root_off_axis,
     .first = " **** Root is not on imaginary axis, function will not",
     .second = " be a reactance"},
    {.fault = SolveFault::created_root_missing, .first = " **** Created roots weren't found ****"},
}};

// Head of the line that announces a root to be put in; its value follows.
inline constexpr std::string_view root_to_be_created = " root to be created = ";

// The message of a fault other than none.
[[nodiscard]] constexpr const SolveMessage& messageOf(SolveFault fault) {
    for (const SolveMessage& message : solve_messages) {
        if (message.fault == fault) return message;
    }
    return solve_messages.front();
}

// Accuracy asked of a solver. `precisionDigits` belongs to the data: with tol = 10^(1 - precisionDigits), sums that
// vanish within a few tol of their terms are taken as 0. The iteration itself goes as far as the workspace's type
// carries it.
struct SolveOptions {
    int precisionDigits = 16;
    bool symmetrize = false;  // average clusters of near-equal pairs at the end
};

}  // namespace kavrel
