#include "fir/fir_time_response.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "shell/finite.h"

namespace kavrel {

bool fir_time_response(const FirFilter& filter, int function, AnalysisResult& results) {
    const std::vector<double> impulse = full_response(filter, function);
    TimeRows rows;
    rows.count = static_cast<int>(std::min<std::size_t>(impulse.size(), analysis_points));
    double step = 0.0;
    for (int i = 1; i <= rows.count; ++i) {
        const double sample = impulse[static_cast<std::size_t>(i) - 1];
        step += sample;
        rows.time(i) = (i - 1) / filter.sampling_frequency;
        rows.impulse(i) = sample;
        rows.step(i) = step;
    }
    if (!all_finite(static_cast<float>(rows.time(rows.count))) || !store_time(rows, true, results)) return false;
    results.time_of = fingerprint(filter, function);
    return true;
}

}  // namespace kavrel
