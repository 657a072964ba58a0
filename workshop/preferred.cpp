#include "workshop/preferred.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

#include "circuit/branch_kinds.h"

namespace kavrel {

namespace {

// IEC 60063. E12 is every second value of E24, E96 every second one of E192.
constexpr std::array E24 = {10, 11, 12, 13, 15, 16, 18, 20, 22, 24, 27, 30, 33,
                            36, 39, 43, 47, 51, 56, 62, 68, 75, 82, 91, 100};
constexpr std::array E192 = {
    100, 101, 102, 104, 105, 106, 107, 109, 110, 111, 113, 114, 115, 117, 118, 120, 121, 123, 124, 126, 127, 129,
    130, 132, 133, 135, 137, 138, 140, 142, 143, 145, 147, 149, 150, 152, 154, 156, 158, 160, 162, 164, 165, 167,
    169, 172, 174, 176, 178, 180, 182, 184, 187, 189, 191, 193, 196, 198, 200, 203, 205, 208, 210, 213, 215, 218,
    221, 223, 226, 229, 232, 234, 237, 240, 243, 246, 249, 252, 255, 258, 261, 264, 267, 271, 274, 277, 280, 284,
    287, 291, 294, 298, 301, 305, 309, 312, 316, 320, 324, 328, 332, 336, 340, 344, 348, 352, 357, 361, 365, 370,
    374, 379, 383, 388, 392, 397, 402, 407, 412, 417, 422, 427, 432, 437, 442, 448, 453, 459, 464, 470, 475, 481,
    487, 493, 499, 505, 511, 517, 523, 530, 536, 542, 549, 556, 562, 569, 576, 583, 590, 597, 604, 612, 619, 626,
    634, 642, 649, 657, 665, 673, 681, 690, 698, 706, 715, 723, 732, 741, 750, 759, 768, 777, 787, 796, 806, 816,
    825, 835, 845, 856, 866, 876, 887, 898, 909, 920, 931, 942, 953, 965, 976, 988, 1000};
static_assert(E192.size() == 193 && E24.size() == 25);

struct Series {
    std::span<const int> decade;
    std::size_t step;
    int unit;  // 1: the decade is from 10 to 100
};
constexpr Series series[] = {{E192, 1, 10}, {E192, 2, 10}, {E24, 1, 1}, {E24, 2, 1}};

constexpr int coarsest = static_cast<int>(PercentClass::ten);

int mark_of(PercentClass percent_class) { return 1 + coarsest - static_cast<int>(percent_class); }
PercentClass class_of(int mark) { return PercentClass{1 + coarsest - mark}; }

template <class Visit>
void for_each_element(Circuit& circuit, Visit visit);

}  // namespace

double preferred_value(double value, PercentClass percent_class) {
    constexpr int most_steps = 20;
    const auto& [decade, step, unit] = series[static_cast<std::size_t>(percent_class) - 1];
    const auto shifted = [](double x, int decades) {
        const long double power = std::pow(10.0L, std::abs(decades));
        return static_cast<double>(decades > 0 ? static_cast<long double>(x) * power
                                               : static_cast<long double>(x) / power);
    };
    const double magnitude = std::fabs(value);
    int decades = 0;
    while (shifted(magnitude, decades) < 10 && decades <= most_steps) ++decades;
    while (shifted(magnitude, decades) >= 100 && -decades <= most_steps) --decades;
    if (std::abs(decades) > most_steps || !std::isfinite(value)) return value;

    const double mantissa = unit * shifted(magnitude, decades);
    std::size_t i = 0;
    while (i + step < decade.size() && mantissa > (decade[i] + decade[i + step]) / 2.0) i += step;
    return std::copysign(shifted(decade[i], -decades - (unit == 10 ? 1 : 0)), value);
}

Refusal preferred(Circuit& circuit, PercentClass percent_class) {
    if (circuit.kind != CircuitKind::lumped) return no_preferred_values;
    const int mark = mark_of(percent_class);
    if (mark < 1 || mark > coarsest) return {"Incorrect specification", "percent_class"};
    if (circuit.preferred >= mark) {
        constexpr double rounding = 1e-12;
        bool still = true;
        for_each_element(circuit, [&](double value) {
            const double in_series = preferred_value(value, class_of(circuit.preferred));
            still = still && std::fabs(value - in_series) <= rounding * std::fabs(value);
        });
        if (still) return {already_preferred, "percent_class"};
    }
    for_each_element(circuit, [&](double& value) { value = preferred_value(value, percent_class); });
    circuit.preferred = mark;
    return {};
}

namespace {

template <class Visit>
void for_each_element(Circuit& circuit, Visit visit) {
    for (int k = circuit.klast; k != 0; k = unpackBranch(circuit, k).kp) {
        const Branch branch = unpackBranch(circuit, k);
        const auto values = branch_values(circuit, branch);
        for (std::size_t i = 0; i < values.size(); ++i) {
            if (element_present(branch_kinds[branch.id], static_cast<int>(i), values[i])) visit(values[i]);
        }
    }
}

}  // namespace

}  // namespace kavrel
