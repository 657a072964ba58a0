// The numerator of the digital filter whose impulse response is that of an analog one, sampled.
#pragma once

#include "approximation/digital_function.h"
#include "approximation/filter_spec.h"

namespace kavrel {

// Zeros and multiplier of c + T' sum r/(1 - e^(p T') z^-1), r the residues of the prototype, c its value at infinity; s
// in units of the edge, T' the angle of the edge. Equal poles are pushed apart by 1e-30. A common factor z^-1 is left
// out: it is there where h(0) = 0, two or more poles beyond the zeros. False when the zeros were not found.
[[nodiscard]] bool impulseInvariantNumerator(const HalfRoots& zeros, const HalfRoots& poles, double level,
                                             Wide edge_angle, HalfRoots& digital_zeros, Wide& multiplier);

}  // namespace kavrel
