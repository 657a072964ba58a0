// Commands that move the filter between the Segment and files, and from state to state.
#pragma once

#include "iir/iir_desk.h"

namespace kavrel {

void save_iir_file(IirDesk& desk);
void save_iir_as(IirDesk& desk);
void read_iir_file(IirDesk& desk, bool name_given);
void undo_edit(IirDesk& desk);
void redo_edit(IirDesk& desk);
void store_filter(IirDesk& desk);
void recall_filter(IirDesk& desk);
void write_pole_zero(IirDesk& desk);
void write_switched_capacitor(IirDesk& desk);

}  // namespace kavrel
