// Where a form of a digital filter has its poles and zeros, by the coefficients of the form itself.
#pragma once

#include "iir/iir_filter.h"
#include "iir/iir_request.h"

namespace kavrel {

// Whether all poles of a form are inside the unit circle: those of factors 1 + c1 z^-1 + c2 z^-2 where |c2| < 1 and
// |c1| < 1 + c2; those of a lattice where all multipliers are below 1, and those of a polynomial where its lattice has
// such multipliers, which are made in long numbers (the test of Schur and Cohn).
[[nodiscard]] bool is_stable(const IirFilter& filter, Implementation form);

// Poles and zeros about which the response of a form has its extremes: of its factors; where it has none, those of the
// filter's own roots. Quickly made.
[[nodiscard]] DigitalRoots roots_near_form(const IirFilter& filter, Implementation form);

// The same, but with all poles, and the zeros of the direct form, solved from the coefficients. Where that does not
// settle, a direct form or a lattice has no poles in the list.
[[nodiscard]] DigitalRoots roots_of_form(const IirFilter& filter, Implementation form);

}  // namespace kavrel
