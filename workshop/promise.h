// What an edit of a circuit promises, and whether it has kept it.
#pragma once

#include "circuit/circuit.h"

namespace kavrel {

enum class Promise {
    nothing,
    loss,            // between the terminations, as those of the dual
    level,           // of the two-port up to a level: behind a branch all impedances are scaled, the source's, too
    whole_two_port,  // of the two-port itself
};

// Compares the losses of two circuits without dissipation, between the terminations that each has, at some 40
// frequencies in the pass band and beside it. The largest difference may be 1e-9 of the largest loss; where a level was
// changed and there is one termination alone, the same difference everywhere counts as none. Frequencies on a pole of a
// branch, or above 200 dB, say nothing.
[[nodiscard]] bool keeps_promise(const Circuit& before, const Circuit& after, Promise promise);

}  // namespace kavrel
