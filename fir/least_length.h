// The least length with which a low pass holds its ripples. The weights of such a task are those at which a weighted
// deviation of 1 is the ripple asked for (fir_task.h).
#pragma once

#include "fir/best_taps.h"

namespace kavrel {

struct LeastLength {
    int length = 0;
    bool met = false;  // else no length up to the limit holds them; the largest is taken
    FirTaps taps;
};

// Searches from an estimate of the length, NFILT of `task`, on. The deviation falls with the length among odd and among
// even lengths, since a filter can be padded with zeros; so the least is found when the two lengths below it miss. A
// second band with a value other than 0 takes odd lengths only.
// Takes 4 to 5 designs in the mean.
[[nodiscard]] FirTapsVerdict least_length(const FirTask& task, Watcher& watcher, LeastLength& least);

}  // namespace kavrel
