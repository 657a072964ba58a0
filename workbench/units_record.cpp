#include "workbench/units_record.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kavrel {

void put_units_record(RecordWriter& file, const UnitSet& units) {
    file.begin();
    file.put(std::array{units.frequency_multiplier, units.inductor_multiplier, units.capacitor_multiplier,
                        units.time_multiplier});
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
    if (!file.good()) return std::nullopt;
    if (!std::ranges::all_of(multipliers, [](double m) { return m >= 1e-12 && m <= 1e9; })) return std::nullopt;
    UnitSet units;
    units.frequency_index = frequency_unit_index(multipliers[0]);
    units.inductor_index = element_unit_index(multipliers[1]);
    units.capacitor_index = element_unit_index(multipliers[2]);
    units.time_index = element_unit_index(multipliers[3]);
    settle_units(units);
    // All edges would be off by a factor.
    if (std::abs(units.frequency_multiplier / multipliers[0] - 1.0) > 1e-9) return std::nullopt;
    return units;
}

}  // namespace kavrel
