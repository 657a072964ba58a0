// The commands that print or rename what there is, and those that go back to the first function.
#pragma once

#include "fir/fir_desk.h"

namespace kavrel {

void show_function(FirDesk& desk);      // "show"
void display_design(FirDesk& desk);     // "disp"
void write_text_report(FirDesk& desk);  // "file": what "disp" and "show" print, of all functions
void change_title(FirDesk& desk);       // "lbl "
void choose_print(FirDesk& desk);       // "pri "
void clear_functions(FirDesk& desk);    // "clr "
void return_to_first(FirDesk& desk);    // "rset"

}  // namespace kavrel
