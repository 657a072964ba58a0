// Scaling of the nodes of a network: with the voltage of node i in units of s_i, a node matrix X becomes x_ij s_i s_j,
// its couplings -x_ij s_i s_j, and what lies from node i to ground, the sum of the row, s_i (X s)_i.
#pragma once

#include <span>

namespace kavrel {

inline constexpr int max_scaled_nodes = 25;

enum class NodeScalingVerdict { done, not_positive_definite, no_convergence };

// Finds the positive scales by which the elements to ground become w_i: s_i (X s)_i = w_i.
//
//   X       symmetric, n rows of n, 1 <= n <= 25, in any unit
//   w       [n] > 0
//   s       [n] the scales; those of the first `kept` nodes are given, > 0, and stay, without an equation of their own
//
// The equations are the gradient of (1/2) s'X s - sum w_i log s_i, which is strictly convex where X is positive
// definite (in the nodes that are not kept), so there is one solution: Newton's method with Hessian X +
// diag(w_i/s_i^2), from s_i = sqrt(w_i/x_ii), steps cut short of s_i = 0 and halved until the function falls (Armijo).
// To 1e-14 of w, where X is not close to singular. A failure leaves s as it was.
[[nodiscard]] NodeScalingVerdict scale_nodes(std::span<const double> X, std::span<const double> w, std::span<double> s,
                                             int kept = 0);

}  // namespace kavrel
