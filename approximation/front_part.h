// The steps from the request to Q and F in their order.
#pragma once

#include "approximation/filter_spec.h"
#include "approximation/front_verdict.h"
#include "approximation/x_plane.h"

namespace kavrel {

// Normalisation, degree estimate or zeros by stopbandType, settleBandpass: all that goes before buildQ. States in
// xp.equal_minima_due whether the zeros wait for E (a given denominator with an equal minima stopband).
// Fills the variable and the zeros of xp, leaves the sets alone; a matching network has its Q and F already. Faults:
// those of the steps; spec.designError is set.
FrontVerdict runFront(FilterSpec& spec, XPlane& xp, FrontNotes& notes);

}  // namespace kavrel
