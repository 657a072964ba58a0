#include "shell/units.h"

#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "shell/number_text.h"
#include "shell/settings.h"
#include "tests/support/scratch_folder.h"

namespace kavrel {
namespace {

UnitSet chosen(int frequency, int inductor, int capacitor, int time) {
    UnitSet units;
    units.frequency_index = frequency;
    units.inductor_index = inductor;
    units.capacitor_index = capacitor;
    units.time_index = time;
    settle_units(units);
    return units;
}

TEST(UnitValueText, EngineeringFormOfEveryPrefixAndUnit) {
    const struct {
        double value;
        UnitCode code;
        const char* text;
    } rows[] = {
        {0.0, ohm, "   0.000000  ohm"},           {1000.0, henry, "   1.000000 KH  "},
        {47.0, ohm, "  47.000000  ohm"},          {-2.2e-9, farad, "  -2.200000 nF  "},
        {1.0e-12, farad, "   1.000000 pF  "},     {4.7e-14, farad, "  47.000000 fF  "},
        {3.3e-6, henry, "   3.300000 uH  "},      {1.5e-3, second, "   1.500000 msec"},
        {2.5e6, hertz, "   2.500000 MHz "},       {10.7e9, hertz, "  10.700000 GHz "},
        {3.0e13, hertz, "  30.000000 THz "},      {999.9999, ohm, " 999.999900  ohm"},
        {999.9999999, henry, "   1.000000 KH  "}, {800.0, hertz, " 800.000000  Hz "},
        {999.99999, hertz, " 999.999990  Hz "},   {1.0e14, ohm, " 100.000000 Tohm"},
    };
    for (const auto& row : rows) EXPECT_EQ(unit_value_text({}, row.value, row.code), row.text) << row.value;
}

TEST(UnitValueText, OpenAndScientificBeyondThePrefixes) {
    EXPECT_EQ(unit_value_text({}, 1.0e26, ohm), " *** open ***   ");
    EXPECT_EQ(unit_value_text({}, 1.1e25, henry), " *** open ***   ");
    EXPECT_EQ(unit_value_text({}, 1.0e26, farad), " 1.000000000E+26");
    EXPECT_EQ(unit_value_text({}, 1.0e25, ohm), " 1.000000000E+25");
    EXPECT_EQ(unit_value_text({}, 1.0e-16, farad), " 1.000000000E-16");
    EXPECT_EQ(unit_value_text({}, -2.5e15, hertz), "-2.500000000E+15");
    EXPECT_EQ(unit_value_text({}, std::nan(""), ohm).size(), 16U);
}

TEST(UnitValueText, FixedUnitsOfTheUser) {
    const UnitSet units = chosen(3, 4, 5, 3);
    EXPECT_EQ(unit_value_text(units, 2.5e9, hertz), "2500.000000 MHz ");
    EXPECT_EQ(unit_value_text(units, 1.5e-6, henry), "1500.000000 nH  ");
    EXPECT_EQ(unit_value_text(units, 3.3e-12, farad), "   3.300000 pF  ");
    EXPECT_EQ(unit_value_text(units, 2.0e-6, second), "   2.000000 usec");
    EXPECT_EQ(unit_value_text(units, 4700.0, ohm), "   4.700000 Kohm") << "resistances have no unit of the user's";
    const struct {
        double value;
        UnitCode code;
        const char* text;
    } edges[] = {
        {9999.999999e-9, henry, "9999.999999 nH  "}, {10e-6, henry, "  10.000000 uH  "},  // one digit too many
        {-999.999999e6, hertz, "-999.999999 MHz "},  {-1e9, hertz, "  -1.000000 GHz "},
        {9999.9999999e6, hertz, "  10.000000 GHz "}, {1.0e3, henry, "   1.000000 KH  "},
        {1.0e-15, farad, "   0.001000 pF  "},        {0.99e-15, farad, " 9.900000000E-16"},  // one decimal too few
        {1500.0, hertz, "   0.001500 MHz "},         {999.9, hertz, " 999.900000  Hz "},
        {-0.5e-9, second, "-500.000000 psec"},       {0.0, farad, "   0.000000 pF  "},
    };
    for (const auto& row : edges) EXPECT_EQ(unit_value_text(units, row.value, row.code), row.text) << row.value;
    const UnitSet frequency_only = chosen(2, 1, 1, 1);
    EXPECT_EQ(unit_value_text(frequency_only, 50.0, hertz), "   0.050000 KHz ");
    EXPECT_EQ(unit_value_text(frequency_only, 1.0e-9, farad), "   1.000000 nF  ");
}

TEST(Units, ElementUnitsNeedAFrequencyUnitAboveHertz) {
    const UnitSet hertz_only = chosen(1, 4, 5, 3);
    EXPECT_EQ(hertz_only, UnitSet{});
    const UnitSet full = chosen(4, 5, 2, 0);
    EXPECT_EQ(full.fixed_units, 3);
    EXPECT_EQ(full.frequency_in_unit, 1);
    EXPECT_EQ(full.frequency_multiplier, 1.0e9);
    EXPECT_EQ(full.inductor_multiplier, 1.0e-12);
    EXPECT_EQ(full.capacitor_multiplier, 1.0e-3);
    EXPECT_EQ(full.time_multiplier, 1.0);
    EXPECT_EQ(full.time_index, 1) << "a time unit that was not chosen is the second";
    const UnitSet frequency_only = chosen(3, 1, 1, 1);
    EXPECT_EQ(frequency_only.fixed_units, 0);
    EXPECT_EQ(frequency_only.frequency_in_unit, 1);
}

TEST(Units, SuffixesOfLabels) {
    const UnitSet units = chosen(2, 3, 4, 2);
    EXPECT_EQ(unit_suffix({}, Unit::frequency), " ( Hz)");
    EXPECT_EQ(unit_suffix({}, Unit::time), " ( sec)");
    EXPECT_EQ(unit_suffix(units, Unit::frequency), " (KHz)");
    EXPECT_EQ(unit_suffix(units, Unit::time), " (msec)");
    EXPECT_EQ(unit_suffix(units, Unit::inductor), " (uH)");
    EXPECT_EQ(unit_suffix(units, Unit::capacitor), " (nF)");
    EXPECT_EQ(unit_suffix(units, Unit::none), "");
}

TEST(Settings, FileIsWrittenInItsFixedFormatAndComesBack) {
    const ScratchFolder folder;
    const UnitSet units = chosen(3, 3, 4, 2);
    ASSERT_TRUE(write_settings("q_qxz", units));
    EXPECT_EQ(read_text("q_qxz"),
              "   1.00000000E+06   1.00000000E-06   1.00000000E-09   1.00000000E-03\n"
              "       3       3       4       2       3       1\n");
    UnitSet back;
    EXPECT_EQ(read_settings("q_qxz", back), SettingsStatus::read);
    EXPECT_EQ(back, units);
}

TEST(Settings, MultipliersRuleTheIndices) {
    const ScratchFolder folder;
    const struct {
        const char* multipliers;
        int frequency, inductor, capacitor, time;
    } rows[] = {
        {"1000.0 1.0 1.0 1.0", 2, 1, 1, 1},
        {"1.D+06 1.0E-06 1.0D-12 1.0D-03", 3, 3, 5, 2},
        {"1.0E+09 1.0E-12 1.0E-03 1.0E-09", 4, 5, 2, 4},
        {"999.0 1.01E-03 1.0 1.0", 1, 1, 1, 1},
        {"1.0E+03, 1.0E-09, 1.0E-06, 1.0E-12", 2, 4, 3, 5},
    };
    for (const auto& row : rows) {
        write_text("q_qxz", std::string(row.multipliers) + "\n 4 5 5 5 3 1\n");
        UnitSet units;
        ASSERT_EQ(read_settings("q_qxz", units), SettingsStatus::read) << row.multipliers;
        EXPECT_EQ(units.frequency_index, row.frequency) << row.multipliers;
        EXPECT_EQ(units.inductor_index, row.inductor) << row.multipliers;
        EXPECT_EQ(units.capacitor_index, row.capacitor) << row.multipliers;
        EXPECT_EQ(units.time_index, row.time) << row.multipliers;
        EXPECT_EQ(units.fixed_units, 3);
        EXPECT_EQ(units.frequency_in_unit, 1);
    }
}

TEST(Settings, DamageChangesNothing) {
    const ScratchFolder folder;
    const UnitSet before = chosen(2, 2, 2, 2);
    UnitSet units = before;
    EXPECT_EQ(read_settings("q_qxz", units), SettingsStatus::missing);
    for (const char* text :
         {"", "\n\n", "noise", "1 1 1\n1 1 1 1 0 0\n", "1 1 1 1\n1 1 1 1 0\n", "1 nan 1 1\n1 1 1 1 0 0\n",
          "0 1 1 1\n1 1 1 1 0 0\n", "-1000 1 1 1\n1 1 1 1 0 0\n", "1e12 1 1 1\n1 1 1 1 0 0\n",
          "1 10000 1 1\n1 1 1 1 0 0\n", "1 1 1 1e999\n1 1 1 1 0 0\n", "\x01\xff\x7f\n\x02"}) {
        write_text("q_qxz", text);
        EXPECT_EQ(read_settings("q_qxz", units), SettingsStatus::damaged) << text;
        EXPECT_EQ(units, before) << text;
    }
    EXPECT_FALSE(write_settings("/nonexistent/q_qxz", units));
}

struct QuantityCase {
    const char* text;
    double value;  // in KHz, mH, nF and sec
    Unit unit;
};

TEST(Quantities, AreReadInTheUsersUnit) {
    UnitSet units{.frequency_index = 2, .inductor_index = 2, .capacitor_index = 4};
    settle_units(units);
    const QuantityCase cases[] = {{"1 kHz", 1, Unit::frequency},
                                  {"2.5MHz", 2500, Unit::frequency},
                                  {"1 mHz", 1e-6, Unit::frequency},
                                  {"1.5e3 Hz", 1.5, Unit::frequency},
                                  {"47 nF", 47, Unit::capacitor},
                                  {"47n", 47e-9, Unit::none},
                                  {"0.1 \u00b5F", 100, Unit::capacitor},
                                  {"10F", 1e10, Unit::capacitor},
                                  {"10f", 1e-14, Unit::none},
                                  {"33 uH", 0.033, Unit::inductor},
                                  {"600 ohm", 600, Unit::resistance},
                                  {"4.7k\u03a9", 4700, Unit::resistance},
                                  {"60 dB", 60, Unit::decibel},
                                  {"5 ms", 0.005, Unit::time},
                                  {"3 sec", 3, Unit::time},
                                  {"100 k", 1e5, Unit::none},
                                  {"2 rad/s", 2, Unit::radians},
                                  {"-1 KHz", -1, Unit::frequency}};
    for (const auto& [text, value, unit] : cases) {
        const auto found = parse_quantity(text, units);
        ASSERT_TRUE(found) << text;
        EXPECT_EQ(found->value, value) << text;
        EXPECT_EQ(found->unit, unit) << text;
    }
    for (const char* wrong :
         {"", "Hz", "kHz", "1 khz", "1 Hertz", "1 kkHz", "1 k Hz z", "1 HZ", "ohm 5", "1 2 Hz", "nan Hz"})
        EXPECT_FALSE(parse_quantity(wrong, units)) << wrong;
    EXPECT_EQ(unknown_unit("1 khz"), "khz");
    EXPECT_EQ(unknown_unit("fast"), "");
}

TEST(Quantities, AreWrittenAsTheyMayBeTyped) {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> exponent(-14, 12);
    for (int i = 0; i < 2000; ++i) {
        const double value = std::pow(10.0, exponent(random));
        const auto back = parse_quantity(quantity_text(value, Unit::frequency), {});
        ASSERT_TRUE(back) << quantity_text(value, Unit::frequency);
        EXPECT_NEAR(back->value, value, 1e-4 * value);
    }
    EXPECT_EQ(quantity_text(1e6, Unit::frequency), "1 MHz");
    EXPECT_EQ(quantity_text(4.7e-8, Unit::capacitor), "47 nF");
    EXPECT_EQ(quantity_text(999.99999, Unit::resistance), "1000 ohm");
}

}  // namespace
}  // namespace kavrel
