#include "forms/input_items.h"

namespace kavrel {

namespace {

bool unit_exists(const std::array<double, 4>& multipliers);

}  // namespace

StoredUnits stored_units(const UnitSet& units) {
    return {.multipliers = {units.frequency_multiplier, units.inductor_multiplier, units.capacitor_multiplier,
                            units.time_multiplier},
            .indices = {units.frequency_index, units.inductor_index, units.capacitor_index, units.time_index}};
}

bool take_stored_units(const StoredUnits& stored, UnitSet& units) {
    const auto& multipliers = stored.multipliers;
    if (!unit_exists(multipliers)) return false;
    units = {};
    units.frequency_index = frequency_unit_index(multipliers[0]);
    units.inductor_index = element_unit_index(multipliers[1]);
    units.capacitor_index = element_unit_index(multipliers[2]);
    units.time_index = element_unit_index(multipliers[3]);
    settle_units(units);
    // All edges, values or delays would be off by a factor.
    const auto close = [](double ours, double theirs) { return std::abs(ours / theirs - 1.0) <= 1e-9; };
    return std::ranges::equal(stored_units(units).multipliers, multipliers, close);
}

namespace {

// Every unit of the form is 1, 1e3, 1e6 or 1e9 hertz; 1, 1e-3, ... or 1e-12 henry, farad or second.
bool unit_exists(const std::array<double, 4>& multipliers) {
    const auto within = [](double value, double low, double high) { return value > 0.9 * low && value < 1.1 * high; };
    return within(multipliers[0], 1.0, 1e9) &&
           std::all_of(multipliers.begin() + 1, multipliers.end(), [&](double m) { return within(m, 1e-12, 1.0); });
}

}  // namespace

}  // namespace kavrel
