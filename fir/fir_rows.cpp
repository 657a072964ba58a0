#include "fir/fir_rows.h"

#include <cmath>

#include "fir/fir_deviation.h"
#include "fir/fir_task.h"

namespace kavrel {

double ripple_of(double deviation) {
    return deviation < 1 ? 20 * std::log10((1 + deviation) / (1 - deviation)) : std::numeric_limits<double>::infinity();
}

bool has_bands(const FirFilter& filter, int function) {
    return function <= filter.functions && filter.FUNCTION(function).asked && filter.origin == FirOrigin::equal_ripple;
}

RequestCheck check_fir(const FirFilter& filter, int function, Watcher& watcher) {
    RequestCheck check;
    FirTask task;
    const FirRequest& request = filter.request;
    if (!has_bands(filter, function) || take_task(request, task) != nullptr) return check;
    const bool in_db = task.JTYPE == FirType::filter && request.specification_type == FirSpecification::ripple_in_db;
    for (int b = 1; b <= task.BANDS.NBANDS; ++b) {
        if (!watcher.go_on()) return {.stopped = true};
        const CheckBand band{task.BANDS.EDGE(2 * b - 1) * filter.sampling_frequency,
                             task.BANDS.EDGE(2 * b) * filter.sampling_frequency};
        const double deviation = largest_deviation(task, filter, function, b).weighted / task.BANDS.WTX(b);
        if (!in_db) {
            check.rows.push_back(shown_value("deviation", band, deviation));
        } else if (task.BANDS.FX(b) != 0.0) {
            check.rows.push_back(at_most("pass band", band, request.QUADRUPLETS(b, 4), ripple_of(deviation)));
        } else {
            check.rows.push_back(at_least("stopband", band, request.QUADRUPLETS(b, 4), -20 * std::log10(deviation)));
        }
    }
    return check;
}

}  // namespace kavrel
