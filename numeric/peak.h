// The largest value of a function between two points, where it has one peak there.
#pragma once

#include <numbers>

namespace kavrel {

template <class Real>
struct Peak {
    Real at = 0;
    Real value = 0;
};

// Golden sections of [from, to]: each of the `steps` takes 38 % off the interval. With more than one peak, one of them.
template <class Real, class Function>
[[nodiscard]] Peak<Real> peak_between(Real from, Real to, int steps, const Function& f) {
    constexpr Real section = 2 - std::numbers::phi_v<Real>;
    Peak<Real> left{from + section * (to - from)}, right{to - section * (to - from)};
    left.value = f(left.at);
    right.value = f(right.at);
    for (int step = 1; step <= steps; ++step) {
        if (left.value > right.value) {
            to = right.at, right = left;
            left.at = from + section * (to - from);
            left.value = f(left.at);
        } else {
            from = left.at, left = right;
            right.at = to - section * (to - from);
            right.value = f(right.at);
        }
    }
    return left.value > right.value ? left : right;
}

}  // namespace kavrel
