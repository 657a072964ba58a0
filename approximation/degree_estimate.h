// Counts of the zeros at zero and at infinity from the losses asked for. After normaliseEdges.
#pragma once

#include "approximation/filter_spec.h"
#include "approximation/front_verdict.h"
#include "approximation/x_plane.h"

namespace kavrel {

// Monotonic stopband: sets zerosAtInfinity (low-pass and high-pass) or both counts (band-pass), so that the losses at
// the stop edges are reached and no lower degree of the kind reaches them, unit elements as given. Of the counts of a
// band-pass of that degree those that differ least are taken: lopsided ones ask for terminations of many decades. The
// closed forms are a start: the loss is then evaluated from Q and F. A degree given is taken as it is, the band-pass
// parted evenly.
// Losses reached are in the notes. Faults: stopband_incorrect, degree_too_high.
// Source: asymptotes of the Chebyshev and the binomial function in the variable x.
FrontVerdict estimateMonotonicDegree(FilterSpec& spec, XPlane& xp, FrontNotes& notes);

// Impedance matching between R1 and R2: the loss at s = 0 has to be 1 + c^2, c = |R2 - R1|/(2 sqrt(R1 R2)). Takes the
// counts of stopbandType specified as given, otherwise the least that keep the band-edge loss, and with an upper stop
// edge the stopband loss too. Leaves bandpassType conventional, stopbandType specified, xp.matched, and in bandEdgeLoss
// and eps2 the loss that the terminations enforce. Microwave with unit elements alone becomes a high-pass whose pass
// band reaches from the lower edge to its mirror image at the quarter-wave frequency. Calls normaliseEdges itself.
// Faults: terminations_unfit, matching_not_needed (designError 2), stopband_incorrect, degree_too_high, those of
// normaliseEdges.
FrontVerdict estimateMatching(FilterSpec& spec, XPlane& xp, FrontNotes& notes);

// An estimate of a degree as a whole number, towards zero: sums of a few of them stay within an int. What is no number
// is beyond all degrees.
[[nodiscard]] int whole_degree(long double estimate);

}  // namespace kavrel
