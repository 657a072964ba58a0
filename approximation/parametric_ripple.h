// Equal ripple of a parametric band-pass, by an exchange on its reflection zeros. With x = -t on the pass band, t > 0,
//
//   F/Q = eps2 G,  G = (x - d)^w prod (x + eta_i^2)^2/Q,  1 <= i <= k,  w = 1 for odd degree, 2 for even degree,
//
// G is 1 at infinity. For a d that is held, the G of least maximum is a Chebyshev approximation to 0 with the weight
// (x - d)^w/Q: there is one, and it is known by k + 1 equal maxima, those at the edges of the band among them. t = 0 is
// one of them if d >= w/(2 sum 1/eta_i^2 + sum 1/r), infinity if d <= (2 sum eta_i^2 + sum r)/w, r being the roots of
// Q. Where one of the two does not hold, its edge would have less than the others: then d is freed and takes the
// bound.
#pragma once

#include "approximation/x_plane.h"

namespace kavrel {

// What the roots of Q add to the two conditions.
struct EdgeSums {
    XPlane::Real reciprocal = 0;  // sum 1/r
    XPlane::Real direct = 0;      // sum r
};
[[nodiscard]] EdgeSums edge_sums(const WideRootSet& Q);

// `zeros` has the roots -eta_i^2, 1 <= i <= k, eta ascending, and d the root that F has besides, of a function that is
// near. Both are changed if a maximum of G is above 1 + 1e-6 and the exchange settles with d within (a, 1); the maxima
// are equal to some 1e-15 then. Returns false, with nothing changed, if it does not settle.
// Source: E. Ya. Remez's exchange with Newton's method for the reference.
[[nodiscard]] bool equaliseRipple(const WideRootSet& Q, XPlane::Real a, int weight, WideRootSet& zeros,
                                  XPlane::Real& d);

}  // namespace kavrel
