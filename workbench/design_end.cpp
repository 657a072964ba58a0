#include "workbench/design_end.h"

#include "shell/finite.h"
#include "workbench/shown.h"

namespace kavrel {

void discontinue(Workbench& bench) {
    bench.design = DesignOutcome::discontinued;
    bench.discontinued_request.reset();
    if (is_finite(bench.drafted.found)) bench.discontinued_request = bench.drafted.found;
    ++bench.discontinued_designs;
    report_failed_design(bench);
}

void report_failed_design(Workbench& bench) {
    constexpr std::string_view stars = " *";
    constexpr std::string_view end = ", design discontinued";
    const std::string line = bench.journal.lines.empty() ? "" : bench.journal.lines.back();
    const auto first = line.find_first_not_of(stars), last = line.find_last_not_of(stars);
    const std::string text = first == std::string::npos ? "" : line.substr(first, last - first + 1);
    bench.reporter.fail(text.ends_with(end) ? text : "Design discontinued: the report says why");
}

void end_with_function(Workbench& bench, std::string_view title) {
    report_missed(bench, check_of(bench.drafted, bench.window));
    if (bench.session.segment != SegmentId::main) return;
    bench.filter = bench.drafted;
    forget(bench.ladder);
    bench.session.TITLE = title;
}

}  // namespace kavrel
