// Scaling of impedance and frequency.
#pragma once

#include "circuit/circuit.h"

namespace kavrel {

// Multiplies the impedances of all branches from `from` on, towards the source, by `impedance` and their frequencies by
// `frequency`: R and Z by impedance, L by impedance/frequency, C by 1/(impedance frequency). Stubs and lines of a
// microwave circuit have no frequency of their own: there it must be 1.
void scale(Circuit& circuit, double impedance, double frequency, int from = 1);

}  // namespace kavrel
