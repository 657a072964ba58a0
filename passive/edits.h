// Commands that edit single elements, and those that lead back.
#pragma once

#include "passive/edit_step.h"

namespace kavrel {

// "ins ", and "copy", which is the choice of that name.
[[nodiscard]] bool insert_branch(PassiveDesk& desk, EditStep& step);
[[nodiscard]] bool copy_branch(PassiveDesk& desk, EditStep& step);

// "del "
[[nodiscard]] bool delete_branch(PassiveDesk& desk, EditStep& step);

// "ch  "
[[nodiscard]] bool change_branch(PassiveDesk& desk, EditStep& step);

// "undo", "redo", "sto ", "rcl "
void undo_edit(PassiveDesk& desk);
void redo_edit(PassiveDesk& desk);
void store_circuit(PassiveDesk& desk);
void recall_circuit(PassiveDesk& desk);

}  // namespace kavrel
