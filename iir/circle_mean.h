// Means over the unit circle of |H|^2, for products H of factors of second order and of their inverses.
//
// By Parseval's theorem such a mean is the sum of the squares of H's impulse response. What is summed is nowhere
// negative, so no digit is lost however narrow a filter is. (The recursion of Astrom and Jury on multiplied-out
// polynomials has none left for an elliptic band-pass of degree 24 and 1 % width.)
#pragma once

#include <span>
#include <vector>

#include "iir/circle_point.h"

namespace kavrel {

// c0 + c1 z^-1 + c2 z^-2.
struct SectionFactor {
    double c0 = 1;
    double c1 = 0;
    double c2 = 0;
};

// |c0 + c1 z^-1 + c2 z^-2|^2.
[[nodiscard]] double square_of(const SectionFactor& factor, const CirclePoint<double>& point);

// The poles e^(j theta - distance) of 1/(1 + c1 z^-1 + c2 z^-2) that are not 0, of each pair the one with theta above
// 0.
struct NearPole {
    double theta = 0;
    double distance = 0;
};
[[nodiscard]] std::vector<NearPole> poles_of(std::span<const SectionFactor> denominators);

// Points and weights, of sum 1, such that a weighted sum of |H|^2 is its mean to some 12 digits, for any H whose poles
// are those of the denominators: pieces of the half circle, each with a Gauss rule of 24 points. Seen from a piece,
// which is [-1, 1], no pole lies within the ellipse about it whose half axes have the sum rho = 2.5; an analytic
// integrand then leaves an error of the order rho^-48 (Trefethen, Approximation Theory and Approximation Practice,
// 2013, theorem 19.3). The denominators are 1 + c1 z^-1 + c2 z^-2, their poles inside the circle.
struct CircleNodes {
    std::vector<CirclePoint<double>> points;
    std::vector<double> weights;
};
[[nodiscard]] CircleNodes circle_nodes(std::span<const SectionFactor> denominators);

// The sum of the squares of an impulse response, from |H|^2 at the nodes.
[[nodiscard]] double sumSquares(std::span<const double> weights, std::span<const double> squares);

}  // namespace kavrel
