#include "workbench/ladder_road.h"

#include "passive/command_tools.h"
#include "passive/passive_segment.h"
#include "synthesis/ladder_segment.h"
#include "workbench/design_end.h"
#include "workbench/rooms.h"

namespace kavrel {

namespace {

void hand_over(Workbench& bench, std::string_view title);

}  // namespace

void ladder_road(Workbench& bench, std::string_view title) {
    const SegmentId came_from = bench.session.segment;
    const auto former_title = bench.session.TITLE;
    bench.session.TITLE = title;
    bench.session.entry(SegmentId::ladder) = ladder_entry::designed;
    enter_segment(bench, SegmentId::ladder);
    bench.session.TITLE = former_title;
    if (bench.ladder.outcome == SynthesisOutcome::done) return hand_over(bench, title);
    enter_segment(bench, came_from);
    if (bench.ladder.outcome == SynthesisOutcome::unbuilt) not_implemented(bench);
    if (bench.ladder.outcome == SynthesisOutcome::failed) {
        discontinue(bench);
    } else {
        end_with_function(bench, title);
    }
}

namespace {

// An undo leads back to the circuit of before.
void hand_over(Workbench& bench, std::string_view title) {
    PassiveDesk desk = passive_desk(bench);
    keep_former(kept(desk));
    bench.session.TITLE = title;
    bench.filter = bench.drafted;
    const FilterDesign& design = bench.filter.design;
    bench.passive = {.circuit = bench.ladder.circuit,
                     .designed = true,
                     .spec = bench.filter.found,
                     .transfer = design.transfer,
                     .background = {.request = design.request,
                                    .notes = design.notes,
                                    .worked_lower_edge = design.worked.lowerPassEdge,
                                    .worked_upper_edge = design.worked.upperPassEdge}};
    bench.session.entry(SegmentId::passive) = passive_entry::synthesised;
    bench.session.word(SegmentId::passive) = "show";
    enter_segment(bench, SegmentId::passive);
}

}  // namespace

}  // namespace kavrel
