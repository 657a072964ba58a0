#include "fir/time_commands.h"

#include "fir/command_tools.h"
#include "fir/fir_time_response.h"
#include "fir/frequency_commands.h"
#include "segment/response_rows.h"
#include "segment/result_commands.h"
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
            edited<"(' Time response: first ',I3,' of ',I0,' samples')">(desk.results.time_count, taps));
    }
}

void tabulate_time(FirDesk& desk) {
    if (const auto why = needs_time_results(desk); !why.empty()) return refuse(desk, why);
    Lines lines = time_lines(desk.results);
    tabulate_results(desk, desk.results.time_of, lines);
}

void plot_time(FirDesk& desk) { plot_time(desk, desk.command.time_plot, fir_print_analysis); }

}  // namespace kavrel
