// Commands that rewrite some branches: combine, split, interchange and exchange them.
#pragma once

#include "passive/edit_step.h"

namespace kavrel {

[[nodiscard]] bool combine_branches(PassiveDesk& desk, EditStep& step);        // "com "
[[nodiscard]] bool squeeze_branches(PassiveDesk& desk, EditStep& step);        // "squ "
[[nodiscard]] bool split_branch(PassiveDesk& desk, EditStep& step);            // "spl "
[[nodiscard]] bool interchange_branches(PassiveDesk& desk, EditStep& step);    // "ib  "
[[nodiscard]] bool exchange_tee_and_pi(PassiveDesk& desk, EditStep& step);     // "tp  "
[[nodiscard]] bool exchange_resonances(PassiveDesk& desk, EditStep& step);     // "xr  "
[[nodiscard]] bool convert_three_elements(PassiveDesk& desk, EditStep& step);  // "xch "

}  // namespace kavrel
