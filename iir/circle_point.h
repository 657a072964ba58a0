// A point of the unit circle, and a factor of second order there.
#pragma once

#include <cmath>
#include <numbers>

#include "numeric/complex.h"

namespace kavrel {

// e^j theta. The cosine is near + off, `near` the closer one of 1 and -1: `off` has all its digits.
template <class Real>
struct CirclePoint {
    Real near, off, sine, half_cosine, half_sine;

    [[nodiscard]] Real cosine() const { return near + off; }
    [[nodiscard]] Complex<Real> w() const { return {cosine(), -sine}; }
    [[nodiscard]] Complex<Real> z() const { return {cosine(), sine}; }
};

// The point at theta = 2 pi `turns`.
template <class Real>
[[nodiscard]] CirclePoint<Real> circle_point(Real turns) {
    constexpr Real pi = std::numbers::pi_v<Real>;
    const Real x = turns - std::round(turns);  // theta = 2 pi x, |x| <= 1/2
    if (std::fabs(x) <= Real{0.25}) {
        const Real sine = std::sin(pi * x), cosine = std::cos(pi * x);
        return {1, -2 * sine * sine, 2 * sine * cosine, cosine, sine};
    }
    const Real y = Real{0.5} - std::fabs(x), sign = std::copysign(Real{1}, x);
    const Real sine = std::sin(pi * y), cosine = std::cos(pi * y);
    return {-1, 2 * sine * sine, 2 * sign * sine * cosine, sine, sign * cosine};
}

// c0 + c1 w + c2 w^2 at the closer one of 1 and -1: exact where roots crowd there.
template <class Real>
[[nodiscard]] Real beside_point(double c0, double c1, double c2, const CirclePoint<Real>& at) {
    return (at.near * c0 + c1) + at.near * c2;
}

// c0 z + c1 + c2 w, of the magnitude of the factor c0 + c1 w + c2 w^2.
template <class Real>
[[nodiscard]] Complex<Real> factor_at(double c0, double c1, double c2, const CirclePoint<Real>& at) {
    return {beside_point(c0, c1, c2, at) + (c0 + c2) * at.off, (c0 - c2) * at.sine};
}

}  // namespace kavrel
