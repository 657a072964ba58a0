#include "shell/time_request.h"

#include "shell/even_steps.h"

namespace kavrel {

Refusal time_refusal(const TimeRequest& request) {
    const int steps = steps_of(request.start, request.stop, request.step);
    if (!(request.stop > request.start)) return {time_incorrect, "stop"};
    return steps >= 0 && steps < analysis_points ? Refusal() : Refusal(time_incorrect, "step");
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
