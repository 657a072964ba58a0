// Predistortion for elements of finite Q: e(s) is designed as e(s - q), q = 1/Q in units of the upper edge, so that the
// losses, which put s + q in place of s, bring the poles back to where they were asked for. Q is that of all elements
// at normFrequency, where their loss is q times their reactance. The poles move to the right, at most up to the axis.
#pragma once

#include "approximation/x_plane.h"

namespace kavrel {

// How much of its distance to the axis the nearest pole may give up: at 1 it would lie on the axis.
inline constexpr long double attainable_shift = 0.99L;

// What the choice "Q = Qmin" gives up of it: nearer to the axis the flat loss and the ratio of the terminations grow
// without bound.
inline constexpr long double chosen_shift = 0.5L;

// A Q asked for within this ratio of the minimum is raised to it without a question.
inline constexpr double q_tolerance = static_cast<double>(1.1F);

// Fills q1, the requested Q, and qMin, the least Q that can be had: 1/(0.99 times the distance of the nearest pole from
// the axis), from the factors of e.
void findMinimumQ(XPlane& x, double requested, bool high_pass);

// Whether the requested Q is out of reach: q1 * 1.1 <= qMin.
[[nodiscard]] bool qOutOfReach(const XPlane& x);

// The Q of the choice "Q = Qmin", in place of qMin: 1/(half the distance of the nearest pole from the axis).
[[nodiscard]] inline long double chosenQ(const XPlane& x) { return x.qMin * (attainable_shift / chosen_shift); }

// Moves the zeros of e by q = 1/Q to the right. Low-pass and band-pass, with t = c + d:
//   g = 1 - 2qt/(1 - a), h = q - tq^2/(1 - a), c' = (c - h)/g, d' = (d + h)/g, multiplier times g; c_n' = c_n - q.
// High-pass, whose s is inverted: g = 1 - 2qc, c' = c/g, d' = (d - q(1 - qc))/g, multiplier times g;
//   c_n' = c_n/(1 - qc_n), multiplier times 1 - qc_n.
void predistort(WidePseudoPolynomial& e, long double a, long double q, bool high_pass);

}  // namespace kavrel
