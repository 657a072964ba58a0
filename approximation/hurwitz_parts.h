// Even and odd part of a Hurwitz polynomial, from its angle.
#pragma once

#include "numeric/pseudo_polynomial.h"

namespace kavrel {

// The sets that solveEvenOdd finds for Hurwitz factors, ascending in frequency. On s = jw the angle of e grows steadily
// from 0 to n pi/2: the even part vanishes where it is an odd multiple of pi/2, the odd part where it is an even one.
// So the zeros are real, simple and known to lie between each other; each is found by itself, to the last digits. A
// zero at the upper edge itself, x infinite, lowers the degree. False when the factors are not Hurwitz. Source:
// Hermite-Biehler theorem.
[[nodiscard]] bool partsOfHurwitz(const WidePseudoPolynomial& e, long double a, WideRootSet& even, WideRootSet& odd);

}  // namespace kavrel
