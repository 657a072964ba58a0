// Roots of a sum of two products, A(x) + B(x) = 0, both known by their roots. A characteristic polynomial of high
// degree has lost the accuracy of its roots once it is multiplied out; so nothing is. Coefficients serve for one thing:
// to see how many leading and trailing terms of the sum vanish.
//
// All arithmetic is that of long double; an approach to a root alone runs in double.
#pragma once

#include "numeric/root_set.h"
#include "numeric/scaled_value.h"
#include "numeric/solve_verdict.h"

namespace kavrel {

// What one extraction works on; between calls it holds nothing of use.
struct SumWorkspace {
    WideRootSet A;       // first product less common roots, roots divided by 16^scalePower
    WideRootSet B;       // second product, likewise
    WideRootSet R;       // roots found of A + B; multiplier: leading coefficient kR of the sum
    WideRootSet common;  // roots that both products share
    Polynomial coefA;    // coefficients of A and B, before rescaling
    Polynomial coefB;
    Table<Wide, max_coefficients> boundA;  // [i] the same from the magnitudes of the roots: above |coefA(i)|
    Table<Wide, max_coefficients> boundB;
    RootSet roughA;  // A and B as doubles, for the approach to a root
    RootSet roughB;
    int degree = 0;      // of A + B
    int scalePower = 0;  // power of 16 that all roots are divided by
    int exponentA = 0;   // powers of two by which rescaling multiplied the values of A and B
    int exponentB = 0;
    int startIndex = 1;  // of the next pair of roots to start from
    Wide tol = 0;        // 10^(1 - precisionDigits)
};

static_assert(std::is_trivially_copyable_v<SumWorkspace>);

// Roots of A + B; a negative multiplier of B gives those of A - B. R holds them by magnitude, ascending, with the
// leading coefficient of the sum as multiplier; R may be one of A and B. Leading terms that cancel lower the degree,
// down to the set of count 0; of an A + B that vanishes altogether the multiplier is 0 as well. A multiplier 0 leaves
// the other product alone.
// Faults: degree_too_high above 50, no_convergence; R is as before then.
// Source: Muller's iteration on the deflated value (root_hunt.h), Newton's correction for the polish.
SolveVerdict solveSum(const WideRootSet& A, const WideRootSet& B, WideRootSet& R, SumWorkspace& ws,
                      const SolveOptions& options = {});

}  // namespace kavrel
