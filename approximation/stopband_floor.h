// The least loss in the stopbands, wherever it lies between the zeros of transmission.
#pragma once

#include "approximation/x_plane.h"

namespace kavrel {

struct StopbandFloor {
    XPlane::Real lower = 0;  // dB over 0 <= w <= lower_stop; 0 without a lower stopband
    XPlane::Real upper = 0;  // dB over w >= upper_stop
};

// From QS and FS and the stop edges; between two neighbouring real zeros F/Q has one minimum, found by golden sections.
[[nodiscard]] StopbandFloor stopbandFloor(const XPlane& xp);

// From QS and ES, whose level is that of the loss.
[[nodiscard]] StopbandFloor stopbandFloorOfE(const XPlane& xp);

}  // namespace kavrel
