// Coupled triplets and quadruplets.
#pragma once

#include "passive/edit_step.h"

namespace kavrel {

[[nodiscard]] bool couple_three(PassiveDesk& desk, EditStep& step);        // "ct  "
[[nodiscard]] bool couple_four(PassiveDesk& desk, EditStep& step);         // "cq  "
[[nodiscard]] bool transform_coupling(PassiveDesk& desk, EditStep& step);  // "mtr "

}  // namespace kavrel
