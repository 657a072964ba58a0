// Design input data files, as all design forms recall and save them.
#pragma once

#include <functional>
#include <string_view>

#include "workbench/workbench.h"

namespace kavrel {

// What a design form shows when it opens.
enum class FormStart { last_values, stored_data };

// Asks for a file of stored input data, which becomes the current one once `take` has accepted its bytes. False, after
// a box, when there is no such file or `take` refuses it; false without one when the selector is left.
[[nodiscard]] bool recall_design_input(Workbench& bench, const std::function<bool(std::string_view bytes)>& take);

// Writes the bytes to the current input file, after asking for its name when there is none or when the current file is
// another form's (`is_own` answers for its bytes). False when that went wrong; a selector that is left saves nothing,
// which is no failure.
[[nodiscard]] bool save_design_input(Workbench& bench, std::string_view bytes,
                                     const std::function<bool(std::string_view bytes)>& is_own);

}  // namespace kavrel
