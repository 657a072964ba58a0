#include "segment/result_commands.h"

#include "shell/edited.h"

namespace kavrel {

std::string_view frequency_label(const AnalysisResult& results) {
    return results.radians ? "Frequency rad/sec" : "Frequency Hz";
}

bool tabulate(Desk& desk, std::span<const std::string> lines) {
    return write_lines(desk, lines, ExtSlot::results_table);
}

void mark_earlier(Fingerprint analysed, Fingerprint shown, std::vector<std::string>& lines) {
    if (analysed != shown) lines.insert(lines.begin(), std::string(earlier_results));
}

void report_points_lost(Desk& desk, int lost, int asked) {
    if (lost == 0) return;
    desk.reporter.report_line(
        edited<"(' *** ',I0,' of ',I0,' frequencies ',A,' no result ***')">(lost, asked, lost == 1 ? "has" : "have"));
}

void plot_frequency(Desk& desk, const PlotChoice& choice, std::span<const CurveRow> curves, int print_id,
                    int least_points) {
    const UnitSet& units = desk.session.units;
    const PlotSource source{.kind = AnalysisResult::Kind::frequency,
                            .curves = curves,
                            .x_label = frequency_label(desk.results),
                            .x_unit = desk.results.radians ? 1.0 : units.frequency_multiplier,
                            .print_id = print_id,
                            .least_points = least_points};
    show_plot(desk, plot_results(choice, source, units, desk.results, desk.plot));
}

void plot_time(Desk& desk, const PlotChoice& choice, int print_id, int least_points) {
    constexpr CurveRow curves[] = {{&AnalysisResult::IMPULSE, &AnalysisResult::has_impulse, "Impulse response"},
                                   {&AnalysisResult::STEP, &AnalysisResult::has_step, "Step response"}};
    const UnitSet& units = desk.session.units;
    const PlotSource source{.kind = AnalysisResult::Kind::time,
                            .curves = curves,
                            .x_label = "Time (sec)",
                            .x_unit = units.time_multiplier,
                            .print_id = print_id,
                            .least_points = least_points};
    show_plot(desk, plot_results(choice, source, units, desk.results, desk.plot));
}

void show_plot(Desk& desk, const PlotVerdict& verdict) {
    if (verdict.ok()) {
        desk.window.show_plot(desk.plot);
    } else {
        desk.reporter.message(verdict.text, verdict.caption);
    }
}

void print_plot_window(Desk& desk) {
    if (!desk.plot.open) return refuse(desk, plot_messages::nothing_selected.text);
    if (desk.window.print_plot(desk.plot) == PrintOutcome::failed) refuse(desk, "Printer is not available");
}

}  // namespace kavrel
