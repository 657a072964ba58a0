#include "fir/frequency_commands.h"

#include <algorithm>
#include <numbers>

#include "fir/command_tools.h"
#include "fir/frequency_response.h"
#include "segment/result_commands.h"
#include "shell/edited.h"

namespace kavrel {

namespace {

constexpr double largest_loss = 200;  // dB
constexpr std::string_view no_frequencies = "No frequencies";

FrequencyRows analysed_rows(const FirFilter& filter, int n, const FrequencyGrid& grid);

}  // namespace

void analyse_frequency(FirDesk& desk) {
    if (!has_function(desk, needs_function_to_analyze(desk))) return;
    const FirCommandRequest& request = desk.command;
    if (const Refusal wrong = frequency_refusal(request.frequency); !wrong.empty()) {
        return refuse(desk, Refusal(no_frequencies, wrong.field));
    }
    const FrequencyGrid grid = frequency_grid(request.frequency, desk.session.units);
    const FrequencyRows rows = analysed_rows(desk.filter, request.function_number, grid);
    if (!store_frequency(rows, largest_loss, desk.results)) return refuse(desk, results_out_of_range);
    desk.results.frequency_of = fingerprint(desk.filter, request.function_number);
    desk.results.TITLE = desk.session.TITLE.trimmed();
    if (wants_table(desk)) report_lines(desk, frequency_lines(rows, desk.session.TITLE.trimmed()));
}

void tabulate_frequency(FirDesk& desk) {
    if (const auto why = needs_frequency_results(desk); !why.empty()) return refuse(desk, why);
    Lines lines = frequency_lines(stored_rows(desk.results), desk.results.TITLE.trimmed());
    tabulate_results(desk, desk.results.frequency_of, lines);
}

void plot_frequency(FirDesk& desk) {
    using Result = AnalysisResult;
    constexpr CurveRow curves[] = {{&Result::LOSS, &Result::has_loss, "Loss (dB)"},
                                   {&Result::PHASE, &Result::has_phase, "Phase (deg)"},
                                   {&Result::DELA, &Result::has_delay, "Delay (sec)"}};
    plot_frequency(desk, desk.command.frequency_plot, curves, fir_print_analysis);
}

namespace {

FrequencyRows analysed_rows(const FirFilter& filter, int n, const FrequencyGrid& grid) {
    std::vector<double> hertz;
    for (const double f : grid.values()) hertz.push_back(grid.radians ? f / (2 * std::numbers::pi) : f);
    FrequencyRows rows{.structure = {}, .radians = grid.radians, .has_delay = true, .rows = {}};
    rows.structure.assign(edited<"('function',I2)">(n));
    for (ResponsePoint point : fir_frequency_response(filter, n, hertz)) {
        point.loss = std::min(point.loss, largest_loss);
        const double frequency = grid.frequencies(++rows.count);
        rows.rows(rows.count) = {frequency, point, {}};
    }
    return rows;
}

}  // namespace

}  // namespace kavrel
