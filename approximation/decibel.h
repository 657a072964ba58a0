// Losses in dB and the squared characteristic functions F/Q that give them: loss = 10 log10(1 + F/Q).
#pragma once

#include <cmath>
#include <numbers>

namespace kavrel {

// Both keep the digits of small losses.
[[nodiscard]] inline long double loss_of(long double squared) {
    return 10 * std::log1p(squared) / std::numbers::ln10_v<long double>;
}
[[nodiscard]] inline long double squared_of(double loss) {
    return std::expm1(static_cast<long double>(loss) * std::numbers::ln10_v<long double> / 10);
}

}  // namespace kavrel
