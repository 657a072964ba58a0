// The axes of a plot: round ranges, tick labels, and the labels behind the axes.
//
// An axis shows (value - offset) / 10^exponent: the exponent is a multiple of three, and the offset is other than 0
// only on an axis that is narrow compared with its level.
#pragma once

#include <string>
#include <string_view>

#include "shell/fixed_text.h"
#include "shell/table.h"
#include "shell/units.h"

namespace kavrel {

inline constexpr int tick_label_bound = 26;  // labels of an axis

// Ends of an axis in units of one half of a power of ten.
struct HalfUnits {
    long long low = 0;
    long long high = 0;

    friend bool operator==(const HalfUnits&, const HalfUnits&) = default;
};

// Widens a range by the row of a table for a number without a good divisor. An end counts as odd when its remainder by
// 2 is 1, so that a negative odd end counts as even.
[[nodiscard]] HalfUnits even_half_units(HalfUnits ends, long long number);

struct NiceRange {
    double lo = 0.0;
    double hi = 0.0;
    double offset = 0.0;  // other than 0: the axis shows the deviation from it,
    double amount = 0.0;  // which runs from -amount to amount
};

// The round range that holds lo to hi (exchanged when hi < lo): its ends are multiples of half a power of ten, and it
// sticks out of lo to hi, or falls short of it by at most 1e-4 of that power. A range narrower than 2/21 of its upper
// end's magnitude gets the offset of its middle. Constant data, which is all that differs by less than 1e-12 of its
// magnitude, gets a range of about a power of ten around its level, or -1 to 1 at level 0; ends that are not finite
// count as 0.
[[nodiscard]] NiceRange nice_range(double lo, double hi);

// The range of a plot's axis. Ends between which 4 to 10 round steps fit (1, 2, 2.5 or 5 times a power of ten, the ends
// multiples of them) are left alone; others go to multiples of half a power of ten as in nice_range and, where no round
// steps fit there either, are widened by its table for the number of marks, the half units and one. The axis reaches
// across 0 only where the data do; narrow ranges and constant data are as in nice_range.
[[nodiscard]] NiceRange plot_range(double lo, double hi);

struct PlotAxis {
    double data_min = 0.0;  // of the data, in the data's unit,
    double data_max = 0.0;
    double lo = 0.0;  // and the ends of the axis
    double hi = 1.0;
    double offset = 0.0;
    double amount = 0.0;
    int exponent = 0;     // multiple of three
    double first = 0.0;   // what the ends show: (lo - offset) / 10^exponent,
    double last = 1.0;    // (hi - offset) / 10^exponent
    int label_count = 0;  // at equal steps from `first` to `last`
    Table<FixedText<6>, tick_label_bound> LABELS;
    FixedText<120> label;  // behind the axis, scale factor and offset included
    double span = 0.0;     // hi - lo,
    double snap = 0.0;     // and a fiftieth of it: how near the pointer has to come

    // A value as the axis counts it: value / 10^exponent.
    [[nodiscard]] double shown(double value) const;

    // The value at step `i` from 0 to label_count - 1, in the data's unit.
    [[nodiscard]] double tick(int i) const { return lo + span * i / (label_count - 1); }
};

// The axis for data from lo to hi: its ends as plot_range gives them, its exponent and its tick labels in fields of six
// characters; more than 26 labels count as 26. With label_count 0 their number is chosen: steps are round, fall on
// multiples of themselves, are some eight, and as many as those of the axis beside (steps_beside, 0 for none) where
// that can be had.
[[nodiscard]] PlotAxis scale_text(double lo, double hi, int label_count = 0, int steps_beside = 0);

// The label behind an axis: "Frequency Hz xE3"; on a narrow axis also the offset, ", F0 = 1.000000 KHz" on the x axis,
// and on a y axis under the letter of its quantity: L0 (loss, gain of a circuit), T0 (delay), R0 and G0 (immittance),
// Y0 for the rest.
[[nodiscard]] std::string axis_label(std::string_view label, const PlotAxis& axis, bool is_x, const UnitSet& units);

}  // namespace kavrel
