// The level of E: no more power than there is, and the share that the terminations ask for.
#pragma once

#include "approximation/x_plane.h"

namespace kavrel {

inline constexpr int scaling_pass_limit = 5;
inline constexpr int no_ratio_pass = -3;  // in XPlane::passes: leaves termRatioLimit alone

// Scales E by (3 10^(passes - 6) + 1) times the largest Q/E, so that E/Q keeps above 1 by a little more with every
// pass: F = E - Q then has no zeros on the real frequency axis. The factors and parts of E take the square root.
// Unless the filter is a band-pass, termRatioLimit follows from the loss at x = 0: (sqrt u + sqrt(u - 1))^2, u = E/Q.
void scaleByMaximum(XPlane& x, bool band_pass);

// Raises E for the requested ratio of terminations r >= 1 where the function serves only a lower one, L: the loss at
// x = 0 of terminations r is (1 + r)^2/(4 r). Returns whether E was raised; F has to be found anew then.
[[nodiscard]] bool raiseForTerminations(XPlane& x, long double ratio);

// R2/R1 or its inverse, whichever is at least 1; 1 when one of them is 0.
[[nodiscard]] long double terminationRatio(double R1, double R2);

// E/Q at x = 0: the loss at zero frequency of a low-pass, at infinity of a high-pass.
[[nodiscard]] long double lossRatioAtZero(const XPlane& x);

// Multiplies E by `power` and all that carries e by its square root.
void scaleE(XPlane& x, long double power);

}  // namespace kavrel
