// Every form of the product, and the record of the run that each of them fills in.
#pragma once

#include <span>

#include "shell/form.h"
#include "workbench/workbench.h"

namespace kavrel {

// The forms of the designs, each before the lists behind its buttons, then those of the commands.
[[nodiscard]] std::span<const Form* const> all_forms();

// Found by the type of record that the form was made for; a form over a record that the workbench does not have ends
// the program.
[[nodiscard]] void* record_of(const Form& form, Workbench& bench);

}  // namespace kavrel
