// The commands on stored files and kept states.
#pragma once

#include "fir/fir_desk.h"

namespace kavrel {

void save_fir_file(FirDesk& desk);                   // "save"
void save_fir_as(FirDesk& desk);                     // the same under a new name
void read_fir_file(FirDesk& desk, bool name_given);  // "read"
void undo_edit(FirDesk& desk);                       // "undo"
void redo_edit(FirDesk& desk);                       // "redo"
void store_filter(FirDesk& desk);                    // "sto "
void recall_filter(FirDesk& desk);                   // "rcl "

}  // namespace kavrel
