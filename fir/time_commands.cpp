#include "fir/time_commands.h"

#include "fir/command_tools.h"
#include "fir/fir_time_response.h"
#include "shell/edited.h"

namespace kavrel {

void analyse_time(FirDesk& desk) {
    if (!has_function(desk, needs_function_to_analyze(desk))) return;
    const int n = desk.command.function_number;
    if (!fir_time_response(desk.filter, n, desk.results)) return refuse(desk, results_out_of_range);
    const int taps = desk.filter.FUNCTION(n).taps;
    desk.results.TITLE = desk.session.TITLE.trimmed();
    if (taps > desk.results.time_count) {
        desk.reporter.report_line(
            edited<"(' Time response: first ',I3,' of ',I3,' samples')">(desk.results.time_count, taps));
    }
}

}  // namespace kavrel
