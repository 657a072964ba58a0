#include "shell/settings.h"

#include <cmath>
#include <sstream>

#include "shell/edited.h"
#include "shell/number_text.h"
#include "shell/whole_file.h"

namespace kavrel {

namespace {

bool good_multiplier(double m) { return m > 1.0e-14 && m < 1.0e14; }

bool good_index(int index, int last) { return index >= 1 && index <= last; }

}  // namespace

SettingsStatus read_settings(const std::string& path, UnitSet& units, FileMark* mark) {
    const WholeFile file = read_whole(path);
    if (file.fault == ReadFault::missing) return SettingsStatus::missing;
    if (mark != nullptr) *mark = file.mark;
    std::istringstream lines(file.bytes);
    std::string first;
    std::string second;
    std::getline(lines, first);
    std::getline(lines, second);
    const auto multipliers = parse_free_format(first);
    const auto integers = parse_free_format(second);
    if (!multipliers || multipliers->size() != 4 || !integers || integers->size() != 6) return SettingsStatus::damaged;
    for (const double m : *multipliers) {
        if (!good_multiplier(m)) return SettingsStatus::damaged;
    }
    UnitSet found;
    found.frequency_multiplier = (*multipliers)[0];
    found.inductor_multiplier = (*multipliers)[1];
    found.capacitor_multiplier = (*multipliers)[2];
    found.time_multiplier = (*multipliers)[3];
    found.frequency_index = frequency_unit_index(found.frequency_multiplier);
    found.inductor_index = element_unit_index(found.inductor_multiplier);
    found.capacitor_index = element_unit_index(found.capacitor_multiplier);
    found.time_index = element_unit_index(found.time_multiplier);
    found.fixed_units = (*integers)[4] == 3.0 ? 3 : 0;
    found.frequency_in_unit = (*integers)[5] == 1.0 ? 1 : 0;
    const bool known = good_index(found.frequency_index, 4) && good_index(found.inductor_index, 5) &&
                       good_index(found.capacitor_index, 5) && good_index(found.time_index, 5);
    if (!known) return SettingsStatus::damaged;
    units = found;
    return SettingsStatus::read;
}

std::optional<FileMark> write_settings(const std::string& path, const UnitSet& units) {
    std::string text = edited<"(1P,4(2X,E15.8))">(units.frequency_multiplier, units.inductor_multiplier,
                                                  units.capacitor_multiplier, units.time_multiplier);
    text += '\n';
    text += edited<"(6(6X,I2))">(units.frequency_index, units.inductor_index, units.capacitor_index, units.time_index,
                                 units.fixed_units, units.frequency_in_unit);
    text += '\n';
    return write_whole(path, text);
}

}  // namespace kavrel
