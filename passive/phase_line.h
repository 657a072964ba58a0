// How far a phase is from a straight line.
#pragma once

#include <string>
#include <vector>

#include "shell/analysis_result.h"

namespace kavrel {

// The phase of a frequency analysis without its jumps by 360 degrees, and its straight line intercept + slope f of
// least squares.
struct PhaseLine {
    int count = 0;
    Table<double, analysis_points> frequency;  // Hz or rad/sec, as analysed
    Table<double, analysis_points> phase;      // degrees, continuous; the first is that of the analysis
    Table<double, analysis_points> deviation;  // degrees, phase less line
    double intercept = 0;                      // degrees
    double slope = 0;                          // degrees by the unit of frequency
    double delay = 0;                          // seconds, the delay that the slope means
    double largest = 0;                        // magnitude of the largest deviation, degrees
};

// Whether the results have what it takes.
[[nodiscard]] bool has_phase_line(const AnalysisResult& results);

// From two points on; false with fewer, or without a phase. From one point to the next the phase falls by 360 degrees
// times frequency step times the mean of the two delays: the turn that brings the wrapped phase nearest to that is
// added. So points may lie as far apart as the delay is smooth.
[[nodiscard]] bool fit_phase_line(const AnalysisResult& results, PhaseLine& line);

// Frequency, phase, line and deviation of each point, with the delay of the line and the largest deviation below.
[[nodiscard]] std::vector<std::string> phase_line_lines(const PhaseLine& line, bool radians, std::string_view title);

}  // namespace kavrel
