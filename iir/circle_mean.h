// Means over the unit circle of |H|^2, for products H of factors of second order and of their inverses.
//
// By Parseval's theorem such a mean is the sum of the squares of H's impulse response. What is summed is nowhere
// negative, so no digit is lost however narrow a filter is. (The recursion of Astrom and Jury on multiplied-out
// polynomials has none left for an elliptic band-pass of degree 24 and 1 % width.)
#pragma once

#include <span>
#include <vector>

namespace kavrel {

// c0 + c1 z^-1 + c2 z^-2.
struct Factor {
    double c0 = 1;
    double c1 = 0;
    double c2 = 0;
};

// A point e^j theta of the upper half of the circle: cos theta is near + off, with near 1 or -1.
struct CirclePoint {
    double near = 1;
    double off = 0;
    double sine = 0;
};
[[nodiscard]] CirclePoint circle_point(double theta);

// |c0 + c1 z^-1 + c2 z^-2|^2, without cancellation where roots crowd at 1 or -1.
[[nodiscard]] double square_of(const Factor& factor, const CirclePoint& point);

// The poles e^(j theta - distance) of 1/(1 + c1 z^-1 + c2 z^-2) that are not 0, of each pair the one with theta above
// 0.
struct NearPole {
    double theta = 0;
    double distance = 0;
};
[[nodiscard]] std::vector<NearPole> poles_of(std::span<const Factor> denominators);

// Points and weights, of sum 1, such that a weighted sum of |H|^2 is its mean to some 12 digits, for any H whose poles
// are those of the denominators: pieces of the half circle, each with a Gauss rule of 24 points. Seen from a piece,
// which is [-1, 1], no pole lies within the ellipse about it whose half axes have the sum rho = 2.5; an analytic
// integrand then leaves an error of the order rho^-48 (Trefethen, Approximation Theory and Approximation Practice,
// 2013, theorem 19.3). The denominators are 1 + c1 z^-1 + c2 z^-2, their poles inside the circle.
struct CircleNodes {
    std::vector<CirclePoint> points;
    std::vector<double> weights;
};
[[nodiscard]] CircleNodes circle_nodes(std::span<const Factor> denominators);

// The sum of the squares of an impulse response, from |H|^2 at the nodes.
[[nodiscard]] double sumSquares(std::span<const double> weights, std::span<const double> squares);

}  // namespace kavrel
