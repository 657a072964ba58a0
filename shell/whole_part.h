// A floating number as a whole one: each such cast of the system is made here, since one of a number beyond the range
// of the whole ones, or of one that is no number, has no value in C++.
#pragma once

#include <concepts>
#include <limits>

namespace kavrel {

// v towards zero; beyond the range its end, and 0 for what is no number.
template <std::integral Whole = int, std::floating_point Real>
[[nodiscard]] constexpr Whole whole_part(Real v) {
    constexpr auto least = std::numeric_limits<Whole>::min(), most = std::numeric_limits<Whole>::max();
    if (v >= static_cast<Real>(most)) return most;
    if (v > static_cast<Real>(least)) return static_cast<Whole>(v);
    return v <= static_cast<Real>(least) ? least : Whole{0};
}

}  // namespace kavrel
