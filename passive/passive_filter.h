// The filter of the passive Segment: its circuit, and what is known of the design that it came from.
#pragma once

#include <type_traits>

#include "approximation/design_background.h"
#include "circuit/circuit.h"

namespace kavrel {

struct PassiveFilter {
    Circuit circuit;
    bool designed = false;      // spec and transfer are those of the circuit's design
    FilterSpec spec;            // its request, with what was found for it; frequencies in Hz
    TransferFunction transfer;  // its poles and zeros
    DesignBackground background;
    float mod = 0.0F;  // 1 when the circuit is no longer the designed one: set by every edit
};

static_assert(std::is_trivially_copyable_v<PassiveFilter>);

}  // namespace kavrel
