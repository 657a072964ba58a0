// From the roots of a digital filter to its cascade: which roots make a factor, which factors a section.
//
// Real roots go two by two, zeros the least with the greatest, so that a band-pass has 1 - z^-2; the odd one makes a
// factor of first order. Sections begin with the pole pair of the greatest Q,
//
//     Q = sqrt((1 + c2)^2 - c1^2)/(1 - c2) of 1 + c1 z^-1 + c2 z^-2,
//
// and each takes of the zero pairs that are left the nearest one; factors of first order come last. Where zeros are
// fewer than poles the last sections have none.
#pragma once

#include "approximation/digital_function.h"
#include "iir/iir_filter.h"

namespace kavrel {

// Makes the cascade of the roots, which come to be in the order of their sections, and the chains of the poles with
// them. H stays what it is. At most 50 zeros and 50 poles.
void pair_roots(IirFilter& filter);

// Roots, chains of the poles and cascade of a function.
void take_function(const DigitalFunction& function, IirFilter& filter);

}  // namespace kavrel
