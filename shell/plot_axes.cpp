#include "shell/plot_axes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

#include <fmt/format.h>

#include "shell/edit.h"
#include "shell/whole_part.h"

namespace kavrel {

namespace {

using std::string_view;

constexpr double constant_limit = 1e-12;

// The ends of a range as multiples of half the power of ten 10^p, or of another unit.
struct DecimalRange {
    HalfUnits ends;
    int p = 0;
    double unit = 0.5;
};

double decimal_power(int p);
bool can_be_rounded(double& lo, double& hi);
DecimalRange decimal_range(double lo, double hi);
std::optional<DecimalRange> in_round_steps(double lo, double hi);
NiceRange range_of(const DecimalRange& decimal);
int tick_steps(const NiceRange& range, int steps_beside);
std::string offset_text(string_view label, const PlotAxis& axis, bool is_x, const UnitSet& units);

// How far the ends move apart for a number of half units or marks, by the parity of one of them.
struct Widening {
    long long number;
    bool by_low;  // parity of the low end decides, otherwise that of the high end
    HalfUnits odd;
    HalfUnits even;
};

constexpr std::array<Widening, 9> widenings = {{
    {8, false, {0, 1}, {-1, 0}},
    {10, false, {0, 1}, {-1, 0}},
    {12, false, {0, 1}, {-1, 0}},
    {15, false, {0, 1}, {-1, 0}},
    {20, false, {0, 1}, {-1, 0}},
    {14, false, {-1, 1}, {-1, 1}},
    {19, false, {-1, 1}, {-1, 1}},
    {18, false, {-2, 1}, {-1, 2}},
    {22, true, {-1, 2}, {-2, 1}},
}};

}  // namespace

HalfUnits even_half_units(HalfUnits ends, long long number) {
    for (const Widening& row : widenings) {
        if (row.number != number) continue;
        const HalfUnits& step = (row.by_low ? ends.low : ends.high) % 2 == 1 ? row.odd : row.even;
        return {ends.low + step.low, ends.high + step.high};
    }
    return ends;
}

NiceRange nice_range(double lo, double hi) {
    if (!can_be_rounded(lo, hi)) return {lo, hi, 0.0, 0.0};
    DecimalRange decimal = decimal_range(lo, hi);
    decimal.ends = even_half_units(decimal.ends, decimal.ends.high - decimal.ends.low);
    return range_of(decimal);
}

NiceRange plot_range(double lo, double hi) {
    if (!can_be_rounded(lo, hi)) return {lo, hi, 0.0, 0.0};
    if (const auto as_given = in_round_steps(lo, hi)) return range_of(*as_given);
    DecimalRange decimal = decimal_range(lo, hi);
    HalfUnits& ends = decimal.ends;
    if (const NiceRange range = range_of(decimal); in_round_steps(range.lo, range.hi)) return range;
    ends = even_half_units(ends, ends.high - ends.low + 1);
    if (lo >= 0.0) ends.low = std::max(ends.low, 0LL);
    if (hi <= 0.0) ends.high = std::min(ends.high, 0LL);
    if (range_of(decimal).offset != 0.0)
        ends.high += (ends.high - ends.low) % 2;  // as many on both sides of the middle
    return range_of(decimal);
}

double PlotAxis::shown(double value) const {
    const double s = decimal_power(std::abs(exponent));
    return exponent < 0 ? value * s : value / s;
}

PlotAxis scale_text(double lo, double hi, int label_count, int steps_beside) {
    const NiceRange range = plot_range(lo, hi);
    PlotAxis axis;
    axis.lo = range.lo;
    axis.hi = range.hi;
    axis.offset = range.offset;
    axis.amount = range.amount;
    axis.span = range.hi - range.lo;
    axis.snap = axis.span / 50.0;

    const bool deviation = range.offset != 0.0;
    double m = deviation ? range.amount : std::max(std::abs(range.lo), std::abs(range.hi));
    for (; m >= 1000.0; m /= 1000.0) axis.exponent += 3;
    for (; m > 0.0 && m < 1.0; m *= 1000.0) axis.exponent -= 3;

    axis.first = axis.shown(deviation ? -range.amount : range.lo);
    axis.last = axis.shown(deviation ? range.amount : range.hi);

    axis.label_count = label_count == 0 ? tick_steps(range, steps_beside) + 1 : std::min(label_count, tick_label_bound);
    const int largest = whole_part(std::round(std::max(std::abs(axis.first), std::abs(axis.last))));
    const int decimals = largest >= 100 ? 1 : largest >= 10 ? 2 : largest >= 1 ? 3 : 4;
    for (int i = 0; i < axis.label_count; ++i) {
        double value = axis.first;
        if (i > 0) value += (axis.last - axis.first) * i / (axis.label_count - 1);
        if (std::abs(value) < 1e-9 * m) value = 0.0;  // the rest of a difference, which may bear a sign
        axis.LABELS(i + 1).assign(edit_f(value, 6, decimals));
    }
    return axis;
}

std::string axis_label(string_view label, const PlotAxis& axis, bool is_x, const UnitSet& units) {
    std::string text(trim_right(label));
    if (axis.exponent != 0) text += fmt::format(" xE{}", axis.exponent);
    if (axis.offset != 0.0) text += offset_text(trim_right(label), axis, is_x, units);
    return text;
}

namespace {

double decimal_power(int p) { return std::pow(10.0, p); }

// Orders the ends and leaves them finite and apart, constant data within half a power of ten below and above its level.
// False where the powers of ten come too near to overflow.
bool can_be_rounded(double& lo, double& hi) {
    if (!std::isfinite(lo)) lo = 0.0;
    if (!std::isfinite(hi)) hi = 0.0;
    if (hi < lo) std::swap(lo, hi);
    const double level = std::max(std::abs(lo), std::abs(hi));
    if (level >= 1e290) {
        lo = std::min(lo, 0.0);
        hi = std::max(hi, 0.0);
        return false;
    }
    if (hi - lo > constant_limit * level && hi - lo >= 1e-290) return true;

    const double middle = 0.5 * lo + 0.5 * hi;
    const double d = std::abs(middle) > 1e-280 ? 0.5 * std::pow(10.0, std::floor(std::log10(std::abs(middle)))) : 1.0;
    lo = d == 1.0 ? -1.0 : middle - d;
    hi = d == 1.0 ? 1.0 : middle + d;
    return true;
}

DecimalRange decimal_range(double lo, double hi) {
    DecimalRange decimal;
    double r = hi - lo;
    for (; r >= 10.0; r /= 10.0) ++decimal.p;
    for (; r < 1.0; r *= 10.0) --decimal.p;

    // Dividing by the exact power of a negative p keeps 0.3 from becoming 0.30000000000000004.
    const double s = decimal_power(std::abs(decimal.p));
    const auto scaled = [&](double value) { return decimal.p < 0 ? value * s : value / s; };
    const double lower = scaled(lo);
    const double upper = scaled(hi);
    HalfUnits& ends = decimal.ends;
    ends = {whole_part<long long>(std::floor(2.0 * lower)), whole_part<long long>(std::ceil(2.0 * upper))};
    if (lower - 0.5 * static_cast<double>(ends.low) > 0.4999) ++ends.low;
    if (0.5 * static_cast<double>(ends.high) - upper > 0.4999) --ends.high;
    return decimal;
}

// Round steps by their mantissas, the coarsest first, and what 2.5 costs against the others.
struct RoundStep {
    double mantissa;
    int cost;
};
constexpr std::array<RoundStep, 4> round_steps = {{{5.0, 0}, {2.5, 3}, {2.0, 0}, {1.0, 0}}};

bool is_whole(double number) { return std::abs(number - std::round(number)) < 1e-4; }

// The ends as multiples of a round step, where one fits 4 to 10 times between them; of a finer one, down to as many as
// an axis has labels for, where the ends are no multiples of that.
std::optional<DecimalRange> in_round_steps(double lo, double hi) {
    const int leading = whole_part(std::floor(std::log10(hi - lo)));
    bool divides = false;
    std::optional<DecimalRange> range;
    for (int p = leading; p >= leading - 2; --p) {
        const double s = decimal_power(std::abs(p));
        for (const RoundStep& step : round_steps) {
            const double first = (p < 0 ? lo * s : lo / s) / step.mantissa;
            const double last = (p < 0 ? hi * s : hi / s) / step.mantissa;
            const double steps = last - first;
            if (!is_whole(steps) || steps < 3.5 || steps > tick_label_bound - 0.5) continue;
            divides = divides || steps < 10.5;
            if (divides && !range && is_whole(first))
                range = {.ends = {whole_part<long long>(std::round(first)), whole_part<long long>(std::round(last))},
                         .p = p,
                         .unit = step.mantissa};
        }
    }
    return range;
}

NiceRange range_of(const DecimalRange& decimal) {
    const HalfUnits& ends = decimal.ends;
    const double s = decimal_power(std::abs(decimal.p));
    const auto unscaled = [&](double units) {
        return decimal.p < 0 ? decimal.unit * units / s : decimal.unit * units * s;
    };
    NiceRange range;
    range.lo = unscaled(static_cast<double>(ends.low));
    range.hi = unscaled(static_cast<double>(ends.high));
    if (range.hi - range.lo < 2.0 * std::abs(range.hi) / 21.0) {
        // (lo + hi)/2 and hi - offset, from the integers: nothing cancels.
        range.offset = unscaled(0.5 * static_cast<double>(ends.low + ends.high));
        range.amount = unscaled(0.5 * static_cast<double>(ends.high - ends.low));
    }
    return range;
}

constexpr double cost_not_round = 60;
constexpr double cost_off_multiples = 80;  // labels are not multiples of the step: 0 has none
constexpr double cost_crowded = 30;
constexpr double cost_other_steps = 12;  // than the axis beside, whose grid is drawn

// `first` to `last` in so many steps.
double cost_of(double first, double last, int steps, int steps_beside) {
    constexpr int wanted = 8;
    constexpr int crowded = 21;
    constexpr double close = 1e-6;
    const double step = (last - first) / steps;
    const double mantissa = step / std::pow(10.0, std::floor(std::log10(step) + close));
    double cost = cost_not_round;
    for (const RoundStep& round : round_steps) {
        if (std::abs(mantissa - round.mantissa) < close * round.mantissa) cost = round.cost;
    }
    if (const double multiple = first / step; std::abs(multiple - std::round(multiple)) > 1e-4) {
        cost += cost_off_multiples;
    }
    if (steps_beside > 0 && steps != steps_beside) cost += cost_other_steps;
    return cost + std::abs(steps - wanted) + (steps > crowded ? cost_crowded : 0);
}

// The number of steps that gives the best labels between the ends of a range.
int tick_steps(const NiceRange& range, int steps_beside) {
    const bool deviation = range.offset != 0.0;
    const double first = deviation ? -range.amount : range.lo;
    const double last = deviation ? range.amount : range.hi;
    int best = 0;
    double least = std::numeric_limits<double>::infinity();
    for (int steps = tick_label_bound - 1; steps >= 3; --steps) {
        if (const double cost = cost_of(first, last, steps, steps_beside); cost < least) {
            least = cost;
            best = steps;
        }
    }
    return best;
}

string_view first_characters(string_view text, std::size_t n) { return text.substr(0, std::min(n, text.size())); }

string_view offset_letter(string_view label, bool is_x) {
    if (is_x) return "F0";
    const string_view head = first_characters(label, 4);
    for (const string_view quantity : {"Loss", "Retu", "Tran", "Curr", "Volt"}) {
        if (head == quantity) return "L0";
    }
    if (first_characters(label, 5) == "Delay") return "T0";
    if (head == "Real" || head == "Imag") {
        return label.size() >= 16 && label.substr(13, 3) == "adm" ? "G0" : "R0";
    }
    return "Y0";
}

// Whether the six decimals of a chosen unit blur an offset against the deviations that it is the level of, so that a
// smaller prefix shows more: 29 nsec in seconds are none.
bool is_blurred(const PlotAxis& axis, double unit) {
    return 1e-6 * unit > 0.01 * axis.amount && std::abs(axis.offset) < unit;
}

// ", L0 = 40.050000 dB": the offset by the conversion of component values. Of quantities that the conversion has no
// unit for the unit is the one named in the label, in parentheses.
std::string offset_text(string_view label, const PlotAxis& axis, bool is_x, const UnitSet& units) {
    const string_view letter = offset_letter(label, is_x);
    std::optional<UnitCode> code;
    if (letter == "T0" || (is_x && first_characters(label, 4) == "Time")) code = UnitCode::second;
    if (letter == "F0" && first_characters(label, 4) == "Freq") code = UnitCode::hertz;
    if (letter == "R0") code = UnitCode::ohm;

    const double unit = unit_multiplier(units, code == UnitCode::hertz    ? Unit::frequency
                                               : code == UnitCode::second ? Unit::time
                                                                          : Unit::none);
    std::string text = unit_value_text(units, axis.offset, code.value_or(UnitCode::ohm));
    if (is_blurred(axis, unit)) text = unit_value_text(UnitSet{}, axis.offset, code.value_or(UnitCode::ohm));
    const bool prefixed = text.size() == 16 && text[11] == ' ';  // otherwise a bare number in scientific form
    if (!code && prefixed) {
        text.resize(13);
        if (const auto open = label.find('('); open != string_view::npos) {
            text += label.substr(open + 1, label.find(')', open) - open - 1);
        }
    }
    std::string squeezed = fmt::format(", {} = ", letter);
    for (const char c : trim(text)) {
        if (c != ' ' || squeezed.back() != ' ') squeezed += c;
    }
    return squeezed;
}

}  // namespace

}  // namespace kavrel
