#include "segment/program_file.h"

#include <filesystem>

namespace kavrel {

bool write_program_file(Desk& desk, std::string_view extension,
                        const std::function<ProgramLines(std::string_view name)>& lines) {
    const std::string filter = "*" + std::string(extension);
    const auto typed =
        ask_file(desk, {.caption = select_file, .description = "Filter programs", .filter = filter, .to_write = true});
    if (!typed) return false;
    const std::string stem(file_stem(trim(*typed)));
    const std::string name = std::filesystem::path(stem).filename().string();
    return write_text(desk, *typed, stem + std::string(extension), joined_lines(lines(name)));
}

}  // namespace kavrel
