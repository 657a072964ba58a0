// From an analog prototype to a digital filter, roots to roots. Frequencies are angles: T' is that of the band edge,
// normFrequency/fs, and s is in units of the edge, s = j there, as the roots of a sampled medium are already.
//
//   bilinear           s = (z - 1)/((z + 1) t), t = tan(T'/2): the edge stays; zeros at infinity come to z = -1
//   matched            z = e^(s T') for each pole and zero; none is added
//   impulse-invariant  h(n) is that of the prototype at the times n T: with the residues r of the prototype
//                      H = c + T' sum r/(1 - e^(p T') z^-1), c its value at infinity
//
// The bilinear transform keeps the level; for the other two |H| is that of the prototype at one frequency of the pass
// band: 0 for low-pass, half the sampling frequency for high-pass, the geometric centre for band-pass. Above 0 its sign
// for large real z is the prototype's for large real s.
#pragma once

#include "approximation/digital_function.h"
#include "approximation/filter_spec.h"
#include "approximation/x_plane.h"

namespace kavrel {

// `spec` is the request with what was found for it, fs in Hz, above twice the edge. The zeros of an impulse-invariant
// filter are those of a sum that nearly vanishes for high degrees, which is formed in long numbers. False where these
// do not suffice, or a number is beyond the range of double.
[[nodiscard]] bool zTransform(ZTransform transform, const FilterSpec& spec, const TransferFunction& prototype,
                              double fs, DigitalFunction& function);

// LARR and allpass_ok of a function that the bilinear transform has made, from the signs of the poles that the
// approximation found (XPlane::LARR). The sum of the chains is the filter for low-pass, the difference for the others.
void takePoleChains(const FilterSpec& spec, const XPlane& x, double fs, DigitalFunction& function);

}  // namespace kavrel
