#include "shell/frequency_request.h"

#include "shell/even_steps.h"

namespace kavrel {

namespace {

int points(const FrequencyRequest& request);
double distance(const FrequencyRequest& request);

}  // namespace

std::string_view frequency_message(const FrequencyRequest& request) {
    const int count = points(request);
    return request.start >= 0 && count >= 1 && count <= analysis_points ? "" : frequency_incorrect;
}

FrequencyGrid frequency_grid(const FrequencyRequest& request, const UnitSet& units) {
    FrequencyGrid grid;
    grid.radians = request.frequency_unit == FrequencyUnitChoice::radians;
    grid.count = points(request);
    const double step = distance(request);
    const double unit = grid.radians ? 1.0 : units.frequency_multiplier;
    for (int i = 1; i <= grid.count; ++i) grid.frequencies(i) = (request.start + (i - 1) * step) * unit;
    return grid;
}

namespace {

// By the increment or, where there is none, by the count.
int points(const FrequencyRequest& request) {
    if (request.increment != 0) return steps_of(request.start, request.end, request.increment) + 1;
    return request.count == 1 || request.end > request.start ? request.count : 0;
}

double distance(const FrequencyRequest& request) {
    if (request.increment != 0) return request.increment;
    return request.count > 1 ? (request.end - request.start) / (request.count - 1) : 0;
}

}  // namespace

}  // namespace kavrel
