// Values that parts are made with.
#pragma once

#include <string_view>

#include "circuit/circuit.h"
#include "shell/refusal.h"

namespace kavrel {

// Tolerance of the parts, and with it the series of values: E192, E96, E24, E12.
enum class PercentClass : int { half_percent = 1, one_percent = 2, two_to_five = 3, ten = 4 };

inline constexpr std::string_view no_preferred_values = "Microwave filter, no preferred values";
inline constexpr std::string_view already_preferred = "Values are already 'preferred'";

// The value of the series that is nearest: a value halfway between two becomes the smaller one. Its sign is kept; a
// value that is not within 20 decades of 10 to 100 is answered as it is.
[[nodiscard]] double preferred_value(double value, PercentClass percent_class);

// Rounds all values of a lumped circuit, but those of coupled quadruplets, and marks it with the series. Values that
// are in the series of the mark already are not rounded to the same series again, or to a coarser one.
[[nodiscard]] Refusal preferred(Circuit& circuit, PercentClass percent_class);

}  // namespace kavrel
