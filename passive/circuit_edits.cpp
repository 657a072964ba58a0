#include "passive/circuit_edits.h"

namespace kavrel {

bool scale_impedance(PassiveDesk& desk, EditStep&) { return passes(desk, "Command not implemented"); }

bool scale_frequency(PassiveDesk& desk, EditStep&) { return passes(desk, "Command not implemented"); }

bool take_dual(PassiveDesk& desk, EditStep&) { return passes(desk, "Command not implemented"); }

bool turn_around(PassiveDesk& desk, EditStep&) { return passes(desk, "Command not implemented"); }

bool prefer_values(PassiveDesk& desk, EditStep&) { return passes(desk, "Command not implemented"); }

bool make_band_reject(PassiveDesk& desk, EditStep&) { return passes(desk, "Command not implemented"); }

bool make_lattice(PassiveDesk& desk, EditStep&) { return passes(desk, "Command not implemented"); }

bool include_in_lattice(PassiveDesk& desk, EditStep&) { return passes(desk, "Command not implemented"); }

bool transfer_stubs(PassiveDesk& desk, EditStep&) { return passes(desk, "Command not implemented"); }

}  // namespace kavrel
