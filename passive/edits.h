// What every command that changes the circuit does: it works on a copy, which takes the place of the circuit only when
// all went well. So a refused edit leaves no trace.
#pragma once

#include "passive/macro_file.h"
#include "passive/passive_desk.h"

namespace kavrel {

// Takes over an edited circuit: pushes the former one for undo, marks the filter as no longer the designed one, settles
// R1 and R2 by the first and the last branch, records the macro step, and shows the circuit from the branch before
// `changed` on. `changed` is a branch number, 0 for the last one.
void take_edit(PassiveDesk& desk, const Circuit& edited, int changed, const MacroStep& step);

// Shows the circuit from the branch before `changed` on, unless display is suppressed.
void show_changed(PassiveDesk& desk, int changed);

// "ins ", and "copy", which is the choice of that name.
void insert_branch(PassiveDesk& desk);
void copy_branch(PassiveDesk& desk);

// "del "
void delete_branch(PassiveDesk& desk);

// "ch  "
void change_branch(PassiveDesk& desk);

// "undo", "redo", "sto ", "rcl "
void undo_edit(PassiveDesk& desk);
void redo_edit(PassiveDesk& desk);
void store_circuit(PassiveDesk& desk);
void recall_circuit(PassiveDesk& desk);

}  // namespace kavrel
