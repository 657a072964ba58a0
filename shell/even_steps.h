// Counting the even steps of a range.
#pragma once

#include <cmath>

#include "shell/whole_part.h"

namespace kavrel {

// How many steps of a length fit between two ends, a last one that is short by less than a millionth of it included; -1
// when the length is not above 0, the ends are not in order, or the steps are too many to be counted.
[[nodiscard]] inline int steps_of(double from, double to, double length) {
    constexpr double allowance = 1e-6;
    constexpr double most = 1e6;
    const double steps = std::floor((to - from) / length + allowance);
    return length > 0 && to >= from && steps < most ? whole_part(steps) : -1;
}

}  // namespace kavrel
