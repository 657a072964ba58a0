#include "iir/frequency_commands.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "iir/command_tools.h"
#include "iir/form_response.h"
#include "segment/response_rows.h"
#include "segment/result_commands.h"

namespace kavrel {

namespace {

constexpr double largest_stored_loss = 100;  // dB
constexpr std::string_view delay_unavailable = "Parallel form, delay is unavailable";
constexpr std::string_view which_output = "Need the sum functions?";

Refusal refusal_of_form(const IirFilter& filter, Implementation form);
FrequencyRows analysed_rows(const IirFilter& filter, Implementation form, const FrequencyGrid& grid);
std::string_view structure_text(Implementation form);
bool asks_for_delay(const PlotChoice& choice);

}  // namespace

void analyse_frequency(IirDesk& desk) {
    const IirFilter& filter = desk.filter;
    const IirRequest& request = desk.command;
    if (const auto why = needs_filter(desk); !why.empty()) return refuse(desk, why);
    if (const Refusal wrong = refusal_of_form(filter, request.analysed); !wrong.empty()) return refuse(desk, wrong);
    if (const Refusal wrong = frequency_refusal(request.frequency); !wrong.empty()) return refuse(desk, wrong);
    const FrequencyGrid grid = frequency_grid(request.frequency, desk.session.units);
    const FrequencyRows rows = analysed_rows(filter, request.analysed, grid);
    if (rows.count == 0) return refuse(desk, no_analysis_results);
    if (!store_frequency(rows, largest_stored_loss, desk.results)) return refuse(desk, results_out_of_range);
    desk.results.frequency_of = fingerprint(filter);
    desk.results.TITLE = desk.session.TITLE.trimmed();
    report_points_lost(desk, grid.count - rows.count, grid.count);
    if (wants_table(desk)) report_lines(desk, frequency_lines(rows, desk.session.TITLE.trimmed()));
    report_done(desk);
}

void tabulate_frequency(IirDesk& desk) {
    if (const auto why = needs_frequency_results(desk); !why.empty()) return refuse(desk, why);
    Lines lines = frequency_lines(stored_rows(desk.results), desk.results.TITLE.trimmed());
    mark_earlier(desk.results.frequency_of, fingerprint(desk.filter), lines);
    if (tabulate(desk, lines)) report_done(desk);
}

void plot_frequency(IirDesk& desk) {
    using Result = AnalysisResult;
    const Result& results = desk.results;
    const PlotChoice& choice = desk.command.frequency_plot;
    if (const auto why = needs_frequency_results(desk); !why.empty()) return refuse(desk, why);
    if (!results.has_delay && asks_for_delay(choice)) return refuse(desk, delay_unavailable);
    bool filter = true;
    std::string output;
    if (results.has_complement && (choice.y1 != no_curve || choice.y2 != no_curve)) {
        const bool sum = desk.reporter.message(which_output, "Question", Buttons::yes_no) == Answer::yes;
        filter = sum != results.difference;
        output = sum ? " sum" : " difference";
    }
    const std::string loss = "Loss (dB)" + output, phase = "Phase (deg)" + output, delay = "Delay (sec)" + output;
    const CurveRow curves[] = {{filter ? &Result::LOSS : &Result::LOSS_COMPLEMENT, &Result::has_loss, loss},
                               {filter ? &Result::PHASE : &Result::PHASE_COMPLEMENT, &Result::has_phase, phase},
                               {filter ? &Result::DELA : &Result::DELAY_COMPLEMENT, &Result::has_delay, delay}};
    plot_frequency(desk, choice, curves, iir_plot::print_analysis, iir_plot::least_points);
}

namespace {

Refusal refusal_of_form(const IirFilter& filter, Implementation form) {
    if (form == Implementation::natural_modes || is_available(filter, form)) return {};
    switch (form) {
        case Implementation::parallel: return {"Parallel implementation not available", "implementation"};
        case Implementation::lattice: return {"Lattice implementation not available", "implementation"};
        case Implementation::direct: return {"Direct implementation not available", "implementation"};
        case Implementation::allpass: return {"Allpass implementation not available", "implementation"};
        case Implementation::cascade:
        case Implementation::natural_modes: break;
    }
    return {"Implementation not selected", "implementation"};
}

// A loss may be infinite: on a zero.
bool is_result(const ResponsePoint& point) {
    return std::isfinite(point.phase) && std::isfinite(point.delay) && point.loss > -HUGE_VAL;
}

FrequencyRows analysed_rows(const IirFilter& filter, Implementation form, const FrequencyGrid& grid) {
    std::vector<double> hertz;
    for (const double f : grid.values()) hertz.push_back(grid.radians ? f / (2 * std::numbers::pi) : f);
    const FormResponse response = form_response(filter, form, hertz);
    FrequencyRows rows{.structure = structure_text(form),
                       .radians = grid.radians,
                       .has_delay = response.has_delay,
                       .has_complement = response.has_complement,
                       .difference = output_that_is_the_filter(filter.kind) == AllpassOutput::difference,
                       .rows = {}};
    for (int i = 1; i <= response.count; ++i) {
        const ResponsePoint &point = response.filter(i), &other = response.complement(i);
        if (is_result(point) && is_result(other)) rows.rows(++rows.count) = {grid.frequencies(i), point, other};
    }
    return rows;
}

std::string_view structure_text(Implementation form) {
    switch (form) {
        case Implementation::cascade: return "cascade";
        case Implementation::parallel: return "parallel";
        case Implementation::lattice: return "lattice";
        case Implementation::direct: return "direct";
        case Implementation::allpass: return "diff. allpass";
        case Implementation::natural_modes: return "natural modes";
    }
    return {};
}

// The third curve of the form.
bool asks_for_delay(const PlotChoice& choice) { return choice.y1 == 3 || choice.y2 == 3; }

}  // namespace

}  // namespace kavrel
