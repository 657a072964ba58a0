// Choice of the immittance that an extraction starts from.
//
// A lossless two-port has two ports, and each port two immittances, one for the far end open and one for it short.
// With e + f and e - f split into even and odd parts they are
//
//   port A: es/od and, dually taken, ed/os;    port B: es/os and, dually taken, ed/od.
//
// When es/od of port A is an impedance, es/os of port B is one for odd q and an admittance for even q (S22 = -q/q*
// f*/e). Turning all forms gives the dual network. Which port is called the input is free: f* for f exchanges them.
//
// An immittance of the full degree contains every element. The other one, and both of a port whose last branch it
// cannot see, has a root 1 or a in its numerator or denominator that makes it simpler.
#pragma once

#include "numeric/complex.h"
#include "synthesis/ladder_problem.h"

namespace kavrel {

enum class ChoiceFault { none, not_realizable, not_found };
inline constexpr std::string_view not_realizable_text = " **** Passive realization is not possible ****";
inline constexpr std::string_view immittance_not_found_text = " **** An appropriate immittance was not found ****";

// The selection for one end of the network, both ends belonging to the same network. Its form is the one in which the
// pole at infinity (or at zero, when there is none at infinity) is removed first as a shunt branch at the input; `dual`
// turns it. Where no port shows all branches (a parametric band-pass of even degree: two reactances of one kind follow
// each other at its far end), an immittance that hides one of them is taken, of two such `other` takes the second.
// not_realizable: no zero of transmission at 0, infinity or of a unit element. not_found: all immittances hide more.
[[nodiscard]] ChoiceFault chooseImmittance(const LadderProblem& problem, bool output_side, bool dual,
                                           Selection& selection, bool other = false);

// Whether the immittance of a selection does not see all branches.
[[nodiscard]] bool hides_branch(const LadderProblem& problem, const Selection& selection);

// Input immittance of the terminated network at s = j w, w > 0, at the end of the selection, in units of its own
// resistance. In the variable of the approximation.
[[nodiscard]] Complex<long double> input_impedance(const LadderProblem& problem, const Selection& selection,
                                                   long double w);

}  // namespace kavrel
