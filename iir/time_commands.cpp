#include "iir/time_commands.h"

#include <cmath>

#include "iir/command_tools.h"
#include "iir/frequency_commands.h"
#include "iir/sampled_response.h"
#include "segment/response_rows.h"
#include "segment/result_commands.h"
#include "shell/edited.h"

namespace kavrel {

namespace {

using Lines = std::vector<std::string>;

constexpr std::string_view not_available = "Selected implementation is not available";

void report_rows_left_out(IirDesk& desk, long long asked);
void report_word(IirDesk& desk, double largest_state);
Lines simulated_lines(const AnalysisResult& results, Implementation form);

}  // namespace

void analyse_time(IirDesk& desk) {
    const IirFilter& filter = desk.filter;
    const IirRequest& request = desk.command;
    if (const auto why = needs_filter(desk); !why.empty()) return refuse(desk, why);
    if (!is_available(filter, request.simulated)) return refuse(desk, Refusal(not_available, "implementation"));
    SampleGrid grid;
    if (const Refusal wrong = sample_grid(request.time, desk.session.units, filter.T, grid); !wrong.empty()) {
        return refuse(desk, wrong);
    }
    WindowWatcher watcher(desk.window, "Simulation");
    const SampledResponse response =
        sampled_response(filter, request.simulated, request.output, request.simulated_word, grid, watcher);
    if (watcher.stopped()) return desk.reporter.report_line(stopped_line);
    if (!store_time(response.rows, true, desk.results)) return refuse(desk, results_out_of_range);
    desk.results.time_of = fingerprint(filter);
    desk.results.TITLE = desk.session.TITLE.trimmed();
    report_rows_left_out(desk, grid.count());
    report_word(desk, response.largest_state);
    if (wants_table(desk)) report_lines(desk, simulated_lines(desk.results, request.simulated));
    report_done(desk);
}

void tabulate_time(IirDesk& desk) {
    if (const auto why = needs_time_results(desk); !why.empty()) return refuse(desk, why);
    Lines lines = time_lines(desk.results);
    mark_earlier(desk.results.time_of, fingerprint(desk.filter), lines);
    if (tabulate(desk, lines)) report_done(desk);
}

void plot_time(IirDesk& desk) {
    plot_time(desk, desk.command.time_plot, iir_plot::print_analysis, iir_plot::least_points);
}

namespace {

void report_rows_left_out(IirDesk& desk, long long asked) {
    const int taken = desk.results.time_count;
    if (taken == asked) return;
    desk.reporter.report_line(edited<"(' Time response: first ',I0,' of ',I0,' rows')">(taken, asked));
}

// Nothing limits the states of a fixed word; a register of 32 bits would.
void report_word(IirDesk& desk, double largest_state) {
    const WordLength& word = desk.command.simulated_word;
    if (!word.quantises()) return;
    desk.reporter.report_line(" Time response in words of " + text_of(word));
    const double steps = std::ldexp(largest_state, word.bits);
    if (word.number_form != NumberForm::fixed_point || steps < 0x1p31) return;
    desk.reporter.report_line(edited<"(' Overflow: a state reaches',1P,E10.3,' steps of the word')">(steps));
}

Lines simulated_lines(const AnalysisResult& results, Implementation form) {
    return time_lines(results,
                      {"", "==== Time response of " + std::string(results.TITLE.trimmed()),
                       std::string(structure_name(form)) + " structure ===="},
                      "Pulse resp.");
}

}  // namespace

}  // namespace kavrel
