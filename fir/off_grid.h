// Best approximation off the grid: the exchange with frequencies in place of grid points.
//
// Between the points of a grid the error rises above the deviation that was leveled on it, most of all in bands of few
// points. Here the extremal points are frequencies: each pass looks at 12 points for each cosine, more near the edges
// of bands and at least 32 in each, and places every extremum by a parabola through its neighbours. From the points
// that the exchange on the grid ends with two to four passes do.
//
// Where bands leave much of the axis free, an approximation is bought with gain there. With a bound on the gain the
// free regions take part: an extremal point there has the error of the bound, a constraint of one side, since it is
// one only while the bound is reached. The signs alternate through bands and free regions together.
#pragma once

#include "fir/cosine_series.h"
#include "fir/exchange.h"

namespace kavrel {

// Deviations up to this part of the size of the weighted response are rounding: what doubles make of it.
inline constexpr double rounding_deviation = 20 * tap_rounding;

// Goes on from `result`, which exchange() left of `grid`, off the grid; `result` keeps what it has when the largest
// error between the grid's points is within 1 % of the deviation, when the deviation is rounding, or where the passes
// do not lead to less. A result that is replaced is converged, `measured` its largest error on the points of the
// passes. False when the watcher stopped it.
[[nodiscard]] bool refine(const FirTask& task, const FirPlan& plan, const FirGrid& grid, Watcher& watcher,
                          ExchangeResult& result);

// Best approximation with a gain of at most `gain` outside the bands. A deviation below rounding_deviation is as good
// as 0; which it is says DEV.
//   least      a deviation that it cannot be below, that of the unbounded one, or 0
//   result     passes are counted on; the rest is filled if it converges
// Returns converged, limit_reached or stopped.
[[nodiscard]] ExchangeStatus bounded_exchange(const FirTask& task, const FirPlan& plan, const FirGrid& grid,
                                              double gain, double least, Watcher& watcher, ExchangeResult& result);

}  // namespace kavrel
