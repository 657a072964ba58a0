#include "workbench/iir_road.h"

#include "iir/command_tools.h"
#include "iir/digital_design.h"
#include "iir/iir_segment.h"
#include "workbench/design_end.h"
#include "workbench/rooms.h"

namespace kavrel {

namespace {

void hand_over(Workbench& bench, const IirFilter& filter, std::string_view title);

}  // namespace

void iir_road(Workbench& bench, std::string_view title) {
    IirFilter filter;
    DesignedFilter& draft = bench.drafted;
    switch (digitalDesign(draft.found, draft.design, bench.iir_command, bench.session.units, bench.reporter, filter)) {
        case DigitalDesignOutcome::done: return hand_over(bench, filter, title);
        case DigitalDesignOutcome::failed: return discontinue(bench);
        case DigitalDesignOutcome::cancelled: return end_with_function(bench, title);
    }
}

void typed_digital_road(Workbench& bench) { not_implemented(bench); }

namespace {

// An undo leads back to the filter of before.
void hand_over(Workbench& bench, const IirFilter& filter, std::string_view title) {
    IirDesk desk = iir_desk(bench);
    keep_former(kept(desk));
    bench.session.TITLE = title;
    bench.session.filter_file = "";
    bench.filter = bench.drafted;
    bench.iir = filter;
    bench.session.entry(SegmentId::iir) = iir_entry::first_call;
    bench.session.word(SegmentId::iir) = "disp";
    enter_segment(bench, SegmentId::iir);
}

}  // namespace

}  // namespace kavrel
