// Commands that report the circuit and of the design that it came from.
#pragma once

#include "passive/passive_desk.h"

namespace kavrel {

void show(PassiveDesk& desk);    // "show"
void list(PassiveDesk& desk);    // "list"
void spread(PassiveDesk& desk);  // "sprd"

// "res ": of a branch that holds an inductor and a capacitor, each pair of them; or of an inductor and a capacitor that
// are two branches.
void resonance(PassiveDesk& desk);

// "disp": the request of the design with what was found for it.
void display_design(PassiveDesk& desk);

// "prf ": roots and polynomials of the transfer function.
void display_function(PassiveDesk& desk);

void change_title(PassiveDesk& desk);  // "lbl "
void choose_print(PassiveDesk& desk);  // "pri "
void suppress(PassiveDesk& desk);      // "supp"

}  // namespace kavrel
