#include "fir/fir_time_response.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "shell/finite.h"

namespace kavrel {

bool fir_time_response(const FirFilter& filter, int function, AnalysisResult& results) {
    const std::vector<double> impulse = full_response(filter, function);
    AnalysisResult found;
    found.kind = AnalysisResult::Kind::time;
    found.time_of = fingerprint(filter, function);
    found.has_impulse = found.has_step = found.sampled = true;
    found.time_count = static_cast<int>(std::min<std::size_t>(impulse.size(), analysis_points));
    double step = 0.0;
    for (int i = 1; i <= found.time_count; ++i) {
        const double sample = impulse[static_cast<std::size_t>(i) - 1];
        step += sample;
        found.TIME(i) = static_cast<float>((i - 1) / filter.sampling_frequency);
        found.IMPULSE(i) = static_cast<float>(sample);
        found.STEP(i) = static_cast<float>(step);
    }
    if (!all_finite(found.TIME, found.IMPULSE, found.STEP)) return false;
    results = found;
    return true;
}

}  // namespace kavrel
