// Roots in x of the even and the odd part of a pseudo-polynomial, found from its factors: the coefficients of the parts
// give their degrees, nothing else.
#pragma once

#include "numeric/pseudo_polynomial.h"
#include "numeric/solve_verdict.h"

namespace kavrel {

struct EvenOddWorkspace {
    WidePseudoPolynomial p;  // the factors, c and d by |c|, ascending
    PseudoPolynomial rough;  // the same as doubles, for the approach to a root
    PartCoefficients coefficients;
    WideRootSet even;
    WideRootSet odd;
    Wide a{};
    Wide tol{};  // 10^(1 - precisionDigits)
};

static_assert(std::is_trivially_copyable_v<EvenOddWorkspace>);

// Roots and multipliers of Ev and Od, 0 <= a < 1, in the order they were found. A part whose leading coefficients
// vanish loses degree; one that vanishes altogether has count 0 and multiplier 0. When all factors are Hurwitz, the
// roots are taken as the real numbers that they are. With `reactance` a complex root is refused.
// Faults: degree_too_high above 50, part_no_convergence, root_off_axis; the sets are as before then.
SolveVerdict solveEvenOdd(const WidePseudoPolynomial& p, Wide a, bool reactance, WideRootSet& even, WideRootSet& odd,
                          EvenOddWorkspace& ws, const SolveOptions& options = {});

}  // namespace kavrel
