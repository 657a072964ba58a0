#include "workbench/filter_road.h"

#include <fmt/format.h>

#include "workbench/design_end.h"
#include "workbench/kind_roads.h"
#include "workbench/rooms.h"

namespace kavrel {

namespace {

constexpr std::string_view new_title = "<New Filter>";

bool save(Workbench& bench);
void settle(const FilterRequest& request, Session& session);
void design(Workbench& bench);

}  // namespace

void filter_design_road(Workbench& bench, FormStart start) {
    ask_for_design(bench, start, filter_input, bench.filter_request, [&] {
        settle(bench.filter_request, bench.session);
        if (bench.filter_request.save_design && !save(bench)) return;
        design(bench);
    });
}

namespace {

bool save(Workbench& bench) {
    if (bench.filter_request.FIXED_ZEROS.rows > stored_fixed_zeros) {
        bench.reporter.message(fmt::format("A file has room for {} fixed zeros", stored_fixed_zeros), "Error");
        return false;
    }
    return save_design_input(bench, filter_input, bench.filter_request);
}

// What OK settles beside the fields themselves.
void settle(const FilterRequest& request, Session& session) {
    session.design_kind = static_cast<int>(request.filter_kind);
    if (request.filter_kind == FilterKind::microwave) {
        // Lines have no inductor and capacitor units.
        UnitSet units = session.units;
        units.inductor_index = units.capacitor_index = units.time_index = 1;
        settle_units(units);
        take_units(units, session);
    }
}

void design(Workbench& bench) {
    const FilterRequest request = in_force(bench.filter_request);
    if (request.stopband_type == StopbandChoice::placer) {
        not_implemented(bench);
        return;
    }
    DesignedFilter& draft = bench.drafted;
    draft.found = spec_of(request, bench.session.units);
    draft.found.title.assign(fmt::format("{} {}", new_title, bench.window.date_and_time()));
    const auto verdict =
        designFilter(request.filter_kind, draft.found, draft.design, bench.session.units, bench.reporter);
    if (verdict == FilterDesignVerdict::discontinued) return discontinue(bench);
    bench.design = DesignOutcome::done;
    bench.discontinued_request.reset();
    if (const auto take_over = kind_road(request.filter_kind).design) {
        take_over(bench, new_title);
    } else {
        // A function without a circuit is shown in the main menu.
        if (bench.session.segment != SegmentId::main) enter_segment(bench, SegmentId::main);
        end_with_function(bench, new_title);
    }
}

}  // namespace

}  // namespace kavrel
