#include "workbench/design_end.h"

#include "workbench/shown.h"

namespace kavrel {

void discontinue(Workbench& bench) {
    bench.design = DesignOutcome::discontinued;
    bench.discontinued_request = bench.drafted.found;
    ++bench.discontinued_designs;
}

void keep_function(Workbench& bench, std::string_view title) {
    bench.filter = bench.drafted;
    forget(bench.ladder);
    bench.session.TITLE = title;
    for (const std::string& line : missed_lines(check_of_function(bench))) bench.reporter.report_line(line);
}

}  // namespace kavrel
