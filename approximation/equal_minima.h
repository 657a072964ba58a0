// Transmission zeros of equal minima stopbands. After normaliseEdges; low-pass like w, omega = upper_stop > 1.
//
// symmetryFlag -1: no zero need lie at infinity; 0: unequal terminations or one alone, even degree has two zeros at
// infinity; 1: equal terminations, as 0, and the shift of equalRippleF is allowed for, so that the stop edge is met
// after it.
#pragma once

#include "approximation/filter_spec.h"
#include "approximation/front_verdict.h"
#include "approximation/x_plane.h"

namespace kavrel {

// Low-pass and high-pass: fills ARR (ARI 0), zeroCount, zerosAtInfinity, degree, for an equal ripple pass band
// (elliptic) or a maximally flat one (inverse Chebyshev). spec.degree 0 asks for the least degree that gives
// stopbandLoss; unit elements come on top of a degree estimated and are part of one given. The notes hold the loss
// reached. Faults: stopband_incorrect, degree_too_high. Source: descending Landen transformation of the Jacobian
// elliptic functions; W. Cauer's rational functions.
FrontVerdict equalMinimaZeros(FilterSpec& spec, XPlane& xp, FrontNotes& notes);

// Band-pass, from the low-pass of half the degree: each zero gives two, and both counts take what the low-pass leaves
// at infinity. The larger of both losses rules. Faults: bandpass_stopband_incorrect (box), stopband_incorrect,
// degree_too_high.
FrontVerdict bandpassEqualMinimaZeros(FilterSpec& spec, XPlane& xp, FrontNotes& notes);

// Zeros that give equal minima with a denominator E known by its roots in x (functional input, delay), low-pass and
// high-pass: fills ARR, zeroCount, zerosAtInfinity and QS. A numerator F may take the place of E, since E/Q and F/Q
// have their minima at the same places. Of even degree with symmetryFlag >= 0 two zeros lie at infinity, found by
// iteration. Faults: minima_roots_missing for a pole on the stopband, minima_not_settled, stopband_incorrect without a
// stop edge or with unit elements, for which the rule does not hold.
FrontVerdict equalMinimaIteration(const WideRootSet& E, FilterSpec& spec, XPlane& xp, FrontNotes& notes);

inline FrontVerdict equalMinimaIteration(FilterSpec& spec, XPlane& xp, FrontNotes& notes) {
    return equalMinimaIteration(xp.ES, spec, xp, notes);
}

}  // namespace kavrel
