// The text of JSON in state files.
#pragma once

#include <string>

#include <nlohmann/json_fwd.hpp>

namespace kavrel {

// Numbers with 17 significant digits, those that are not finite as null; objects a member a line, lists of numbers on
// one line, lists of texts or objects a line each; a line feed at the end.
[[nodiscard]] std::string json_text(const nlohmann::ordered_json& value);

}  // namespace kavrel
