// From the start of the process to the first event.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "workbench/workbench.h"

namespace kavrel {

// Takes the working folder's lock and clears stale temporary files, reads or creates the settings file (where the session keeps settings), shows the main
// menu, and opens the stored filter that the one argument names (a name that ends in ".qf" and one letter; any other
// argument is ignored). After it the window layer delivers events until `Session::stopped`.
//   executable    full path of the running program
void main_program(Workbench& bench, std::string_view command_line, std::string_view executable);

// Whether a name ends in ".qf" and one letter, with something before it.
[[nodiscard]] bool names_stored_filter(std::string_view name);

// Where the manual is: beside an installed program, and in the folder around a build.
[[nodiscard]] std::vector<std::string> manual_folders(std::string_view executable);

}  // namespace kavrel
