// A form of a filter as a file of C99 with one function, void tim(double x, double *y, int n, int ibt): that of the
// Fortran programs (iir/fortran_program.h), with the same equations.
#pragma once

#include "iir/program_input.h"
#include "segment/program_text.h"

namespace kavrel {

[[nodiscard]] ProgramLines c_program(const ProgramInput& input);

// What the equations of a program in C go on with: its numbers, and how it writes what depends on them. A product p is
// brought to the word by trun(p, ibt).
struct CNumbers {
    std::string_view type;      // of states
    std::string_view front;     // the input of a cascade, trun(ck*x, ibt)
    std::string_view sum;       // of products, yy, brought to the word
    std::string_view half_sum;  // of the outputs of two chains, brought to the word
    std::string_view half_difference;
};

// The body of the function behind the coefficients: its counts, state and equations.
void add_c_equations(const ProgramInput& input, const std::vector<CoefficientTable>& tables, const CNumbers& numbers,
                     ProgramLines& lines);

}  // namespace kavrel
