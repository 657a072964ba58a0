// Edits of the whole circuit.
#pragma once

#include "passive/edit_step.h"

namespace kavrel {

[[nodiscard]] bool scale_impedance(PassiveDesk& desk, EditStep& step);     // "rs  "
[[nodiscard]] bool scale_frequency(PassiveDesk& desk, EditStep& step);     // "fs  "
[[nodiscard]] bool take_dual(PassiveDesk& desk, EditStep& step);           // "dual"
[[nodiscard]] bool turn_around(PassiveDesk& desk, EditStep& step);         // "flip"
[[nodiscard]] bool prefer_values(PassiveDesk& desk, EditStep& step);       // "pref"
[[nodiscard]] bool make_band_reject(PassiveDesk& desk, EditStep& step);    // "be  "
[[nodiscard]] bool make_lattice(PassiveDesk& desk, EditStep& step);        // "lat "
[[nodiscard]] bool include_in_lattice(PassiveDesk& desk, EditStep& step);  // "incl"
[[nodiscard]] bool transfer_stubs(PassiveDesk& desk, EditStep& step);      // "conv"

}  // namespace kavrel
