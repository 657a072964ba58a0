#include "workbench/design_end.h"

#include "shell/finite.h"
#include "workbench/shown.h"

namespace kavrel {

void discontinue(Workbench& bench) {
    bench.design = DesignOutcome::discontinued;
    bench.discontinued_request.reset();
    if (is_finite(bench.drafted.found)) bench.discontinued_request = bench.drafted.found;
    ++bench.discontinued_designs;
    bench.reporter.fail(design_discontinued);
}

void end_with_function(Workbench& bench, std::string_view title) {
    report_missed(bench, check_of(bench.drafted, bench.window));
    if (bench.session.segment != SegmentId::main) return;
    bench.filter = bench.drafted;
    forget(bench.ladder);
    bench.session.TITLE = title;
}

}  // namespace kavrel
