// The times that an analysis is asked for: the part of its form, the grid that follows, and its refusal.
#pragma once

#include <string_view>

#include "shell/analysis_result.h"
#include "shell/field_table.h"

namespace kavrel {

// From `start` to `stop` in steps of `step`, in the user's time unit.
struct TimeRequest {
    double start = 0;
    double stop = 0;
    double step = 0;
};

inline constexpr std::string_view time_incorrect = "Incorrect time specification";

// The fields of a TimeRequest that is the member `Member` of a form's record.
template <auto Member>
inline constexpr std::array<Field, 3> time_fields = {{
    real<Member, &TimeRequest::start>("start", "Start time", Unit::time),
    real<Member, &TimeRequest::stop>("stop", "Stop time", Unit::time),
    real<Member, &TimeRequest::step>("step", "Time step", Unit::time),
}};

// Ascending, in seconds.
struct TimeGrid {
    int count = 0;
    Table<double, analysis_points> times;

    [[nodiscard]] std::span<const double> values() const {
        return std::span<const double>(times.cells).first(static_cast<std::size_t>(count));
    }
};

// What is wrong with a request: `stop` must lie above `start`, the step must be positive, and there may be at
// most 501 times.
[[nodiscard]] Refusal time_refusal(const TimeRequest& request);

// The times of a request that passes `time_refusal`.
[[nodiscard]] TimeGrid time_grid(const TimeRequest& request, const UnitSet& units);

}  // namespace kavrel
