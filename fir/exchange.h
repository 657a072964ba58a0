// Best approximation on a grid by the exchange algorithm.
//
// The best approximation A by NFCNS cosines is the one whose weighted error takes its largest value, with alternating
// signs, at NFCNS + 1 points of the grid (alternation theorem of Chebyshev). From a guess of these points, each pass
// finds the A with equal alternating error on them and moves every point to the next larger error nearby; where that
// gains nothing, and after 20 passes, to the largest error of one sign around it on the whole grid, until no error
// exceeds the deviation. Meanwhile A is held by its values at these points (fir/interpolant.h), at the end as a cosine
// series (fir/cosine_series.h).
//
// Deviations below 1e-8 of the response leave double too few digits: their passes are made in long double and begin
// from points between which a polynomial cannot rise (Leja).
//
// Sources: E. Ya. Remez, 1934 (exchange); T. W. Parks and J. H. McClellan, IEEE Trans. Circuit Theory CT-19, 1972
// (linear phase filters).
#pragma once

#include <type_traits>

#include "fir/fir_grid.h"
#include "shell/table.h"
#include "shell/watcher.h"

namespace kavrel {

inline constexpr int max_exchange_passes = 100;

enum class ExchangeStatus {
    not_run,
    converged,       // no error on the grid exceeds the deviation: the alternation holds
    deviation_fell,  // the deviation fell, which in exact arithmetic it cannot, or the taps miss it: rounding rules;
                     // the result may well be good, see `measured`
    limit_reached,   // 100 passes; the result is that of the last one
    stopped,         // the watcher said so; no result
    degenerate,      // the points coincide or numbers ran out of range; no result
};

struct ExchangeResult {
    ExchangeStatus status = ExchangeStatus::not_run;
    int iterations = 0;                      // passes begun
    double DEV = 0;                          // deviation: weighted error at the extremal points, 0 or above
    double measured = 0;                     // largest weighted error of ALPHA on the grid
    CosineSeries ALPHA;                      // of the best approximation
    Table<int, max_fir_functions + 1> IEXT;  // [j] grid index of extremal point j, j <= NFCNS + 1, ascending
};

static_assert(std::is_trivially_copyable_v<ExchangeResult>);

// Best approximation of DES with weight WT on the grid by `nfcns` cosines.
//   grid     as make_grid leaves it: ascending, WT above 0, at least nfcns + 1 points
//   nfcns    1 to 257
// Fills `result` and returns its status; ALPHA is 0 unless the status is converged, deviation_fell or limit_reached,
// and always finite. A grid or nfcns out of range is degenerate. Takes at most 100 passes, each of about nfcns^2
// operations (the last ones 32 times that); long double ones some ten times as long. A least squares solution takes
// nfcns^3. Asks the watcher before each pass, within those in long double, and before the taps.
[[nodiscard]] ExchangeStatus exchange(const FirGrid& grid, int nfcns, Watcher& watcher, ExchangeResult& result);

}  // namespace kavrel
