#include "passive/analysis_commands.h"

#include "approximation/time_response.h"
#include "circuit/chain_analysis.h"
#include "circuit/performance_table.h"
#include "passive/command_tools.h"
#include "passive/hindrances.h"
#include "passive/phase_line.h"
#include "shell/edited.h"
#include "shell/finite.h"

namespace kavrel {

namespace {

// Whether single precision holds all rows.
[[nodiscard]] bool fits_results(const Performance& performance);

[[nodiscard]] bool settle_drive(PassiveDesk& desk);
AnalysisRequest analysis_request(const PassiveDesk& desk, const FrequencyGrid& grid);
Performance performance_of(const AnalysisResult& results);
std::vector<std::string> time_lines(const AnalysisResult& results, std::string_view title);
void plot_phase_line(PassiveDesk& desk, const PhaseLine& line);
std::string_view title_of(const PassiveDesk& desk) { return desk.session.TITLE.trimmed(); }

}  // namespace

void analyse_frequency(PassiveDesk& desk) {
    Circuit& circuit = desk.filter.circuit;
    const PassiveRequest& request = desk.command;
    if (const auto why = cannot_analyse_frequency(desk); !why.empty()) return refuse(desk, why);
    if (const Refusal wrong = frequency_refusal(request.frequency); !wrong.empty()) return refuse(desk, wrong);
    const Circuit former = circuit;
    if (!settle_drive(desk)) return;

    const FrequencyGrid grid = frequency_grid(request.frequency, desk.session.units);
    Performance performance;
    WindowWatcher watcher(desk.window, "Frequency analysis");
    const ChainVerdict verdict = analyzeCircuit(circuit, analysis_request(desk, grid), watcher, performance);
    if (watcher.stopped()) {
        circuit = former;
        return desk.reporter.report_line(stopped_line);
    }
    if (verdict != ChainVerdict::done) return refuse(desk, message_of(verdict));
    if (performance.count == 0) return refuse(desk, no_analysis_results);
    if (!fits_results(performance)) return refuse(desk, results_out_of_range);
    store_performance(performance, desk.results);
    desk.state.analysed = grid;
    desk.results.frequency_of = fingerprint(desk.filter);
    desk.results.TITLE = title_of(desk);
    report_points_lost(desk, grid.count - performance.count, grid.count);
    if (wants_table(desk)) report_lines(desk, performance_lines(performance, title_of(desk)));
    report_done(desk);
}

void analyse_time(PassiveDesk& desk) {
    const PassiveFilter& filter = desk.filter;
    const Refusal wrong = time_refusal(desk.command.time);
    if (filter.circuit.kind == CircuitKind::lumped && !wrong.empty()) return refuse(desk, wrong);
    if (const auto why = cannot_analyse_time(desk); !why.empty()) return refuse(desk, why);
    if (!wishes_original(desk, "Analysis")) return;

    const TimeGrid grid = time_grid(desk.command.time, desk.session.units);
    TimeRows rows{.count = grid.count, .time = grid.times, .impulse = {}, .step = {}};
    const auto count = static_cast<std::size_t>(grid.count);
    WindowWatcher watcher(desk.window, "Time response");
    const TimeVerdict verdict =
        time_response(filter.transfer, grid.values(), watcher, std::span(rows.impulse.cells).first(count),
                      std::span(rows.step.cells).first(count));
    if (watcher.stopped()) return desk.reporter.report_line(stopped_line);
    if (verdict != TimeVerdict::done) return refuse(desk, message_of(verdict));
    if (!store_time(rows, false, desk.results)) return refuse(desk, results_out_of_range);
    desk.results.time_of = fingerprint(desk.filter);
    desk.results.TITLE = title_of(desk);
    if (wants_table(desk)) report_lines(desk, time_lines(desk.results, title_of(desk)));
    report_done(desk);
}

void tabulate_frequency(PassiveDesk& desk) {
    if (const auto why = needs_frequency_table(desk); !why.empty()) return refuse(desk, why);
    const Performance performance = performance_of(desk.results);
    auto lines = performance_lines(performance, desk.results.TITLE.trimmed(), ImmittanceHead::bare);
    mark_earlier(desk.results.frequency_of, fingerprint(desk.filter), lines);
    if (tabulate(desk, lines)) report_done(desk);
}

void tabulate_time(PassiveDesk& desk) {
    if (const auto why = needs_time_results(desk); !why.empty()) return refuse(desk, why);
    auto lines = time_lines(desk.results, desk.results.TITLE.trimmed());
    mark_earlier(desk.results.time_of, fingerprint(desk.filter), lines);
    if (tabulate(desk, lines)) report_done(desk);
}

void plot_frequency(PassiveDesk& desk) {
    const AnalysisResult& results = desk.results;
    const std::string loss = std::string(loss_label(performance_of(results).loss_class)) + "loss (dB)";
    const std::string immittance = "part of " + std::string(immittance_label(results.admittance));
    const std::string real = "Real " + immittance;
    const std::string imaginary = "Imag " + immittance;
    const CurveRow curves[] = {{&AnalysisResult::LOSS, &AnalysisResult::has_loss, loss},
                               {&AnalysisResult::PHASE, &AnalysisResult::has_phase, "Phase (deg)"},
                               {&AnalysisResult::DELA, &AnalysisResult::has_delay, "Delay (sec)"},
                               {&AnalysisResult::RETUR, &AnalysisResult::has_return_loss, "Return loss (dB)"},
                               {&AnalysisResult::AREAL, &AnalysisResult::has_immittance, real},
                               {&AnalysisResult::IMAG, &AnalysisResult::has_immittance, imaginary}};
    plot_frequency(desk, desk.command.frequency_plot, curves, passive_plot::print_analysis);
}

void plot_time(PassiveDesk& desk) { plot_time(desk, desk.command.time_plot, passive_plot::print_analysis); }

void phase_nonlinearity(PassiveDesk& desk) {
    PhaseLine line;
    if (!fit_phase_line(desk.results, line)) return refuse(desk, no_analysis_data);
    if (wants_table(desk)) {
        auto lines = phase_line_lines(line, desk.results.radians, desk.results.TITLE.trimmed());
        mark_earlier(desk.results.frequency_of, fingerprint(desk.filter), lines);
        report_lines(desk, lines);
    }
    plot_phase_line(desk, line);
}

void print_phase_nonlinearity(PassiveDesk& desk) {
    if (desk.plot.open && desk.plot.print_id == passive_plot::print_nonlinearity) return print_plot_window(desk);
    PhaseLine line;
    if (!fit_phase_line(desk.results, line)) return refuse(desk, no_analysis_data);
    plot_phase_line(desk, line);
}

namespace {

// A line that ends the circuit may be driven by a voltage or by a current, which the parity of its number records. That
// of a circuit as it was designed is known.
bool settle_drive(PassiveDesk& desk) {
    Circuit& circuit = desk.filter.circuit;
    if (desk.filter.designed && desk.filter.mod == 0.0F) return true;
    if (circuit.kind != CircuitKind::microwave || circuit.klast < 2) return true;
    if (unpackBranch(circuit, circuit.klast).id != BranchId::unit_element) return true;
    const bool by_voltage =
        desk.reporter.message("Is the circuit voltage-driven?", "Question", Buttons::yes_no) == Answer::yes;
    if ((circuit.klast % 2 == 0) == by_voltage) return true;
    const CircuitVerdict verdict = shiftBranches(circuit, circuit.klast, 1);
    if (verdict == CircuitVerdict::done) return true;
    refuse(desk, message_of(verdict));
    return false;
}

bool fits_results(const Performance& performance) {
    const auto fits = [](auto... values) { return all_finite(static_cast<float>(values)...); };
    for (int i = 1; i <= performance.count; ++i) {
        const PerformanceRow& row = performance.rows(i);
        if (!fits(row.frequency, row.phase, row.delay, row.real, row.imaginary)) return false;
    }
    return true;
}

// The row at f = 0 follows from the counters of the design.
AnalysisRequest analysis_request(const PassiveDesk& desk, const FrequencyGrid& grid) {
    AnalysisRequest request{.frequencies = grid.values(),
                            .radians = grid.radians,
                            .loss = {.QL = desk.command.inductor_q, .QC = desk.command.capacitor_q}};
    if (!desk.filter.designed) return request;
    const FilterSpec& spec = desk.filter.spec;
    request.filter_class = spec.filterType == band_pass ? 3 : spec.filterType == high_pass ? 2 : 1;
    request.zeros_at_zero = spec.zerosAtZero;
    return request;
}

// The results as they were stored; the class of the loss follows from the columns that they have.
Performance performance_of(const AnalysisResult& results) {
    Performance performance;
    performance.loss_class = results.has_return_loss ? LossClass::transducer
                             : results.admittance    ? LossClass::voltage
                                                     : LossClass::current;
    performance.doubly_terminated = results.has_return_loss;
    performance.admittance = results.admittance;
    performance.radians = results.radians;
    performance.count = results.frequency_count;
    for (int i = 1; i <= performance.count; ++i) {
        performance.rows(i) = {.frequency = static_cast<double>(results.FREQ(i)),
                               .loss = static_cast<double>(results.LOSS(i)),
                               .phase = static_cast<double>(results.PHASE(i)),
                               .delay = static_cast<double>(results.DELA(i)),
                               .real = static_cast<double>(results.AREAL(i)),
                               .imaginary = static_cast<double>(results.IMAG(i)),
                               .return_loss = static_cast<double>(results.RETUR(i))};
    }
    const int n = performance.count;
    if (n > 0) {
        const double first = performance.rows(1).frequency;
        const double last = performance.rows(n).frequency;
        performance.step = (last - first) / n / last;
    }
    return performance;
}

std::vector<std::string> time_lines(const AnalysisResult& results, std::string_view title) {
    std::vector<std::string> lines{"", std::string(title), "", "===== Time-domain response =====", ""};
    lines.push_back(edited<"(A14,A15,A14)">("Time in sec", "Impulse resp.", "Step resp."));
    for (int i = 1; i <= results.time_count; ++i) {
        lines.push_back(edited<"(1X,1P,3D15.5)">(results.TIME(i), results.IMPULSE(i), results.STEP(i)));
    }
    return lines;
}

void plot_phase_line(PassiveDesk& desk, const PhaseLine& line) {
    AnalysisResult& results = desk.results;
    results.point_count = line.count;
    results.has_y2 = false;
    results.x_label = frequency_label(results);
    results.y1_label = "Phase deviation (deg)";
    results.y2_label = "";
    for (int i = 1; i <= line.count; ++i) {
        results.X_DATA(i) = static_cast<float>(line.frequency(i));
        results.Y1_DATA(i) = static_cast<float>(line.deviation(i));
    }
    const auto points = static_cast<std::size_t>(line.count);
    show_plot(desk, plot_two(desk.plot,
                             {.x = std::span<const float>(results.X_DATA.cells).first(points),
                              .y1 = std::span<const float>(results.Y1_DATA.cells).first(points),
                              .x_label = results.x_label.trimmed(),
                              .y1_label = results.y1_label.trimmed(),
                              .title = results.TITLE.trimmed(),
                              .print_id = passive_plot::print_nonlinearity,
                              .source = results.frequency_of},
                             desk.session.units));
}

}  // namespace

}  // namespace kavrel
