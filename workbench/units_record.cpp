#include "workbench/units_record.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kavrel {

namespace {

std::array<double, 4> multipliers_of(const UnitSet& units) {
    return {units.frequency_multiplier, units.inductor_multiplier, units.capacitor_multiplier, units.time_multiplier};
}

// Every unit of the form is 1, 1e3, 1e6 or 1e9 hertz; 1, 1e-3, ... or 1e-12 henry, farad or second.
bool unit_exists(const std::array<double, 4>& multipliers) {
    const auto within = [](double value, double low, double high) { return value > 0.9 * low && value < 1.1 * high; };
    return within(multipliers[0], 1.0, 1e9) &&
           std::all_of(multipliers.begin() + 1, multipliers.end(), [&](double m) { return within(m, 1e-12, 1.0); });
}

}  // namespace

void put_units_record(RecordWriter& file, const UnitSet& units) {
    file.begin();
    file.put(multipliers_of(units));
    file.put(std::array{units.frequency_index, units.inductor_index, units.capacitor_index, units.time_index});
    file.end();
}

std::optional<UnitSet> take_units_record(RecordReader& file) {
    std::array<double, 4> multipliers{};
    std::array<int, 4> indices{};
    file.begin();
    file.take(multipliers);
    file.take(indices);
    file.end();
    if (!file.good() || !unit_exists(multipliers)) return std::nullopt;
    UnitSet units;
    units.frequency_index = frequency_unit_index(multipliers[0]);
    units.inductor_index = element_unit_index(multipliers[1]);
    units.capacitor_index = element_unit_index(multipliers[2]);
    units.time_index = element_unit_index(multipliers[3]);
    settle_units(units);
    // All edges, values or delays would be off by a factor.
    const auto settled = multipliers_of(units);
    for (std::size_t i = 0; i < settled.size(); ++i) {
        if (std::abs(settled[i] / multipliers[i] - 1.0) > 1e-9) return std::nullopt;
    }
    return units;
}

}  // namespace kavrel
