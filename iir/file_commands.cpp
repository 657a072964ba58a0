#include "iir/file_commands.h"

#include "iir/command_tools.h"
#include "iir/pole_zero_text.h"
#include "iir/report_commands.h"

namespace kavrel {

namespace {

bool wishes_modified(IirDesk& desk);

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
    if (!wishes_modified(desk)) return;
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
    if (write_text(desk, *name, file, joined_lines(lines), "Error in writing file")) report_done(desk);
}

namespace {

bool wishes_modified(IirDesk& desk) {
    constexpr std::string_view question =
        "Data is for the original filter, not the current (modified) one \nWish to continue?";
    if (!desk.filter.Modified) return true;
    return desk.reporter.message(question, "Question", Buttons::yes_no) == Answer::yes;
}

}  // namespace

}  // namespace kavrel
