#include "passive/norton_edits.h"

namespace kavrel {

bool norton_transformation(PassiveDesk& desk, EditStep&) { return passes(desk, "Command not implemented"); }

void equalise_all(PassiveDesk& desk) { refuse(desk, "Command not implemented"); }

void equalise_inner(PassiveDesk& desk) { refuse(desk, "Command not implemented"); }

}  // namespace kavrel
