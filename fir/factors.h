// A response as factors of second order, and back.
//
//     h(0) + h(1) z^-1 + ... + h(n) z^-n = multiplier z^-delay  product of (1 + a z^-1 + b z^-2)
//
// A pair of complex zeros is a factor, a zero on the unit circle one with b = 1; real zeros go two by two, those inside
// the circle together and those outside, and one that is left over is a factor of first order, b = 0.
#pragma once

#include <span>
#include <vector>

#include "fir/fir_filter.h"

namespace kavrel {

// 1 + linear z^-1 + quadratic z^-2.
struct QuadraticRow {
    double linear = 0;
    double quadratic = 0;
};

// Zeros of the factor: 2, 1 where it has no quadratic term, or 0 where it is 1 and no factor at all.
[[nodiscard]] constexpr int zeros_of(QuadraticRow row) { return row.quadratic != 0 ? 2 : row.linear != 0 ? 1 : 0; }

// Rows as factors, at most fir_factor_limit, with serial numbers from 1 in their order.
[[nodiscard]] FirFactors factors_of(std::span<const QuadraticRow> rows);

// The taps of all factors with multiplier, delay and trailing zeros. Not finite where they are beyond doubles.
[[nodiscard]] std::vector<double> product_of(const FirFactors& factors);

inline constexpr double factor_circle = 1e-9;  // zeros this near to the unit circle are on it

// Takes each zero inside the unit circle, or outside of it, to the other side, z to 1/z*: 1 + a z^-1 + b z^-2 becomes
// 1 + (a/b) z^-1 + (1/b) z^-2 and the multiplier b times as large, 1 + a z^-1 becomes 1 + z^-1/a; of two real zeros on
// different sides only the one. |H| on the circle stays; zeros on the circle do. How many factors have changed.
enum class CircleSide { inside, outside };
int reflect_zeros(FirFactors& factors, CircleSide from);

}  // namespace kavrel
