#include "iir/frequency_commands.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "iir/command_tools.h"
#include "iir/frequency_table.h"
#include "segment/result_commands.h"
#include "shell/finite.h"

namespace kavrel {

namespace {

constexpr double largest_stored_loss = 100;  // dB
constexpr std::string_view delay_unavailable = "Parallel form, delay is unavailable";
constexpr std::string_view which_output = "Need the sum functions?";

Refusal refusal_of_form(const IirFilter& filter, Implementation form);
FrequencyRows analysed_rows(const IirFilter& filter, Implementation form, const FrequencyGrid& grid);
[[nodiscard]] bool fits_results(const FrequencyRows& rows);
void store(const FrequencyRows& rows, AnalysisResult& results);
FrequencyRows stored_rows(const AnalysisResult& results);
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
    if (!fits_results(rows)) return refuse(desk, results_out_of_range);
    store(rows, desk.results);
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

bool fits_results(const FrequencyRows& rows) {
    for (int i = 1; i <= rows.count; ++i) {
        const FrequencyRow& row = rows.rows(i);
        const auto fits = [](auto... values) { return all_finite(static_cast<float>(values)...); };
        if (!fits(row.frequency, row.filter.delay, row.complement.delay)) return false;
    }
    return true;
}

void store(const FrequencyRows& rows, AnalysisResult& results) {
    results.kind = AnalysisResult::Kind::frequency;
    results.frequency_count = rows.count;
    results.radians = rows.radians;
    results.structure = rows.structure;
    results.has_loss = results.has_phase = true;
    results.has_delay = rows.has_delay;
    results.has_complement = rows.has_complement;
    results.difference = rows.difference;
    results.has_return_loss = results.has_immittance = false;
    const auto stored_loss = [](double loss) { return static_cast<float>(std::min(loss, largest_stored_loss)); };
    for (int i = 1; i <= rows.count; ++i) {
        const auto& [frequency, filter, complement] = rows.rows(i);
        results.FREQ(i) = static_cast<float>(frequency);
        results.frequency(i) = frequency;
        results.LOSS(i) = stored_loss(filter.loss);
        results.PHASE(i) = static_cast<float>(filter.phase);
        results.DELA(i) = static_cast<float>(filter.delay);
        results.LOSS_COMPLEMENT(i) = stored_loss(complement.loss);
        results.PHASE_COMPLEMENT(i) = static_cast<float>(complement.phase);
        results.DELAY_COMPLEMENT(i) = static_cast<float>(complement.delay);
    }
}

FrequencyRows stored_rows(const AnalysisResult& results) {
    FrequencyRows rows{.structure = results.structure.trimmed(),
                       .radians = results.radians,
                       .has_delay = results.has_delay,
                       .has_complement = results.has_complement,
                       .difference = results.difference,
                       .count = results.frequency_count,
                       .rows = {}};
    const auto point = [](float loss, float phase, float delay) -> ResponsePoint {
        return {static_cast<double>(loss), static_cast<double>(phase), static_cast<double>(delay)};
    };
    for (int i = 1; i <= rows.count; ++i) {
        rows.rows(i) = {results.frequency(i), point(results.LOSS(i), results.PHASE(i), results.DELA(i)),
                        point(results.LOSS_COMPLEMENT(i), results.PHASE_COMPLEMENT(i), results.DELAY_COMPLEMENT(i))};
    }
    return rows;
}

// The third curve of the form.
bool asks_for_delay(const PlotChoice& choice) { return choice.y1 == 3 || choice.y2 == 3; }

}  // namespace

}  // namespace kavrel
