#include "shell/units.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "shell/edited.h"
#include "shell/fixed_text.h"
#include "shell/whole_part.h"

namespace kavrel {

namespace {

constexpr double power_guard = 0.00009999999747378752;  // the single-precision value of 0.0001
constexpr double prefix_guard = 0.0010000000474974513;  // the single-precision value of 0.001
constexpr double prefix_margin = 1.000000001;
constexpr double least_in_unit = 0.001;  // below it six decimals show too little
constexpr std::string_view frequency_prefixes = " KMG";
constexpr std::string_view element_prefixes = " munp";
constexpr std::string_view value_prefixes = "fpnum KMGT";  // exponents -5 to 4 in steps of 1000
constexpr std::string_view quantity_prefixes = "fpnum kMGT";
constexpr std::string_view unit_texts[] = {"  ohm", "  H  ", "  F  ", "  Hz ", "  sec"};

std::string_view unit_name(Unit unit) {
    switch (unit) {
        case Unit::frequency:
        case Unit::hertz: return "Hz";
        case Unit::time: return "s";
        case Unit::inductor: return "H";
        case Unit::capacitor: return "F";
        case Unit::resistance: return "ohm";
        case Unit::decibel: return "dB";
        case Unit::radians: return "rad/s";
        case Unit::none: break;
    }
    return {};
}

char prefix_at(std::string_view prefixes, int index) { return prefixes[static_cast<std::size_t>(index)]; }

double multiplier_of(const UnitSet& units, UnitCode unit);
int exponent_of(double multiplier);
std::string number_with_prefix(double number, int exponent, UnitCode unit);

}  // namespace

int frequency_unit_index(double multiplier) { return whole_part(std::log10(multiplier) + power_guard) / 3 + 1; }

int element_unit_index(double multiplier) { return 1 - whole_part(std::log10(multiplier) - power_guard) / 3; }

void settle_units(UnitSet& units) {
    if (units.time_index == 0) units.time_index = 1;
    units.frequency_multiplier = std::pow(1000.0, units.frequency_index - 1);
    units.frequency_in_unit = units.frequency_index < 2 ? 0 : 1;
    const bool chosen = units.inductor_index + units.capacitor_index + units.time_index > 3;
    if (units.frequency_in_unit == 1 && chosen) {
        units.fixed_units = 3;
    } else {
        units.fixed_units = 0;
        units.inductor_index = units.capacitor_index = units.time_index = 1;
    }
    const auto element = [](int index) { return 1.0 / std::pow(1000.0, index - 1); };
    units.inductor_multiplier = element(units.inductor_index);
    units.capacitor_multiplier = element(units.capacitor_index);
    units.time_multiplier = element(units.time_index);
}

std::string unit_suffix(const UnitSet& units, Unit unit) {
    const auto suffix = [](char prefix, std::string_view name) { return edited<"(' (',2A,')')">(prefix, name); };
    switch (unit) {
        case Unit::frequency: return suffix(prefix_at(frequency_prefixes, units.frequency_index - 1), "Hz");
        case Unit::time: return suffix(prefix_at(element_prefixes, units.time_index - 1), "sec");
        case Unit::inductor: return suffix(prefix_at(element_prefixes, units.inductor_index - 1), "H");
        case Unit::capacitor: return suffix(prefix_at(element_prefixes, units.capacitor_index - 1), "F");
        default: break;
    }
    return {};
}

std::string units_text(const UnitSet& units) {
    const auto name = [&](Unit unit) {
        const std::string suffix = unit_suffix(units, unit);  // " (KHz)", " ( Hz)"
        return std::string(trim(std::string_view(suffix).substr(2, suffix.size() - 3)));
    };
    std::string text = name(Unit::frequency);
    if (units.fixed_units != 3) return text;
    for (const Unit unit : {Unit::inductor, Unit::capacitor, Unit::time}) text += ", " + name(unit);
    return text;
}

std::string units_note(const UnitSet& units) {
    const std::string text = units_text(units);
    return text == units_text({}) ? "" : "Units: " + text;
}

double unit_multiplier(const UnitSet& units, Unit unit) {
    switch (unit) {
        case Unit::frequency: return units.frequency_multiplier;
        case Unit::time: return units.time_multiplier;
        case Unit::inductor: return units.inductor_multiplier;
        case Unit::capacitor: return units.capacitor_multiplier;
        default: break;
    }
    return 1.0;
}

std::string quantity_text(double value, Unit unit) {
    if (value == 0.0) return "0";
    const bool has_prefix = unit != Unit::decibel && unit != Unit::radians && unit != Unit::none;
    int exponent = 0;
    if (has_prefix) exponent = std::clamp(whole_part(std::floor(std::log10(std::abs(value)) / 3.0 + 1e-9)), -5, 4);
    std::string number = fmt::format("{:.7g}", value / std::pow(1000.0, exponent));
    const auto prefix = quantity_prefixes[static_cast<std::size_t>(exponent + 5)];
    return fmt::format("{} {}{}", number, prefix == ' ' ? "" : std::string(1, prefix), unit_name(unit));
}

std::string unit_value_text(const UnitSet& units, double value, UnitCode unit) {
    if (unit < farad && (value > 1.0e25 || std::isinf(value))) return " *** open ***   ";
    const bool in_fixed_unit = units.fixed_units == 3 && unit > ohm;
    if (in_fixed_unit || (units.frequency_in_unit == 1 && unit == hertz)) {
        const double multiplier = multiplier_of(units, unit);
        const double number = value / multiplier;
        const std::string text = number_with_prefix(number, exponent_of(multiplier), unit);
        const bool legible =
            std::isfinite(number) && (number == 0.0 || !(std::abs(number) * prefix_margin < least_in_unit));
        if (legible && text.find('*') == std::string::npos) return text;
    }
    // The prefix is chosen for what the number rounds to; the number itself is left alone.
    double v = std::abs(value) * prefix_margin;
    if (v == 0.0) return number_with_prefix(value, 0, unit);
    if (!(v > 1.0e-15 && v < 1.0e15)) return edited<"(1P,E16.9)">(value);
    int exponent = 0;
    for (; v >= 1000.0 && exponent < 4; ++exponent) v /= 1000.0;
    for (; v < 1.0 && exponent > -5; --exponent) v *= 1000.0;
    const double scale = std::pow(1000.0, std::abs(exponent));
    return number_with_prefix(exponent < 0 ? value * scale : value / scale, exponent, unit);
}

namespace {

double multiplier_of(const UnitSet& units, UnitCode unit) {
    switch (unit) {
        case henry: return units.inductor_multiplier;
        case farad: return units.capacitor_multiplier;
        case hertz: return units.frequency_multiplier;
        case second: return units.time_multiplier;
        default: return 1.0;
    }
}

// The exponent in steps of 1000 that a multiplier means.
int exponent_of(double multiplier) {
    const double power = std::log10(multiplier);
    return whole_part(power + (power < 0.0 ? -prefix_guard : prefix_guard)) / 3;
}

std::string number_with_prefix(double number, int exponent, UnitCode unit) {
    std::string text = edited<"(F11.6,A)">(number, unit_texts[static_cast<std::size_t>(unit)]);
    text[12] = prefix_at(value_prefixes, exponent + 5);
    return text;
}

}  // namespace

}  // namespace kavrel
