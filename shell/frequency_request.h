// The frequencies that an analysis is asked for: the part of its form, the grid that follows, and its refusal.
#pragma once

#include <string_view>

#include "shell/analysis_result.h"
#include "shell/field_table.h"

namespace kavrel {

enum class FrequencyUnitChoice : int { hertz = 1, radians = 2 };
inline constexpr Choice frequency_unit_choices[] = {{"Hz", FrequencyUnitChoice::hertz},
                                                    {"rad/sec", FrequencyUnitChoice::radians}};

// From `start` to `end` in steps of `increment`, or, with an increment of 0, `count` frequencies at equal distances; in
// the user's frequency unit, or in rad/sec. In the form the one of the two that is given takes the other's place.
struct FrequencyRequest {
    double start = 0;
    double end = 0;
    double increment = 0;
    int count = 0;  // 0 to 501
    FrequencyUnitChoice frequency_unit = FrequencyUnitChoice::hertz;
};

inline constexpr std::string_view frequency_incorrect = "Frequency specification incorrect";

// The fields of a FrequencyRequest that is the member `Member` of a form's record.
template <auto Member>
inline constexpr std::array<Field, 5> frequency_fields = {{
    real<Member, &FrequencyRequest::start>("start", "Start frequency", Unit::frequency),
    real<Member, &FrequencyRequest::end>("end", "End frequency", Unit::frequency),
    real<Member, &FrequencyRequest::increment>("increment", "Increment", Unit::frequency, InsteadOf{"count"}),
    integer<Member, &FrequencyRequest::count>("count", "or no. of frequencies", 0, analysis_points,
                                              InsteadOf{"increment"}),
    radio<Member, &FrequencyRequest::frequency_unit>("frequency_unit", "Frequency in", frequency_unit_choices),
}};

// Of these fields: what is typed in rad/sec has no other unit.
void frequency_rules(const FrequencyRequest& request, FieldStates& states);

// Ascending, in Hz, or in rad/sec with `radians`.
struct FrequencyGrid {
    int count = 0;
    bool radians = false;
    Table<double, analysis_points> frequencies;

    [[nodiscard]] std::span<const double> values() const {
        return std::span<const double>(frequencies.cells).first(static_cast<std::size_t>(count));
    }
};

// What is wrong with a request: `start` must not be negative, the frequencies must rise, and there may be 1
// to 501 of them. A count of 1 asks for `start` alone.
[[nodiscard]] Refusal frequency_refusal(const FrequencyRequest& request);

// The frequencies of a request that passes `frequency_refusal`. A last step that is short of `end` by less than a
// millionth of the increment reaches it.
[[nodiscard]] FrequencyGrid frequency_grid(const FrequencyRequest& request, const UnitSet& units);

}  // namespace kavrel
