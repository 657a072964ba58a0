// Complex numbers as a plain pair, so that a pair of cells of two parallel arrays is read and written without detours,
// and without the checks for infinities that the library's product makes in every factor. Quotient, root and magnitude
// are in guarded.h.
#pragma once

#include <cmath>
#include <limits>
#include <type_traits>

namespace kavrel {

// The type of all extractions; only their approach to a root runs in double. Their tolerances are for 19 digits.
using Wide = long double;
static_assert(std::numeric_limits<Wide>::digits == 64, "long double has to be the 80-bit type");

template <class Real>
struct Complex {
    Real re{};
    Real im{};

    constexpr Complex& operator+=(Complex z) { return *this = *this + z; }
    constexpr Complex& operator-=(Complex z) { return *this = *this - z; }
    constexpr Complex& operator*=(Complex z) { return *this = *this * z; }

    friend constexpr Complex operator+(Complex a, Complex b) { return {a.re + b.re, a.im + b.im}; }
    friend constexpr Complex operator-(Complex a, Complex b) { return {a.re - b.re, a.im - b.im}; }
    friend constexpr Complex operator-(Complex a) { return {-a.re, -a.im}; }
    friend constexpr Complex operator*(Complex a, Complex b) {
        return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
    }
    friend constexpr Complex operator*(Real k, Complex a) { return {k * a.re, k * a.im}; }
    friend bool operator==(Complex, Complex) = default;
};

static_assert(std::is_trivially_copyable_v<Complex<double>>);

template <class Real>
[[nodiscard]] constexpr Complex<Real> conjugate(Complex<Real> z) {
    return {z.re, -z.im};
}

// The two cheap magnitudes: both lie within sqrt(2) of the true one.
template <class Real>
[[nodiscard]] Real largest_part(Complex<Real> z) {
    const Real re = std::fabs(z.re);
    const Real im = std::fabs(z.im);
    return re < im ? im : re;
}
template <class Real>
[[nodiscard]] Real sum_of_parts(Complex<Real> z) {
    return std::fabs(z.re) + std::fabs(z.im);
}

}  // namespace kavrel
