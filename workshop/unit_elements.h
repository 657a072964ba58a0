// Unit elements and the stubs beside them: Kuroda's identities.
#pragma once

#include <optional>

#include "circuit/circuit.h"
#include "shell/refusal.h"

namespace kavrel {

enum class KurodaKind {
    lowpass_equivalent,  // a shunt C becomes a series L, and back; the two-port is kept
    same_kind,           // a shunt L, or a series C, stays one; the impedances behind are scaled
};

// The kind that the stub asks for; none where the two are no unit element and stub next to each other.
[[nodiscard]] std::optional<KurodaKind> kuroda_kind(const Circuit& circuit, int k1, int k2);

// Exchanges a unit element and the stub next to it on either side.
[[nodiscard]] Refusal kurodaInterchange(Circuit& circuit, int k1, int k2, KurodaKind kind);

}  // namespace kavrel
