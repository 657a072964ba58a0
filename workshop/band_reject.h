// The band-reject filter of a low-pass.
#pragma once

#include <string_view>

#include "circuit/circuit.h"
#include "shell/refusal.h"

namespace kavrel {

// Replaces p of a low-pass by kappa s/(s^2 + w0^2), so that its normalisation frequency comes to both edges fa < fb, in
// Hz: what it had there the filter has at them, what it had at infinity between them. In a microwave circuit p and s
// are tangents, the edges below the quarter wave. A resonance of the low-pass becomes two. The edges, the normalisation
// frequency, which is that of w0, and the natural modes are those of the new filter.
[[nodiscard]] Refusal bandReject(Circuit& circuit, double fa, double fb);

}  // namespace kavrel
