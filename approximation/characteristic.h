// Q and F from the counts, the zeros and the pass band type. Power loss E/Q = 1 + F/Q, squared characteristic function
// F/Q, which is eps2 at the band edges x = 0 and x = infinity. With degree n and f of the same degree
//
//   n even  F = fEven^2 - (x - a)(1 - x) fOdd^2
//   n odd   F = (x - a) fOdd^2 - (1 - x) fEven^2.
//
// Equal ripple is found in y, y^2 = x: with m_i the square root of root i of Q, in the right half plane,
// A(y) = prod (y + m_i) has on the pass band y = j eta the angle theta = sum arg(m_i + j eta), and
//
//   F/Q = eps2/4 (A/B + B/A + 2) = eps2 cos^2 theta,  B = prod (y - m_i),  for odd low-pass and high-pass eps2 sin^2
//   theta from theta(0) = 0.
//
// A parametric band-pass takes away the angle of +sqrt(xReal), once for odd and twice for even degree, which leaves a
// root d of F within (a, 1) (double for even degree) from the loss at the lower edge. The loss at both edges is exact;
// the maxima between them come out at eps2 times (x - xReal)(x - d)/(x - r)^2, r being the root of the sum that d
// replaces (two of them for even degree). At a lower edge of 0.8 of the upper one that is below 1e-6 from 1, at 0.1 it
// may be half as much again: where it is above 1 + 1e-6 an exchange follows (parametric_ripple.h).
#pragma once

#include "approximation/filter_spec.h"
#include "approximation/front_verdict.h"
#include "approximation/x_plane.h"
#include "numeric/complex.h"

namespace kavrel {

// Fills QS from the counts and ARR, ARI, sets degree, degreeParity, and calls the builder of F for maximally flat,
// equal ripple and sloping (taken as equal ripple); a functional pass band gets Q alone. Of linear-phase filters with
// an upper stop edge nothing is built. Fault: degree_too_high above 50, and those of the builders.
FrontVerdict buildQ(FilterSpec& spec, XPlane& xp, FrontNotes& notes);

// QS alone, of multiplier 1: zerosAtZero times a, zerosAtInfinity times 1, each finite zero twice with conjugates next
// to each other, unitElements times ueX, for high-pass 1 - ueX. Needs a degree up to 50.
void fillQ(const FilterSpec& spec, XPlane& xp);

// FS, fEven, fOdd and termRatioLimit of a maximally flat function: low-pass and high-pass eps2 x^n, band-pass
// eps2 (x + g)^m with the other roots of a parametric one at xReal, or as near to it as keeps the losses between the
// edges below those of the edges. Needs QS.
// Fault: parametric_root_out_of_range where no root is left for the flat point and the edges ask for one outside (a,
// 1).
FrontVerdict maxFlatF(FilterSpec& spec, XPlane& xp);

// The same of an equal ripple function. Even low-pass and high-pass with symmetryFlag 1: x goes to (x + p)/(1 + p),
// which puts the lowest root of F to 0; finite zeros in ARR, QS and FZR, FZI move along, unit elements stay where they
// are. A second call would move the zeros again. Faults: ripple_roots_missing for a zero of transmission in the pass
// band, parametric_root_out_of_range where there is no function with the same loss at both edges.
FrontVerdict equalRippleF(FilterSpec& spec, XPlane& xp, FrontNotes& notes);

// P/Q at x, from the root sets.
[[nodiscard]] Complex<XPlane::Real> quotient(const WideRootSet& P, const WideRootSet& Q, Complex<XPlane::Real> x);

// F/Q at x.
[[nodiscard]] Complex<XPlane::Real> squared_characteristic(const XPlane& xp, Complex<XPlane::Real> x);
[[nodiscard]] XPlane::Real squared_characteristic(const XPlane& xp, XPlane::Real x);

// Loss in dB at the normalised frequency w >= 0; 1e38 at a zero of transmission.
[[nodiscard]] XPlane::Real loss_at(const XPlane& xp, XPlane::Real w);

}  // namespace kavrel
