// Unit elements and the stubs beside them: Kuroda's identities.
#pragma once

#include "circuit/circuit.h"
#include "shell/refusal.h"

namespace kavrel {

enum class KurodaKind {
    lowpass_equivalent,  // a shunt C becomes a series L, and back; the two-port is kept
    same_kind,           // a shunt L, or a series C, stays one; the impedances behind are scaled
};

// Exchanges a unit element and the stub next to it on either side.
[[nodiscard]] Refusal kurodaInterchange(Circuit& circuit, int k1, int k2, KurodaKind kind);

}  // namespace kavrel
