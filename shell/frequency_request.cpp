#include "shell/frequency_request.h"

#include "shell/even_steps.h"

namespace kavrel {

namespace {

int points(const FrequencyRequest& request);
double distance(const FrequencyRequest& request);

}  // namespace

Refusal frequency_refusal(const FrequencyRequest& request) {
    const int count = points(request);
    if (request.start < 0) return {frequency_incorrect, "start"};
    if (count >= 1 && count <= analysis_points) return {};
    const bool rises = request.end > request.start;
    return {frequency_incorrect, !rises ? "end" : request.increment != 0 ? "increment" : "count"};
}

void frequency_rules(const FrequencyRequest& request, FieldStates& states) {
    if (request.frequency_unit != FrequencyUnitChoice::radians) return;
    for (const std::string_view name : {"start", "end", "increment"}) states.unit(name, Unit::radians);
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
