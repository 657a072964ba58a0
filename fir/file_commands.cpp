#include "fir/file_commands.h"

#include "fir/command_tools.h"
#include "fir/report_commands.h"

namespace kavrel {

void save_fir_file(FirDesk& desk) {
    if (save(kept(desk))) report_edit_done(desk);
}
void save_fir_as(FirDesk& desk) {
    if (save_as(kept(desk))) report_edit_done(desk);
}
void read_fir_file(FirDesk& desk, bool name_given) {
    if (!read(kept(desk), name_given)) return;
    desk.state.shown = desk.command.function_number = 1;
    display_design(desk);
}
void undo_edit(FirDesk& desk) {
    if (undo(kept(desk))) display_design(desk);
}
void redo_edit(FirDesk& desk) {
    if (redo(kept(desk))) display_design(desk);
}
void store_filter(FirDesk& desk) {
    if (const auto why = needs_filter(desk); !why.empty()) return refuse(desk, why);
    if (store(kept(desk))) report_edit_done(desk);
}
void recall_filter(FirDesk& desk) {
    if (recall(kept(desk))) display_design(desk);
}

}  // namespace kavrel
