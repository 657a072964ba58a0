// The power E of a pass band whose loss follows a curve: E/T lies between 1 and 1 + eps2 on the pass band, for a T that
// need not be a polynomial.
//
// T = Q f^(2 p), f in units of the upper edge, has a loss that rises by p times 6.0206 dB an octave. For lumped media
// f = w, w^2 = (a - x)/(1 - x). E of even degree n is to have E/T = 1 + eps2 and 1 by turns, first and last at the
// edges 1 + eps2, at n + 1 places: as many as E has coefficients. So E is the polynomial through these values,
//
//   E(x) = l(x) S(x),  l = prod (x - x_j),  S = k + sum w_j E_j/(x - x_j),
//
// over the finite places x_j = -xi_j^2, k its value at infinity, the upper edge (first barycentric form; rounding
// remains that of the values, as the places lie as dense as the alternation), and an exchange moves the places to the
// extremes of E/T. It begins where
//
//   theta = (n0 + u) arg(sqrt a + j xi) + (ni - u) arg(1 + j xi) + angles of the other zeros
//
// is a multiple of pi/2, u being the zeros that the slope takes from infinity, with their fraction:
// T (1 + eps2 cos^2 theta) alternates exactly, but is a polynomial for whole u alone.
//
// Of odd degree E has one coefficient more than theta - arg(sqrt xReal + j xi) has turns: its value at xReal. That is
// Q |w|^(2 u) cos(pi u), which whole u have; where a real root of E then lies on the frequency axis, a value on the
// side that brings it back to the real s axis. The strip leaves the values between those of two E that alternate at
// n + 1 places, from 1 + eps2 to 1 and from 1 to 1 + eps2.
//
// No realisable E of the degree has a smaller ripple than the least one for which this finds an E: linear programs over
// all E that are positive on the frequency axis give the same least ripple.
#pragma once

#include "approximation/x_plane.h"

namespace kavrel {

struct SlopeTask {
    using Real = XPlane::Real;

    const WideRootSet& Q;  // multiplier 1, no root on the pass band, degree 1 to 50
    Real a = 0;            // above 0
    Real xReal = 0;        // within (a, 1)
    Real eps2 = 0;
    Real units = 0;     // u, of either sign
    Real power = 0;     // p; lumped media: u
    Real tan_edge = 0;  // tan(pi f/fs) of the upper edge; 0 for lumped media
};

// E by its roots. False where none is found that lies in the strip all over the pass band and has no root on the
// frequency axis: the zeros of Q cannot give so small a ripple, and E is of no use then.
[[nodiscard]] bool exchange_slope(const SlopeTask& task, WideRootSet& E);

}  // namespace kavrel
