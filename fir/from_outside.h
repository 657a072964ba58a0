// An FIR filter from outside, given by its coefficients or by quadratic factors.
#pragma once

#include <span>

#include "fir/factors.h"
#include "shell/refusal.h"

namespace kavrel {

// Fill in the only function of a filter that has its sampling frequency, and nothing yet of H. What is wrong with the
// data is about the field "data", or "filter_length"; the filter is then to be dropped.

// Coefficients, first to last; `length` 0 counts them. Of a symmetry they may be the first half, outer end first, with
// or without the centre tap 0 of an odd antisymmetric response; the whole has to have that symmetry, each tap being
// that of its mirror image within 1e-12 of the peak. Up to fir_given_limit taps, fir_store without symmetry.
inline constexpr int fir_given_limit = 1026;
[[nodiscard]] Refusal take_coefficients(std::span<const double> given, FirSymmetry symmetry, int length,
                                        FirFilter& filter);

// Up to fir_factor_limit factors 1 + linear z^-1 + quadratic z^-2: they are the filter's factors, in their order, and
// their product its function.
[[nodiscard]] Refusal take_quadratics(std::span<const QuadraticRow> rows, FirFilter& filter);

}  // namespace kavrel
