// What is known of a design beside its result: what a Segment keeps of it for its report and for the request check.
#pragma once

#include "approximation/approximate.h"
#include "approximation/filter_spec.h"

namespace kavrel {

struct DesignBackground {
    FilterSpec request;  // as the approximation was asked
    ApproximationNotes notes;
    double worked_lower_edge = 0;  // Hz, of the problem that was worked on: preshifted or rescaled
    double worked_upper_edge = 0;
};
template <ListedAs<DesignBackground> Record, class Visit>
constexpr void fields_of(Record& background, Visit&& visit) {
    visit("request", background.request);
    visit("notes", background.notes);
    visit("worked_lower_edge", background.worked_lower_edge);
    visit("worked_upper_edge", background.worked_upper_edge);
}
static_assert(lists_each_field<DesignBackground>);

}  // namespace kavrel
