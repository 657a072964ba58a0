// The best approximation as a cosine series, and what double coefficients leave of it.
//
// Coefficients that do not lead back to A on the extremal points, because A between the bands is not determined by
// double, are replaced by the least squares solution of smallest norm on these points.
//
// Source: C. W. Clenshaw, 1955 (recurrence for sums and for the change of variable).
#pragma once

#include <limits>
#include <span>

#include "fir/fir_grid.h"
#include "fir/interpolant.h"

namespace kavrel {

// Rounding of a tap, over its size.
inline constexpr double tap_rounding = std::numeric_limits<double>::epsilon();

// The ends of what A is a good approximation on; beyond them it may be huge.
struct FirRange {
    FirPoint first, last;
};

// Coefficients of `a`, which was fitted on the points `extremal` of `range`; `scale` is the size of the numbers that
// the weighted errors are differences of. Takes about nfcns^2 operations, a least squares solution nfcns^3.
template <class Real>
[[nodiscard]] CosineSeries cosine_series(const FirRange& range, std::span<const FirPoint> extremal,
                                         const Interpolant<Real>& a, double scale);

// Largest weighted error of the series on the grid or at the points, summed in the arithmetic of Real; not a number
// when one of the errors is none.
template <class Real>
[[nodiscard]] Real largest_error(const FirGrid& grid, const CosineSeries& alpha, int nfcns);
template <class Real>
[[nodiscard]] Real largest_error(std::span<const FirPoint> points, const CosineSeries& alpha, int nfcns);

}  // namespace kavrel
