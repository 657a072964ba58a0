// Roots of a real polynomial in long numbers, for coefficients of very different magnitudes.
#pragma once

#include <vector>

#include "numeric/long_real.h"

namespace kavrel {

// Real roots, ascending, then of each conjugate pair the member with the positive imaginary part, by magnitude. Of
// coefficients in descending powers, the first and the last not 0. False when the iteration does not settle.
// Source: O. Aberth, "Iteration methods for finding all zeros of a polynomial simultaneously", Math. Comp. 27 (1973);
// it starts on the circles that the convex hull of the magnitudes gives (D. A. Bini, Numer. Algorithms 13, 1996).
[[nodiscard]] bool polynomial_roots(const std::vector<LongReal>& coefficients, std::vector<Complex<LongReal>>& roots);

// Where a search for the roots of a polynomial may start: for each edge of the upper convex hull of (i, log
// |coefficient of z^i|) as many points as it is wide, on the circle of its slope, none of them on the real axis. `logs`
// has -infinity for a coefficient of 0, which the first and the last are not. Source: as above.
[[nodiscard]] std::vector<Complex<Wide>> root_starts(const std::vector<double>& logs);

}  // namespace kavrel
