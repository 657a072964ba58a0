// Ranges and labels of axes.
#include "shell/plot_axes.h"

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace kavrel {
namespace {

TEST(NiceRange, WidensHalfUnitsByTheTable) {
    const struct {
        HalfUnits from, to;
    } rows[] = {
        {{0, 8}, {-1, 8}},     {{1, 9}, {1, 10}},  {{0, 10}, {-1, 10}}, {{3, 13}, {3, 14}},  {{2, 14}, {1, 14}},
        {{1, 13}, {1, 14}},    {{1, 16}, {0, 16}}, {{0, 15}, {0, 16}},  {{0, 20}, {-1, 20}}, {{1, 21}, {1, 22}},
        {{0, 14}, {-1, 15}},   {{1, 15}, {0, 16}}, {{0, 19}, {-1, 20}}, {{0, 18}, {-1, 20}}, {{1, 19}, {-1, 20}},
        {{1, 23}, {0, 25}},    {{2, 24}, {0, 25}}, {{0, 2}, {0, 2}},    {{-3, 4}, {-3, 4}},  {{0, 16}, {0, 16}},
        {{-9, -1}, {-10, -1}},  // odd, but negative: as even
        {{-23, -1}, {-25, 0}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(even_half_units(row.from, row.from.high - row.from.low), row.to)
            << row.from.low << " to " << row.from.high;
    }
}

TEST(NiceRange, RoundsOutwards) {
    const struct {
        double lo, hi, nice_lo, nice_hi;
    } rows[] = {
        {0, 7, -0.5, 7.5},
        {7, 0, -0.5, 7.5},
        {0, 3000, 0, 3000},
        {0, 9.9, -0.5, 10},
        {-4.5, -0.5, -5, -0.5},
        {0.5, 4.5, 0.5, 5},
        {0.31, 0.52, 0.3, 0.55},
        {-170, 165, -250, 200},
        {0, 0.49995 + 2, 0, 2.5},
        {0.49995, 3, 0.5, 3},
        {0, 2.00005, 0, 2},
        {0, 2.001, 0, 2.5},
        {1.3e-9, 3.3e-9, 1e-9, 3.5e-9},
        {-2.2e12, 1.1e12, -2.5e12, 2e12},
    };
    for (const auto& row : rows) {
        const NiceRange range = nice_range(row.lo, row.hi);
        EXPECT_DOUBLE_EQ(range.lo, row.nice_lo) << row.lo << " to " << row.hi;
        EXPECT_DOUBLE_EQ(range.hi, row.nice_hi) << row.lo << " to " << row.hi;
        EXPECT_EQ(range.offset, 0.0) << row.lo << " to " << row.hi;
    }
}

TEST(NiceRange, NarrowRangeGetsAnOffset) {
    const struct {
        double lo, hi, offset, amount;
    } rows[] = {
        {40, 40.1, 40.05, 0.05},
        {-40.1, -40, -40.05, 0.05},
        {19.5, 21, 20.25, 0.75},
        {19, 21, 0, 0},  // exactly 2/21
        {10.65e6, 10.75e6, 10.7e6, 0.05e6},
    };
    for (const auto& row : rows) {
        const NiceRange range = nice_range(row.lo, row.hi);
        EXPECT_DOUBLE_EQ(range.offset, row.offset) << row.lo;
        EXPECT_DOUBLE_EQ(range.amount, row.amount) << row.lo;
    }
}

TEST(NiceRange, HoldsAnyDataAndComesToAnEnd) {
    std::mt19937_64 random(20);
    std::uniform_real_distribution<double> mantissa(-10, 10);
    std::uniform_int_distribution<int> exponent(-280, 280);
    for (int i = 0; i < 20000; ++i) {
        const double level = mantissa(random) * std::pow(10.0, exponent(random));
        const double lo = level;
        const double hi = i % 3 == 0 ? level * (1 + 1e-5 * mantissa(random)) : level * mantissa(random);
        const NiceRange range = nice_range(lo, hi);
        const double r = std::abs(hi - lo);
        ASSERT_LT(range.lo, range.hi);
        ASSERT_LE(range.lo, std::min(lo, hi) + 1.01e-4 * r) << lo << " " << hi;
        ASSERT_GE(range.hi, std::max(lo, hi) - 1.01e-4 * r) << lo << " " << hi;
        ASSERT_LE(range.hi - range.lo, 3.0 * r) << lo << " " << hi;
    }
}

TEST(NiceRange, ConstantDataGetsARangeAroundItsLevel) {
    const double inf = std::numeric_limits<double>::infinity();
    const double largest = std::numeric_limits<double>::max();
    for (const double level :
         {0.0, 6.02, -170.0, 1e-3, 1e-12, 99.99, 3.4e38, 1e300, -1e300, largest, -largest, 5e-324}) {
        for (const double next : {level, std::nextafter(level, inf)}) {
            const NiceRange range = nice_range(level, next);
            ASSERT_TRUE(std::isfinite(range.lo) && std::isfinite(range.hi)) << level;
            EXPECT_LT(range.lo, range.hi) << level;
            EXPECT_LE(range.lo, level);
            EXPECT_GE(range.hi, level);
            if (std::abs(level) < 1e280) {
                EXPECT_EQ(range.offset, 0.0) << level;
            }
        }
    }
    EXPECT_DOUBLE_EQ(nice_range(40, 40).lo, 35);
    EXPECT_DOUBLE_EQ(nice_range(40, 40).hi, 45);
    for (const double bad : {inf, -inf, std::nan("")}) {
        EXPECT_LT(nice_range(bad, bad).lo, nice_range(bad, bad).hi);
        EXPECT_DOUBLE_EQ(nice_range(bad, 3).hi, 3);
    }
}

std::string labels_of(const PlotAxis& axis) {
    std::string all;
    for (int i = 1; i <= axis.label_count; ++i) all += (i > 1 ? "," : "") + std::string(trim(axis.LABELS(i).padded()));
    return all;
}

TEST(ScaleText, ExponentsAndDecimals) {
    const struct {
        double lo, hi;
        int labels, exponent;
        std::string_view text;
    } rows[] = {
        {0, 3000, 0, 3, "0.000,0.500,1.000,1.500,2.000,2.500,3.000"},
        {0, 100, 0, 0, "0.0,10.0,20.0,30.0,40.0,50.0,60.0,70.0,80.0,90.0,100.0"},
        {0, 2e-3, 5, -3, "0.000,0.500,1.000,1.500,2.000"},
        {0, 0.03, 4, -3, "0.00,10.00,20.00,30.00"},
        {-90, 90, 3, 0, "-90.00,0.00,90.00"},
        {-0.2, 0.1, 4, -3, "-200.0,-100.0,0.0,100.0"},
        {0, 999.99, 2, 3, "0.000,1.000"},
        {40, 40.1, 3, -3, "-50.00,0.00,50.00"},
        {-40.1, -40, 3, -3, "-50.00,0.00,50.00"},
        {19.5, 21, 4, -3, "-750.0,-250.0,250.0,750.0"},
        {1e9, 4e9, 2, 9, "1.000,4.000"},
        {6, 6, 2, 0, "5.500,6.500"},
        {-0.5, 7.5, 17, 0,
         "-0.500,0.000,0.500,1.000,1.500,2.000,2.500,3.000,3.500,4.000,4.500,5.000,5.500,6.000,6.500,7.000,7.500"},
        {0, 5000, 0, 3, "0.000,0.500,1.000,1.500,2.000,2.500,3.000,3.500,4.000,4.500,5.000"},
        {-180, 180, 0, 0, "-200.0,-150.0,-100.0,-50.0,0.0,50.0,100.0,150.0,200.0"},
        {0, 78, 0, 0, "0.00,10.00,20.00,30.00,40.00,50.00,60.00,70.00,80.00"},
        {454e3, 456e3, 0, 3, "-1.000,-0.800,-0.600,-0.400,-0.200,0.000,0.200,0.400,0.600,0.800,1.000"},
    };
    for (const auto& row : rows) {
        const PlotAxis axis = scale_text(row.lo, row.hi, row.labels);
        EXPECT_EQ(axis.exponent, row.exponent) << row.lo << " to " << row.hi;
        EXPECT_EQ(labels_of(axis), row.text);
        EXPECT_DOUBLE_EQ(axis.snap, (axis.hi - axis.lo) / 50);
    }
}

TEST(ScaleText, ChosenLabelsAreRoundAndTrue) {
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> mantissa(-10, 10);
    std::uniform_int_distribution<int> exponent(-9, 12);
    for (int i = 0; i < 5000; ++i) {
        const double level = mantissa(random) * std::pow(10.0, exponent(random));
        const double hi = i % 2 == 0 ? level * (1 + 1e-4 * mantissa(random)) : level * mantissa(random);
        const PlotAxis axis = scale_text(level, hi);
        ASSERT_GE(axis.label_count, 4);
        ASSERT_LE(axis.label_count, 26);
        const double step = (axis.last - axis.first) / (axis.label_count - 1);
        const double digits = step / std::pow(10.0, std::floor(std::log10(step) + 1e-6) - 1);
        ASSERT_NEAR(digits, std::round(digits), 1e-4) << level << " to " << hi;  // a step of one or two digits
        for (int k = 0; k < axis.label_count; ++k) {
            const std::string text(trim(axis.LABELS(k + 1).padded()));
            ASSERT_EQ(text.find('*'), std::string::npos);
            const double shown = std::stod(text) * std::pow(10.0, axis.exponent) + axis.offset;
            ASSERT_NEAR(shown, axis.tick(k), 1e-6 * axis.span) << text;
        }
    }
}

// Whether steps are 1, 2, 2.5 or 5 times a power of ten, and the ends multiples of them.
bool has_round_steps(const PlotAxis& axis) {
    const double step = (axis.last - axis.first) / (axis.label_count - 1);
    const double digit = step / std::pow(10.0, std::floor(std::log10(step) + 1e-6));
    bool round = false;
    for (const double number : {1.0, 2.0, 2.5, 5.0}) round = round || std::abs(digit - number) < 1e-5;
    return round && std::abs(std::remainder(axis.first, step)) < 1e-4 * step;
}

TEST(PlotRange, KeepsTheEndsThatAreTyped) {
    for (const double unit : {1e-9, 1e-3, 1.0, 10.0, 1e3, 1e6}) {
        for (int low = 0; low <= 20; ++low) {
            for (int high = low + 1; high < low + 10; ++high) {
                const PlotAxis axis = scale_text(low * unit, high * unit);
                EXPECT_DOUBLE_EQ(axis.lo, low * unit);
                EXPECT_DOUBLE_EQ(axis.hi, high * unit);
                EXPECT_TRUE(has_round_steps(axis)) << axis.lo << " to " << axis.hi;
            }
        }
    }
}

TEST(PlotRange, WidensOthersToRoundStepsAndNotAcrossZero) {
    const struct {
        double lo, hi, plot_lo, plot_hi;
    } rows[] = {
        {300, 3400, 0, 3500}, {0, 62.37, 0, 70},           {-62.37, 0, -70, 0},
        {0, 81.2, 0, 90},     {-81.2, -1, -90, 0},         {2, 83.3, 0, 90},
        {0, 14e3, 0, 14e3},   {0.5, 7.5, 0.5, 7.5},        {0.3, 4.3, 0, 4.5},
        {3, 14, 0, 15},       {-170, 165, -200, 200},      {-1, 4.9, -1, 5},
        {1.03, 6.48, 1, 7},   {19.31, 19.44, 19.3, 19.45},
    };
    for (const auto& row : rows) {
        const NiceRange range = plot_range(row.lo, row.hi);
        EXPECT_DOUBLE_EQ(range.lo, row.plot_lo) << row.lo << " to " << row.hi;
        EXPECT_DOUBLE_EQ(range.hi, row.plot_hi) << row.lo << " to " << row.hi;
    }
    std::mt19937_64 random(8);
    std::uniform_real_distribution<double> mantissa(-10, 10);
    std::uniform_int_distribution<int> exponent(-9, 12);
    int alone = 0, beside = 0;
    for (int i = 0; i < 4000; ++i) {
        const double scale = std::pow(10.0, exponent(random));
        const double level = i % 4 == 0 ? 0.0 : mantissa(random) * scale;
        const double other = level + (i % 3 == 0 ? 0.01 : 1.0) * mantissa(random) * scale;
        const double lo = std::min(level, other), hi = std::max(level, other);
        const PlotAxis axis = scale_text(lo, hi);
        const double slack = 1.01e-4 * (hi - lo);
        EXPECT_TRUE(axis.lo <= lo + slack && axis.hi >= hi - slack && axis.span <= 2.2 * (hi - lo)) << lo << " " << hi;
        EXPECT_TRUE((lo < 0 || axis.lo >= 0) && (hi > 0 || axis.hi <= 0)) << lo << " " << hi;
        EXPECT_TRUE(has_round_steps(axis)) << lo << " to " << hi;
        alone += axis.label_count == 11 ? 1 : 0;
        beside += scale_text(lo, hi, 0, 10).label_count == 11 ? 1 : 0;
    }
    EXPECT_GT(beside, alone);  // a second axis takes the first one's grid where it can
}

TEST(AxisLabel, ScaleFactorAndOffset) {
    UnitSet kilohertz;
    kilohertz.frequency_index = 2;
    settle_units(kilohertz);
    const PlotAxis wide = scale_text(0, 3000);
    const PlotAxis level = scale_text(40, 40.1);
    const PlotAxis band = scale_text(10.65e6, 10.75e6);
    const PlotAxis delay = scale_text(1.22e-6, 1.24e-6);
    EXPECT_EQ(axis_label("Frequency Hz  ", wide, true, {}), "Frequency Hz xE3");
    EXPECT_EQ(axis_label("Loss (dB)", scale_text(0, 90), false, {}), "Loss (dB)");
    EXPECT_EQ(axis_label("Delay (sec)", scale_text(0, 2e-6), false, {}), "Delay (sec) xE-6");
    EXPECT_EQ(axis_label("Frequency Hz", band, true, {}), "Frequency Hz xE3, F0 = 10.700000 MHz");
    EXPECT_EQ(axis_label("Frequency Hz", band, true, kilohertz), "Frequency Hz xE3, F0 = 10.700000 MHz");
    EXPECT_EQ(axis_label("Frequency Hz", scale_text(0.99e6, 1.01e6), true, kilohertz),
              "Frequency Hz xE3, F0 = 1000.000000 KHz");
    EXPECT_EQ(axis_label("Time (sec)", delay, true, {}), "Time (sec) xE-9, F0 = 1.230000 usec");
    EXPECT_EQ(axis_label("Delay (sec)", delay, false, {}), "Delay (sec) xE-9, T0 = 1.230000 usec");
    UnitSet fixed;
    fixed.frequency_index = 3;
    fixed.capacitor_index = 5;
    settle_units(fixed);
    EXPECT_EQ(axis_label("Delay (sec)", delay, false, fixed), "Delay (sec) xE-9, T0 = 1.230000 usec")
        << "not 0.000001 sec";
    EXPECT_EQ(axis_label("Frequency Hz", band, true, fixed), "Frequency Hz xE3, F0 = 10.700000 MHz");
    EXPECT_EQ(axis_label("Frequency Hz", scale_text(0.49e6, 0.51e6), true, fixed),
              "Frequency Hz xE3, F0 = 0.500000 MHz");
    EXPECT_EQ(axis_label("Frequency Hz", scale_text(1000, 1001), true, fixed), "Frequency Hz xE-3, F0 = 1.000500 KHz");
    for (const char* label : {"Loss", "Return loss", "Transd. loss", "Current loss", "Voltage loss"}) {
        EXPECT_EQ(axis_label(std::string(label) + " (dB)", level, false, {}),
                  std::string(label) + " (dB) xE-3, L0 = 40.050000 dB");
    }
    EXPECT_EQ(axis_label("Real part of impedance", level, false, {}),
              "Real part of impedance xE-3, R0 = 40.050000 ohm");
    EXPECT_EQ(axis_label("Imag part of admittance", level, false, {}), "Imag part of admittance xE-3, G0 = 40.050000");
    EXPECT_EQ(axis_label("Phase (deg)", scale_text(-40.1, -40), false, {}), "Phase (deg) xE-3, Y0 = -40.050000 deg");
}

}  // namespace
}  // namespace kavrel
