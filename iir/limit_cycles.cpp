#include "iir/limit_cycles.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

#include "shell/edited.h"
#include "shell/whole_part.h"

namespace kavrel {

namespace {

struct Bounds {
    double angle = 0;  // rad a sample
    double amplitude = HUGE_VAL;
    double rms = HUGE_VAL;
};
Bounds bounds_of(double c1, double c2);
double numerator_gain(const CascadeForm& c, int k, double angle);
double whole_steps(double bound);

}  // namespace

std::vector<LimitCycle> limit_cycles(const IirFilter& filter) {
    const CascadeForm& c = filter.cascade;
    std::vector<LimitCycle> cycles;
    for (int k = 1; k <= c.NDEN; ++k) {
        const Bounds bounds = bounds_of(c.C1D(k), c.C2D(k));
        const double rms = whole_steps(bounds.rms);
        const double gain = numerator_gain(c, k, bounds.angle);
        cycles.push_back({.section = k,
                          .frequency = bounds.angle / (2 * std::numbers::pi * filter.T),
                          .amplitude_bound = whole_steps(bounds.amplitude),
                          .rms = rms,
                          .output_rms = std::isfinite(rms) ? whole_steps(rms * gain) : HUGE_VAL});
    }
    return cycles;
}

Lines limitCycleReport(const std::vector<LimitCycle>& cycles) {
    Lines lines{"", edited<"(8X,A)">("**** limit-cycle information ****"),
                edited<"(3X,A,4X,A,9X,A,5X,A)">("sect.", "freq.", "amplitude", "output"),
                edited<"(12X,A,7X,A,5X,A)">("(hz)", "bound", "rms")};
    const auto whole = [](double steps) { return whole_part<long long>(steps); };
    for (const LimitCycle& cycle : cycles) {
        std::string line = edited<"(4X,I2,3X,1P,E10.3,2X)">(cycle.section, cycle.frequency);
        line +=
            std::isfinite(cycle.amplitude_bound)
                ? edited<"(I6,3X,I6,3X,I6)">(whole(cycle.amplitude_bound), whole(cycle.rms), whole(cycle.output_rms))
                : "no bound: a pole is not inside the unit circle";
        lines.push_back(line);
    }
    for (const auto notice : {"This data applies to the canonical implementations available through",
                              "the 'View/Design' menu option. Other implementations also exist with",
                              "different limit cycle data, some with no limit cycles at all"}) {
        lines.emplace_back(notice);
    }
    return lines;
}

namespace {

// Of 1/(1 + c1 z^-1 + c2 z^-2).
Bounds bounds_of(double c1, double c2) {
    const double a = std::fabs(c1), b = c2, at_end = (1 - a) + b;
    const bool stable = b < 1 && at_end > 0;
    const bool resonates = b > 0 && 4 * b > a * (1 + b);
    Bounds bounds{.angle = c1 < 0 ? 0 : std::numbers::pi};
    if (stable) bounds.amplitude = bounds.rms = 1 / at_end;
    const double r = std::sqrt(std::max(b, 0.0));
    if (b <= 0 || 2 * r <= a) return bounds;
    const double sine = std::sqrt((2 * r - a) * (2 * r + a)) / (2 * r), den = (1 - b) * sine;
    if (resonates) bounds.angle = std::atan2(sine, -c1 / (2 * r));
    if (stable) bounds.amplitude = std::min(1 / ((1 - r) * (1 - r)), (1 + r) / den);
    if (stable && resonates) bounds.rms = 1 / den;
    return bounds;
}

// Without C1D a section with real poles rings at both ends of the band: the larger gain of the two.
double numerator_gain(const CascadeForm& c, int k, double angle) {
    const double n0 = c.SC(k), n1 = k <= c.NNUM ? c.C1N(k) : 0, n2 = k <= c.NNUM ? c.C2N(k) : 0;
    if (c.C1D(k) == 0 && c.C2D(k) <= 0) return std::fabs(n0 + n2) + std::fabs(n1);
    if (angle == 0) return std::fabs(n0 + n1 + n2);
    if (angle == std::numbers::pi) return std::fabs(n0 - n1 + n2);
    return std::abs(n0 + n1 * std::polar(1.0, angle) + n2 * std::polar(1.0, 2 * angle));
}

// A bound that is a whole number but for its rounding is that number.
double whole_steps(double bound) { return std::floor(bound * (1 + 1e-12)); }

}  // namespace

}  // namespace kavrel
