// The settings file `q_qxz` of the working folder: the user's units in two lines of fixed format.
#pragma once

#include <optional>
#include <string>

#include "shell/units.h"
#include "shell/whole_file.h"

namespace kavrel {

inline constexpr const char* settings_file = "q_qxz";

enum class SettingsStatus { read, missing, damaged };

// Reads the settings into `units`, and the file's mark; a file that is missing or damaged leaves them as they are. The
// multipliers rule: the four indices of the file are dropped for those that the multipliers mean. Numbers may have E or
// D as exponent letter.
[[nodiscard]] SettingsStatus read_settings(const std::string& path, UnitSet& units, FileMark* mark = nullptr);

// Writes the file anew; no mark when it could not be written.
[[nodiscard]] std::optional<FileMark> write_settings(const std::string& path, const UnitSet& units);

}  // namespace kavrel
