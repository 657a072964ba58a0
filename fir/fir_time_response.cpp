#include "fir/fir_time_response.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace kavrel {

void fir_time_response(const FirFilter& filter, int function, AnalysisResult& results) {
    const std::vector<double> impulse = full_response(filter, function);
    results = {};
    results.kind = AnalysisResult::Kind::time;
    results.time_of = fingerprint(filter);
    results.has_impulse = results.has_step = results.sampled = true;
    results.time_count = static_cast<int>(std::min<std::size_t>(impulse.size(), analysis_points));
    double step = 0.0;
    for (int i = 1; i <= results.time_count; ++i) {
        const double sample = impulse[static_cast<std::size_t>(i) - 1];
        step += sample;
        results.TIME(i) = static_cast<float>((i - 1) / filter.sampling_frequency);
        results.IMPULSE(i) = static_cast<float>(sample);
        results.STEP(i) = static_cast<float>(step);
    }
}

}  // namespace kavrel
