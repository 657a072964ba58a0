// Gauss-Legendre quadrature: the sum of weight(i) f(at(i)) is the integral of f over [-1, 1], exact for polynomials up
// to degree 2 N - 1.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace kavrel {

template <std::size_t N>
struct GaussRule {
    std::array<double, N> at;  // ascending
    std::array<double, N> weight;
};

// The places are the roots of the Legendre polynomial P_N, found by Newton's method from
//     (n + 1) P_(n+1) = (2 n + 1) x P_n - n P_(n-1),   (1 - x^2) P_N' = N (P_(N-1) - x P_N),
// the weights 2/((1 - x^2) P_N'^2).
template <std::size_t N>
[[nodiscard]] GaussRule<N> gauss_rule() {
    constexpr int newton_steps = 6;  // from 1e-3 to all digits takes three
    constexpr double degree = N;
    GaussRule<N> rule;
    for (std::size_t i = 0; i < N; ++i) {
        double x = -std::cos(std::numbers::pi * (static_cast<double>(i) + 0.75) / (degree + 0.5)), slope = 1;
        for (int step = 0; step < newton_steps; ++step) {
            double p = x, before = 1;
            for (double n = 1; n < degree; ++n) {
                const double next = ((2 * n + 1) * x * p - n * before) / (n + 1);
                before = p, p = next;
            }
            slope = degree * (before - x * p) / (1 - x * x);
            x -= p / slope;
        }
        rule.at[i] = x;
        rule.weight[i] = 2 / ((1 - x * x) * slope * slope);
    }
    return rule;
}

}  // namespace kavrel
