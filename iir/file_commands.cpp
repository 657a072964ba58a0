#include "iir/file_commands.h"

#include "iir/command_tools.h"
#include "iir/report_commands.h"

namespace kavrel {

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
void write_pole_zero(IirDesk&) {}
void write_switched_capacitor(IirDesk&) {}

}  // namespace kavrel
