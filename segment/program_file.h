// A program that is written for a filter, as a file.
#pragma once

#include <functional>

#include "segment/desk.h"
#include "segment/program_text.h"

namespace kavrel {

// Asks for a name, which gets the extension in place of a known one, and writes the lines that are made for a file of
// that name, without folder and extension. False, after its box, where no file was written.
[[nodiscard]] bool write_program_file(Desk& desk, std::string_view extension,
                                      const std::function<ProgramLines(std::string_view name)>& lines);

}  // namespace kavrel
