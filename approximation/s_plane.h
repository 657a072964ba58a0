// From the roots in x to poles and zeros in s.
#pragma once

#include "approximation/filter_spec.h"
#include "approximation/x_plane.h"

namespace kavrel {

// Poles in the order of ES, so that LARR belongs to them, each conjugate pair with the positive imaginary part first:
// s = -|u| + j|v|, u + jv = sqrt((x - a)/(1 - x)), inverted for high-pass. Zeros: those at zero, then unit elements
// (+ and - the value where a unit element's S = 1 lies), then the finite ones: real and imaginary ones as a pair,
// complex ones as four. Lumped media: rad/s. Sampled and microwave: the plane of the warped variable, 1 at the edge.
//   gainConstant  sum over the poles minus sum over the zeros of 10 log10 |jw - root|^2 at w = 2 pi centerFrequency
//                 if that is above 0, else at 0 for low-pass and at normFrequency for band-pass; 1 for high-pass
//   lossConstant  the same sum at normFrequency (linear phase: 0), less bandEdgeLoss; 0 within 1e-8
//   level         by `level_by_edge_loss`, with E/Q at the edge
// `spec` as `approximate` leaves it.
[[nodiscard]] TransferFunction xToFrequencyPlane(const FilterSpec& spec, const XPlane& x);

// The level of H for a loss in dB at the band edge, where s = j. Its sign makes H the one of a ladder's analysis:
// positive for large real s, but that the factor s - z of a unit element's zero z > 0 is z - s in truth.
[[nodiscard]] double level_by_edge_loss(const FilterSpec& spec, const TransferFunction& transfer, long double loss);

// The same for the roots as they are, in rad/s where the medium is lumped: infinite where no number is so large.
[[nodiscard]] double level_of_roots(Medium medium, const TransferFunction& transfer);

// 20 log10 1/|H| in dB at a frequency in Hz, of elements whose Q at normFrequency is `q`; 0: lossless.
[[nodiscard]] double loss_of_function(const FilterSpec& spec, const TransferFunction& transfer, double hertz,
                                      double q = 0);

// Hz of an imaginary part among the roots.
[[nodiscard]] double frequency_of_root(const FilterSpec& spec, const TransferFunction& transfer, double omega);

// Multiplies all frequencies of a function by a factor; its losses stay.
void scale_transfer(Medium medium, double factor, TransferFunction& transfer);

// tan(pi f/fs) at the band edge, of a medium that has one.
[[nodiscard]] double edge_tangent(const FilterSpec& spec, const TransferFunction& transfer);

}  // namespace kavrel
