// Sums over long rows run in two lanes where the hardware has them, in every build the same.
#pragma once

#include <cstddef>

namespace kavrel {

template <class Real>
struct LanesOf {
    using Type = Real;
    static constexpr std::size_t count = 1;
    static Real sum(Type a) { return a; }
    static Type load(const Real* at) { return *at; }
};
template <>
struct LanesOf<double> {
    using Type = double __attribute__((vector_size(16)));
    static constexpr std::size_t count = 2;
    static double sum(Type a) { return a[0] + a[1]; }
    static Type load(const double* at) { return Type{at[0], at[1]}; }
};

}  // namespace kavrel
