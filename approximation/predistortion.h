// Predistortion for elements of finite Q, that of all elements at normFrequency. Their losses put another s in place of
// s = jw: s + q, q = 1/Q, in a lumped circuit, where the loss of an element is q times its reactance there;
//
//   S' = tanh(alpha + j theta) = (S + m)/(1 + mS),  S = s tan theta_0,  m = tanh alpha
//
// in a circuit of lines, where stubs have at theta_0 the quality t (1 - m^2)/(m (1 + t^2)), t = tan theta_0. e is
// designed for poles that are moved by the same step, to the right, so that the losses bring them back: at most up to
// the axis. The plane is that of the upper edge, inverted for high-pass; there a step is (s + shift)/(1 + slant s).
#pragma once

#include "approximation/x_plane.h"
#include "numeric/guarded.h"

namespace kavrel {

// How much of its way to the axis the nearest pole may give up: at 1 it would lie on the axis.
inline constexpr long double attainable_share = 0.99L;

// What the choice "Q = Qmin" gives up of it: nearer to the axis the flat loss and the ratio of the terminations grow
// without bound.
inline constexpr long double chosen_share = 0.5L;

// A Q asked for within this ratio of the minimum is raised to it without a question.
inline constexpr double q_tolerance = static_cast<double>(1.1F);

// Where e is: tan theta_0 of a circuit of lines, 0 of a lumped one.
struct LossyPlane {
    long double tan_edge = 0;
    bool high_pass = false;
};

// tanh alpha of lines whose stubs have the quality q at the frequency where tan theta is t.
[[nodiscard]] long double attenuation_of_lines(long double q, long double t);

// Where the losses of elements of this Q put s.
[[nodiscard]] Complex<long double> with_losses(Complex<long double> s, long double Q, LossyPlane plane);

// The Q at which the nearest pole gives up this share of its way to the axis, from the factors of e.
[[nodiscard]] long double q_of_share(const WidePseudoPolynomial& e, long double a, LossyPlane plane, long double share);

// Whether the requested Q is out of reach: q1 * 1.1 <= qMin.
[[nodiscard]] bool qOutOfReach(const XPlane& x);

// Moves the zeros of e to the right by the losses of this Q.
void predistort(WidePseudoPolynomial& e, long double a, long double Q, LossyPlane plane);

}  // namespace kavrel
