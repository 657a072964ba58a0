#include "fir/file_commands.h"

#include "fir/command_tools.h"

namespace kavrel {

void save_fir_file(FirDesk& desk) {
    if (save(kept(desk))) report_edit_done(desk);
}
void save_fir_as(FirDesk& desk) {
    if (save_as(kept(desk))) report_edit_done(desk);
}
void read_fir_file(FirDesk& desk, bool name_given) { static_cast<void>(read(kept(desk), name_given)); }
void undo_edit(FirDesk& desk) { static_cast<void>(undo(kept(desk))); }
void redo_edit(FirDesk& desk) { static_cast<void>(redo(kept(desk))); }
void store_filter(FirDesk& desk) {
    if (const auto why = needs_filter(desk); !why.empty()) return refuse(desk, why);
    if (store(kept(desk))) report_edit_done(desk);
}
void recall_filter(FirDesk& desk) { static_cast<void>(recall(kept(desk))); }

}  // namespace kavrel
