#include "passive/branch_edits.h"

namespace kavrel {

bool combine_branches(PassiveDesk& desk, EditStep&) { return passes(desk, "Command not implemented"); }

bool squeeze_branches(PassiveDesk& desk, EditStep&) { return passes(desk, "Command not implemented"); }

bool split_branch(PassiveDesk& desk, EditStep&) { return passes(desk, "Command not implemented"); }

bool interchange_branches(PassiveDesk& desk, EditStep&) { return passes(desk, "Command not implemented"); }

bool exchange_tee_and_pi(PassiveDesk& desk, EditStep&) { return passes(desk, "Command not implemented"); }

bool exchange_resonances(PassiveDesk& desk, EditStep&) { return passes(desk, "Command not implemented"); }

bool convert_three_elements(PassiveDesk& desk, EditStep&) { return passes(desk, "Command not implemented"); }

}  // namespace kavrel
