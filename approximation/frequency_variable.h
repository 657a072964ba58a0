// One variable for all filter kinds:
//
//   x = (s^2 + a)/(s^2 + 1),  s^2 = (x - a)/(1 - x),  s = j at the upper band edge, a = (lower edge/upper edge)^2.
//
// On s = jw the lower stopband is 0 < x < a, the pass band x < 0, the upper stopband x > 1; the real s axis lies on
// a < x < 1. A zero of transmission at w = 0 is x = a, one at infinity x = 1. Low-pass: a = 0. High-pass: s is inverted
// first, a = 0.
//
// Sampled and microwave media: s is tan(pi f/fs)/tan(pi N/fs), N = normFrequency.
//
// The routines change the FilterSpec that they get: edges become those of the normalised problem. A caller who wants
// the request as typed keeps a copy. Order: normaliseEdges; estimate or zeros (degree_estimate.h, equal_minima.h) or
// zerosToX; settleBandpass; buildQ (characteristic.h). runFront of front_part.h takes these steps.
#pragma once

#include "approximation/filter_spec.h"
#include "approximation/front_verdict.h"
#include "approximation/x_plane.h"
#include "numeric/complex.h"

namespace kavrel {

// Checks the request and fills the variable: normFrequency, warp, a, xReal, ueX, eps2, lower_stop, upper_stop.
//   low-pass   upperStopEdge is left as N w, w the normalised stop edge.
//   high-pass  the edge goes to upperPassEdge, lowerPassEdge to 0; zerosAtZero and zerosAtInfinity change places;
//              the stop edge becomes upperStopEdge = N w; given factors and functionMultiplier are inverted.
//   band-pass  lowerPassEdge becomes N sqrt(a), the stop edges N w; notes.preshifted under a sampled medium.
// With runFlag -1 (a placed design) the edges are taken as mapped already.
// Faults: filter_type_incorrect, cutoff_missing, edges_equal, passband_incorrect, band_edge_loss_missing,
// stopband_incorrect, polynomial_incomplete, terminations_unfit.
FrontVerdict normaliseEdges(FilterSpec& spec, XPlane& xp, FrontNotes& notes);

// Finite zeros FZR, FZI (Hz) to ARR, ARI, real ones with an imaginary part of exact 0, complex ones once, the imaginary
// part positive. With runFlag -1 a zero is taken as warped already.
void zerosToX(const FilterSpec& spec, XPlane& xp);

// ARR, ARI back to FZR, FZI (both parts >= 0, Hz), spec.zeroCount.
void zerosToFrequency(FilterSpec& spec, const XPlane& xp);

// Degree that the counts and the zeros of the x-plane add up to: a real zero counts 2, a complex one 4.
[[nodiscard]] int overall_degree(const FilterSpec& spec, const XPlane& xp);

// Once the counts are known, for band-pass: odd conventional becomes parametric; xReal of a microwave filter with an
// odd number of unit elements moves with its Freal, where it stays within (a, 1); a Freal of 0 becomes sqrt(fl fu),
// which no longer changes xReal. Sets degree and degreeParity for all filters.
void settleBandpass(FilterSpec& spec, XPlane& xp, FrontNotes& notes);

// Functional input by its denominator, lumped and not to be shifted: when the largest squared pole v is <= 0.5 or >= 2,
// s' = s/sqrt p, p = 0.9 v (high-pass 1.1 v), for the edges, normFrequency, upper_stop, the factors and the finite
// zeros in x. Returns whether it was done, and notes it.
bool rescaleForPrecision(FilterSpec& spec, XPlane& xp, FrontNotes& notes);

// x of the same point after s' = s/sqrt p.
[[nodiscard]] Complex<XPlane::Real> rescaledRoot(Complex<XPlane::Real> x, XPlane::Real p, XPlane::Real a);

// Root of Q that a unit element makes: ueX, for high-pass 1 - ueX.
[[nodiscard]] XPlane::Real unit_element_root(const FilterSpec& spec, const XPlane& xp);

// Value of x at the normalised frequency s = jw; w = 1 gives 1e38, as cdiv does.
[[nodiscard]] XPlane::Real x_of_frequency(XPlane::Real w, XPlane::Real a);

// Frequency in Hz of the normalised, low-pass like w >= 0: inverted for high-pass, unwarped under a sampled medium.
[[nodiscard]] XPlane::Real true_frequency(const FilterSpec& spec, const XPlane& xp, XPlane::Real w);
// ... and its inverse.
[[nodiscard]] XPlane::Real normalised_frequency(const FilterSpec& spec, const XPlane& xp, XPlane::Real hertz);

}  // namespace kavrel
