#include "passive/coupling_edits.h"

namespace kavrel {

bool couple_three(PassiveDesk& desk, EditStep&) { return passes(desk, "Command not implemented"); }

bool couple_four(PassiveDesk& desk, EditStep&) { return passes(desk, "Command not implemented"); }

bool transform_coupling(PassiveDesk& desk, EditStep&) { return passes(desk, "Command not implemented"); }

}  // namespace kavrel
