#include "shell/time_request.h"

#include "shell/even_steps.h"

namespace kavrel {

std::string_view time_message(const TimeRequest& request) {
    const int steps = steps_of(request.start, request.stop, request.step);
    return request.stop > request.start && steps >= 0 && steps < analysis_points ? "" : time_incorrect;
}

TimeGrid time_grid(const TimeRequest& request, const UnitSet& units) {
    TimeGrid grid;
    grid.count = steps_of(request.start, request.stop, request.step) + 1;
    for (int i = 1; i <= grid.count; ++i) {
        grid.times(i) = (request.start + (i - 1) * request.step) * units.time_multiplier;
    }
    return grid;
}

}  // namespace kavrel
