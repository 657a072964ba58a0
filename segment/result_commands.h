// Commands on the results of an analysis, the same in every Segment that analyses: tables into files, plots.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "segment/desk.h"
#include "shell/plot_form.h"

namespace kavrel {

inline constexpr std::string_view no_analysis_results = plot_messages::no_results.text;

// "Frequency Hz" or "Frequency rad/sec", as the results were asked for.
[[nodiscard]] std::string_view frequency_label(const AnalysisResult& results);

// "tabf", "tabt": the lines of a table into a file whose name the user gives; false when they were not written.
[[nodiscard]] bool tabulate(Desk& desk, std::span<const std::string> lines);

// Marks a table of results that are of another filter than the one that is shown.
void mark_earlier(Fingerprint analysed, Fingerprint shown, std::vector<std::string>& lines);

// How many of the frequencies asked for have no result; nothing where all have one.
void report_points_lost(Desk& desk, int lost, int asked);

// "pltf": the curves that the form chose among the Segment's columns, over the frequency of the last analysis.
void plot_frequency(Desk& desk, const PlotChoice& choice, std::span<const CurveRow> curves, int print_id,
                    int least_points = 2);

// "pltt": impulse response (curve 1) and step response (curve 2) over time.
void plot_time(Desk& desk, const PlotChoice& choice, int print_id, int least_points = 2);

// Opens the window of a plot, or reports why there is none.
void show_plot(Desk& desk, const PlotVerdict& verdict);

// "plpr": the plot that is open, on the printer.
void print_plot_window(Desk& desk);

}  // namespace kavrel
