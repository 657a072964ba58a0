// The whole state as JSON.
#pragma once

#include <string>

#include "workbench/workbench.h"

namespace kavrel {

// One object, numbers with 17 significant digits, SI units; a part left out where there is nothing to report; a value
// that is not finite as null. The layout is a public interface, described in the manual and numbered by "format".
[[nodiscard]] std::string state_json(const Workbench& bench);

}  // namespace kavrel
