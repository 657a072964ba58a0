#include "workbench/design_input.h"

#include "shell/stored_files.h"

namespace kavrel {

bool recall_design_input(Workbench& bench, const std::function<bool(std::string_view bytes)>& take) {
    const std::string name = bench.window.choose_file(
        {.caption = "Recall a previous design data set", .description = "Stored input data files", .filter = "*.qfi"});
    if (name.empty()) return false;
    const auto bytes = read_whole(name);
    if (!bytes) {
        bench.reporter.message("File was not found", "Error");
        return false;
    }
    if (!take(*bytes)) {
        bench.reporter.message("File contains incorrect data", "Error");
        return false;
    }
    bench.session.input_file.assign(name);
    return true;
}

bool save_design_input(Workbench& bench, std::string_view bytes,
                       const std::function<bool(std::string_view bytes)>& is_own) {
    const auto current = read_whole(bench.session.input_file.text());
    if (bench.session.input_file.is_blank() || (current && !is_own(*current))) {
        const std::string name = bench.window.choose_file({.caption = "Select a file name",
                                                           .description = "Stored input data files",
                                                           .filter = "*.qfi",
                                                           .to_write = true});
        if (name.empty()) return true;
        bench.session.input_file.assign(name.ends_with(".qfi") ? name : std::string(file_stem(name)) + ".qfi");
    }
    if (write_whole(bench.session.input_file.text(), bytes)) return true;
    bench.session.input_file = {};
    bench.reporter.message("File could not be written", "Error");
    return false;
}

}  // namespace kavrel
