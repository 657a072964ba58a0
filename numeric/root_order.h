// The orders of roots that the other folders rely on.
//
// Every sort here is stable: roots that compare equal keep their order. A conjugate pair compares equal in every key
// used, so that pairs which came in next to each other stay so, the positive imaginary part first, also beside other
// roots of the same magnitude (all modes of a maximally flat filter lie on one circle).
#pragma once

#include "numeric/root_set.h"

namespace kavrel {

enum class Reals { first, last };

// By magnitude, ascending.
void sortByMagnitude(WideRootSet& set);

// By the magnitude of the real part, descending.
void sortRealsDescendingMagnitude(WideRootSet& set);

// The order after every extraction: real roots by value, ascending, then conjugate pairs by magnitude, ascending;
// with Reals::last the real roots follow the pairs. Returns the number of real roots.
int sortConjugates(WideRootSet& set, Reals place);

}  // namespace kavrel
