// Two resonances that change places across an element.
#pragma once

#include <string_view>

#include "circuit/circuit.h"
#include "shell/refusal.h"

namespace kavrel {

inline constexpr std::string_view nothing_to_exchange = "Incorrect branches selected";

// Of two resonant branches lc, both in series or both across the rails, with one inductor or capacitor between them,
// exchanges the resonances: the element becomes three, one on either side of both, of which one is negative, and the
// two-port is kept.
[[nodiscard]] Refusal exchangeResonant(Circuit& circuit, int k1, int k2);

}  // namespace kavrel
