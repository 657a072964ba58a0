#include "iir/file_commands.h"

#include <filesystem>
#include <string>
#include <system_error>

#include "iir/command_tools.h"
#include "iir/pole_zero_text.h"
#include "iir/report_commands.h"

namespace kavrel {

namespace {

std::string_view failure_of_writing(const std::string& file);

}  // namespace

void save_iir_file(IirDesk& desk) {
    if (save(kept(desk))) report_done(desk);
}
void save_iir_as(IirDesk& desk) {
    if (save_as(kept(desk))) report_done(desk);
}
void read_iir_file(IirDesk& desk, bool name_given) {
    if (read(kept(desk), name_given)) display_design(desk);
}
void undo_edit(IirDesk& desk) {
    if (undo(kept(desk))) display_design(desk);
}
void redo_edit(IirDesk& desk) {
    if (redo(kept(desk))) display_design(desk);
}
void store_filter(IirDesk& desk) {
    if (store(kept(desk))) report_done(desk);
}
void recall_filter(IirDesk& desk) {
    if (recall(kept(desk))) display_design(desk);
}

void write_pole_zero(IirDesk& desk) {
    if (const auto why = needs_roots(desk); !why.empty()) return refuse(desk, why);
    if (desk.filter.Modified && !wishes_original(desk, "Data")) return;
    if (write_lines(desk, pole_zero_lines(desk.filter, desk.session.TITLE.trimmed()), ExtSlot::pole_zero)) {
        report_done(desk);
    }
}

void write_switched_capacitor(IirDesk& desk) {
    if (const auto why = needs_filter(desk); !why.empty()) return refuse(desk, why);
    const auto name = ask_file(
        desk, {.caption = select_file, .description = "Switched-capacitor files", .filter = "*.swc", .to_write = true});
    if (!name) return;
    const Lines lines = switched_capacitor_lines(desk.filter, desk.session.TITLE.trimmed());
    const std::string file = file_name(*name, ExtSlot::switched_capacitor);
    if (write_text(desk, *name, file, joined_lines(lines), failure_of_writing(file))) report_done(desk);
}

namespace {

// Without its folder a file cannot even be opened.
std::string_view failure_of_writing(const std::string& file) {
    const auto folder = std::filesystem::path(file).parent_path();
    std::error_code unknown;
    const bool opens = folder.empty() || std::filesystem::is_directory(folder, unknown);
    return opens ? "Error in writing file" : "Error in opening file";
}

}  // namespace

}  // namespace kavrel
