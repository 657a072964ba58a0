#include "shell/print_form.h"

#include "shell/whole_file.h"

namespace kavrel {

bool choose_print_mode(PrintTarget target, Reporter& reporter) {
    switch (target) {
        case PrintTarget::printer: reporter.set_print_mode(PrintMode::printer); break;
        case PrintTarget::none: reporter.set_print_mode(PrintMode::screen); break;
        case PrintTarget::file: {
            const std::string name = reporter.window().choose_file(
                {.caption = "Select a file name", .description = "Text files", .filter = "*.txt", .to_write = true});
            if (name.empty()) return false;
            if (!append_to_file(name, {})) {
                reporter.message("File could not be written", "Error");
                return false;
            }
            reporter.set_print_mode(PrintMode::file, name);
            break;
        }
    }
    return true;
}

}  // namespace kavrel
