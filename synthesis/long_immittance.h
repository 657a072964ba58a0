// The immittance polynomials in long numbers.
//
// The approximation leaves the parts of f, q and the poles right to some 18 digits. Taken as exact numbers they define
// a filter whose loss is that of the request to as many digits: f and Q give E = F + Q, E its Hurwitz factors, these
// the even and odd parts of e, and sums and differences with the parts of f the four polynomials. Each root is brought
// from the 18 digits at hand to 70 by Newton's iteration, on values formed from roots and factors alone. What a chain
// of removals then loses does not count.
#pragma once

#include "approximation/x_plane.h"
#include "shell/watcher.h"
#include "synthesis/working_function.h"

namespace kavrel {

// Even and odd parts of e + f and e - f; multiplier 0: no such function. Where a part of f is 0, that of e is in
// the sum alone; a difference can also vanish.
struct LongImmittance {
    ReactanceRoots es, os, ed, od;
    bool even_f = false;  // f has an even part
    bool odd_f = false;   // ... an odd part
    int degree = 0;       // of e
};

// False when stopped, when a root is not real, or the parts do not agree with those of the approximation. For a single
// termination es and os are the parts of e, whose roots are taken as they are; ed and od do not exist.
[[nodiscard]] bool long_immittance(const XPlane& xp, bool single_termination, Watcher& watcher, LongImmittance& out);

}  // namespace kavrel
