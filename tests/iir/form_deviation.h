// How far a form of a digital filter is from the filter, by its impulse response.
#pragma once

#include <cmath>
#include <vector>

#include "iir/sampled_response.h"
#include "tests/iir/filter_of.h"

namespace kavrel {

// The largest deviation of a form's impulse response from the true one, over its peak.
inline double deviation(const IirFilter& filter, Implementation form, const std::vector<double>& truth) {
    Unwatched watcher;
    const int late = form == Implementation::lattice ? 1 : 0;
    const auto samples = static_cast<long long>(truth.size());
    const TimeRows rows =
        sampled_response(filter, form, AllpassOutput::filter, {.first = 1, .last = samples, .every = 1}, watcher);
    double worst = rows.count == samples ? 0 : HUGE_VAL;
    for (int i = 1; i + late <= rows.count; ++i) {
        const double gap = std::fabs(rows.impulse(i + late) - truth[static_cast<std::size_t>(i) - 1]);
        worst = gap <= worst ? worst : gap;
    }
    return worst / peak_of(truth);
}

}  // namespace kavrel
