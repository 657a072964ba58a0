// The power loss E/Q at real frequencies.
//
// A frequency is given by the angle phi = atan(w), 0 for zero and pi/2 for infinity, so that nothing on the axis is a
// special place: x - r = ((1 - r) S + (a - r) T)/(S + T) with s^2 = S/T, S = -sin^2 phi, T = cos^2 phi, and the divisor
// is the same in both products.
#pragma once

#include "approximation/filter_spec.h"
#include "approximation/x_plane.h"

namespace kavrel {

struct AxisPoint {
    long double S = 0;  // minus the square of the normalised frequency
    long double T = 1;  // over this
};
[[nodiscard]] AxisPoint axisPoint(long double phi);

// multiplier times the product of ((1 - r) S + (a - r) T), times (S + T)^(degree - count).
[[nodiscard]] Complex<long double> homogeneousProduct(const WideRootSet& set, long double a, AxisPoint at, int degree);

// Q/E, the transmitted part of the available power: real and not negative.
[[nodiscard]] long double transmission(const XPlane& x, AxisPoint at);

// 10 log10 E/Q at the normalised frequency w >= 0 of the low-pass like variable; 1e38 at a zero of transmission.
[[nodiscard]] long double lossOfE(const XPlane& x, long double w);

// The same in dB at a frequency >= 0 in Hz, for all filter types and media. `spec` as `approximate` leaves it.
[[nodiscard]] double lossAt(const FilterSpec& spec, const XPlane& x, double hertz);

// The largest Q/E of all real frequencies, stopbands included: a f of E - Q exists only if it is not above 1.
// The axis is sampled around every pole by the width of its resonance; the summits are then closed in on.
// Source: R. P. Brent, "Algorithms for Minimization without Derivatives" (1973), ch. 5.
[[nodiscard]] long double largestTransmission(const XPlane& x);

}  // namespace kavrel
