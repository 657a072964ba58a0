#include "numeric/scaled_value.h"

#include <algorithm>
#include <cmath>

namespace kavrel {

namespace {

// A running product is brought back towards 1 when it leaves this range; a factor may then still be 1e100 or 1e-100.
constexpr double rescale_above = 0x1p300;
constexpr double rescale_below = 0x1p-300;
constexpr int rescale_exponent = 300;

template <class Real>
int correction(Real size);

}  // namespace

template <class Real>
void ScaledPair<Real>::keep_in_range() {
    const int e = correction(std::max(largest_part(value), largest_part(derivative)));
    if (e == 0) return;
    const Real scale = std::ldexp(Real{1}, -e);
    value = scale * value;
    derivative = scale * derivative;
    exponent += e;
}

template <class Real>
ScaledValue<Real> scaledProduct(const RootSetOf<Real>& set, Complex<Real> x) {
    ScaledValue<Real> p{{set.multiplier, 0}, 0};
    for (int i = 1; i <= set.count; ++i) {
        p.value *= x - set.root(i);
        if (const int e = correction(largest_part(p.value)); e != 0) {
            p.value = std::ldexp(Real{1}, -e) * p.value;
            p.exponent += e;
        }
    }
    return p;
}

template <class Real>
ScaledPair<Real> scaledProductAndDerivative(const RootSetOf<Real>& set, Complex<Real> x) {
    ScaledPair<Real> p{{set.multiplier, 0}, {}, 0};
    for (int i = 1; i <= set.count; ++i) p.multiply(x - set.root(i), {1, 0});
    return p;
}

template <class Real>
Complex<Real> shifted(Complex<Real> value, int shift) {
    if (shift == 0) return value;
    const auto limit = static_cast<Real>(0x1p900);
    const auto saturated = [=](Real part) { return std::clamp(std::ldexp(part, shift), -limit, limit); };
    return {saturated(value.re), saturated(value.im)};
}

template <class Real>
int binaryMagnitude(Complex<Real> z, int exponent) {
    const Real size = largest_part(z);
    return size > 0 ? std::ilogb(size) + exponent : -100000;
}

namespace {

// The exponent that brings a number of this size back into range.
template <class Real>
int correction(Real size) {
    if (size > static_cast<Real>(rescale_above)) return rescale_exponent;
    if (size < static_cast<Real>(rescale_below) && size > 0) return -rescale_exponent;
    return 0;
}

}  // namespace

#define KAVREL_SCALED_VALUE(Real)                                                                \
    template struct ScaledPair<Real>;                                                            \
    template ScaledValue<Real> scaledProduct(const RootSetOf<Real>&, Complex<Real>);             \
    template ScaledPair<Real> scaledProductAndDerivative(const RootSetOf<Real>&, Complex<Real>); \
    template Complex<Real> shifted(Complex<Real>, int);                                          \
    template int binaryMagnitude(Complex<Real>, int);
KAVREL_SCALED_VALUE(double)
KAVREL_SCALED_VALUE(long double)
#undef KAVREL_SCALED_VALUE

}  // namespace kavrel
