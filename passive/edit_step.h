// What every command that changes the circuit does: it works on a copy, which takes the place of the filter only when
// all went well. So a refused edit leaves no trace.
#pragma once

#include "passive/macro_file.h"
#include "passive/passive_desk.h"
#include "shell/refusal.h"
#include "workshop/promise.h"

namespace kavrel {

inline constexpr std::string_view circuit_destroyed = "Circuit destroyed, use 'undo' to recover";

// A copy of the filter that an edit works on, and what is to be said of it.
struct EditStep {
    PassiveFilter filter;
    int changed = 1;  // branch from whose predecessor on the circuit is shown, 0: the last one
    MacroStep macro = {};
    Promise promise = Promise::nothing;              // that of the command; its routine may weaken it
    std::string_view destroyed = circuit_destroyed;  // of an edit that has not kept its promise

    [[nodiscard]] Circuit& circuit() { return filter.circuit; }
};

// False where nothing is to be done; a box has said why.
using EditRoutine = bool (*)(PassiveDesk& desk, EditStep& step);

// Lets the routine work and takes its copy over: the former filter is pushed for undo, the filter is marked as no
// longer the designed one, R1 and R2 follow from the first and the last branch, the macro gets its lines, and the
// circuit is shown. Where nothing has changed there is nothing to undo. A circuit that does not keep what the edit
// promises is refused; an undo then leads to the circuit that is there already.
void make_edit(PassiveDesk& desk, Promise promise, EditRoutine routine);

// The routine of a command's row: edit<Promise::whole_two_port, combine_branches>.
template <Promise promise, EditRoutine routine>
void edit(PassiveDesk& desk) {
    make_edit(desk, promise, routine);
}

// Shows what is wrong, if anything is: an "Error", of a full store in the middle of the work a "Warning". Whether
// nothing is.
[[nodiscard]] bool passes(PassiveDesk& desk, const Refusal& wrong);

// Shows the circuit from the branch before `changed` on, unless display is suppressed.
void show_changed(PassiveDesk& desk, int changed);

}  // namespace kavrel
