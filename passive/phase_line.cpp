#include "passive/phase_line.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "shell/edited.h"
#include "shell/finite.h"

namespace kavrel {

namespace {

constexpr double turn = 360.0;

// Degrees by which a delay of 1 sec turns the phase back for each unit of frequency.
double degrees_per_second(bool radians) { return radians ? 180.0 / std::numbers::pi : turn; }

void unwrap(const AnalysisResult& results, PhaseLine& line);
void fit(PhaseLine& line);

}  // namespace

bool has_phase_line(const AnalysisResult& results) {
    return results.has_phase && results.has_delay && results.frequency_count >= 2;
}

bool fit_phase_line(const AnalysisResult& results, PhaseLine& line) {
    if (!has_phase_line(results)) return false;
    line = {};
    line.count = results.frequency_count;
    unwrap(results, line);
    fit(line);
    line.delay = -line.slope / degrees_per_second(results.radians);
    for (int i = 1; i <= line.count; ++i) {
        line.deviation(i) = line.phase(i) - (line.intercept + line.slope * line.frequency(i));
        line.largest = std::max(line.largest, std::abs(line.deviation(i)));
    }
    return all_finite(line.slope, line.largest);  // not where single precision has one frequency for all points
}

std::vector<std::string> phase_line_lines(const PhaseLine& line, bool radians, std::string_view title) {
    std::vector<std::string> lines{"", std::string(title), "", "******* Phase nonlinearity *******", ""};
    lines.push_back(edited<"(A11,A14,A15,A13)">("Frequency", "Phase", "Straight line", "Deviation"));
    lines.push_back(edited<"(A10,A15,2A14)">(radians ? "rad/sec" : "in Hz", "in deg", "in deg", "in deg"));
    for (int i = 1; i <= line.count; ++i) {
        const double phase = line.phase(i);
        const double deviation = line.deviation(i);
        lines.push_back(
            edited<"(1X,1P,D13.6,0P,F12.4,F14.4,F14.6)">(line.frequency(i), phase, phase - deviation, deviation));
    }
    lines.emplace_back();
    lines.push_back(edited<"(' Delay of the straight line =',1P,D15.7,' sec')">(line.delay));
    lines.push_back(edited<"(' Largest deviation          =',1P,D15.7,' deg')">(line.largest));
    return lines;
}

namespace {

void unwrap(const AnalysisResult& results, PhaseLine& line) {
    const double back = degrees_per_second(results.radians);
    for (int i = 1; i <= line.count; ++i) {
        line.frequency(i) = static_cast<double>(results.FREQ(i));
        const auto wrapped = static_cast<double>(results.PHASE(i));
        line.phase(i) = wrapped;
        if (i == 1) continue;
        const double delay = (static_cast<double>(results.DELA(i - 1)) + static_cast<double>(results.DELA(i))) / 2.0;
        const double expected = line.phase(i - 1) - back * delay * (line.frequency(i) - line.frequency(i - 1));
        line.phase(i) += turn * std::round((expected - wrapped) / turn);
    }
}

// Least squares about the means: slope = sum (f - mf)(p - mp)/sum (f - mf)^2, intercept = mp - slope mf.
void fit(PhaseLine& line) {
    double mean_f = 0, mean_p = 0;
    for (int i = 1; i <= line.count; ++i) {
        mean_f += line.frequency(i) / line.count;
        mean_p += line.phase(i) / line.count;
    }
    double products = 0, squares = 0;
    for (int i = 1; i <= line.count; ++i) {
        const double df = line.frequency(i) - mean_f;
        products += df * (line.phase(i) - mean_p);
        squares += df * df;
    }
    line.slope = products / squares;
    line.intercept = mean_p - line.slope * mean_f;
}

}  // namespace

}  // namespace kavrel
