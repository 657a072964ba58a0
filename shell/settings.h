// The settings file `q_qxz` of the working folder: the user's units in two lines of fixed format.
#pragma once

#include <string>

#include "shell/units.h"

namespace kavrel {

inline constexpr const char* settings_file = "q_qxz";

enum class SettingsStatus { read, missing, damaged };

// Reads the settings into `units`; a file that is missing or damaged leaves them as they are. The multipliers rule: the
// four indices of the file are dropped for those that the multipliers mean. Numbers may have E or D as exponent
// letter.
[[nodiscard]] SettingsStatus read_settings(const std::string& path, UnitSet& units);

// Writes the file anew; false when it could not be written.
[[nodiscard]] bool write_settings(const std::string& path, const UnitSet& units);

}  // namespace kavrel
