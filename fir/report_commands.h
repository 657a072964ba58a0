// The commands that print or rename what there is, and those that go back to the first function.
#pragma once

#include "fir/fir_desk.h"

namespace kavrel {

void show_function(FirDesk& desk);    // "show"
void change_title(FirDesk& desk);     // "lbl "
void choose_print(FirDesk& desk);     // "pri "
void clear_functions(FirDesk& desk);  // "clr "
void return_to_first(FirDesk& desk);  // "rset"

}  // namespace kavrel
