// The taps of an equal ripple task: the exchange on the grid, gone on with off the grid where that leaves much between
// its points, bounded where it is bought with gain outside the bands, and judged by what the taps do.
//
// An optimum may have any gain outside the bands: Hilbert transformers with a free upper end reach taps of 1e12, and
// filters below all rounding have gains of 100 between their bands. Above ten times the largest value asked the
// approximation is made again with that bound; where this, too, is rounding, the shortest filter that gets there takes
// the place, with zeros around it.
#pragma once

#include "fir/exchange.h"
#include "fir/fir_filter.h"
#include "fir/fir_grid.h"

namespace kavrel {

// The largest gain outside the bands over the largest value asked, from which on the gain is bounded.
inline constexpr double most_outside_gain = 10;

// By which a deviation falls with the length, for a transition of width 1. Source: J. F. Kaiser (1974).
inline constexpr double db_per_tap = 14.6;

struct FirTaps {
    FirPlan plan;
    FirFilter filter;         // with the taps as its only function; no sampling frequency
    int iterations = 0;       // passes of all exchanges
    double leveled = 0;       // no taps of that length deviate less (within the bound of the gain)
    double deviation = 0;     // largest weighted one
    double approximated = 0;  // the same as far as the grid goes, which leaves out zeros of the type
    double outside_gain = 0;  // largest gain outside the bands; -1 when they leave nothing
    bool optimal = false;     // nothing better is known to exist: as good as the exchange says or as doubles can
    bool bounded = false;     // the gain is held at its bound, or below by fewer taps
    int taps_used = 0;        // without the zeros around them
};

enum class FirTapsVerdict {
    made,
    impossible,  // no grid, or no approximation on it
    stopped,     // by the watcher
};

// NFILT of `task` is the length. `taps` is filled only when they are made.
[[nodiscard]] FirTapsVerdict best_taps(const FirTask& task, Watcher& watcher, FirTaps& taps);

}  // namespace kavrel
