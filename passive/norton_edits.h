// Norton transformations.
#pragma once

#include "passive/edit_step.h"

namespace kavrel {

[[nodiscard]] bool norton_transformation(PassiveDesk& desk, EditStep& step);  // "tr  "
void equalise_all(PassiveDesk& desk);                                         // "lce "
void equalise_inner(PassiveDesk& desk);                                       // "ecm "

}  // namespace kavrel
