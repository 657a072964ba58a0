// Three branches of one kind as a tee or as a pi.
#pragma once

#include "circuit/circuit.h"
#include "shell/refusal.h"

namespace kavrel {

// Of three branches, of which the middle one is resonant, the end whose element becomes one of the other kind.
enum class TeePiEnd { load, source };

// Whether k and its two successors are a tee or a pi of inductors, or of capacitors, with an lc in the middle.
[[nodiscard]] bool has_resonant_middle(const Circuit& circuit, int k);

// k and its two successors, all inductors or all capacitors, change from a pi to a tee or back, and keep the two-port;
// k becomes the number of the first one of them.
//
// With a resonant middle they stay what they are: an ideal transformer n is taken through both kinds of elements, such
// that the element at one end vanishes. An element of the other kind comes in its place, which is negative where all
// values were positive, and another one at the far end; the impedances behind are scaled by n^2 (tee) or 1/n^2 (pi).
[[nodiscard]] Refusal teePi(Circuit& circuit, int& k, TeePiEnd end);

}  // namespace kavrel
