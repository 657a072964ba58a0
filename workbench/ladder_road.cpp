#include "workbench/ladder_road.h"

#include "passive/passive_segment.h"
#include "synthesis/ladder_segment.h"
#include "workbench/rooms.h"

namespace kavrel {

namespace {

void hand_over(Workbench& bench);

}  // namespace

void ladder_road(Workbench& bench) {
    const SegmentId came_from = bench.session.segment;
    bench.session.entry(SegmentId::ladder) = ladder_entry::designed;
    enter_segment(bench, SegmentId::ladder);
    if (bench.ladder.outcome == SynthesisOutcome::done) {
        hand_over(bench);
        return;
    }
    enter_segment(bench, came_from);
    if (bench.ladder.outcome == SynthesisOutcome::unbuilt) not_implemented(bench);
    if (bench.ladder.outcome == SynthesisOutcome::failed) ++bench.discontinued_designs;
}

namespace {

void hand_over(Workbench& bench) {
    bench.passive = {.circuit = bench.ladder.circuit,
                     .designed = true,
                     .spec = bench.filter_spec,
                     .transfer = bench.filter.transfer,
                     .background = {.request = bench.filter.request,
                                    .notes = bench.filter.notes,
                                    .worked_lower_edge = bench.filter.worked.lowerPassEdge,
                                    .worked_upper_edge = bench.filter.worked.upperPassEdge}};
    bench.session.entry(SegmentId::passive) = passive_entry::synthesised;
    bench.session.word(SegmentId::passive) = "show";
    enter_segment(bench, SegmentId::passive);
}

}  // namespace

}  // namespace kavrel
