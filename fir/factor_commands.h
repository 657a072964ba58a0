// The commands on factors, and those that make a function of them.
#pragma once

#include "fir/command_tools.h"

namespace kavrel {

void factor_function(FirDesk& desk);      // "fac "
void print_factors(FirDesk& desk);        // "prf "
void write_factors(FirDesk& desk);        // "ffac"
void flip_factors(FirDesk& desk);         // "flip"
void make_minimum_phase(FirDesk& desk);   // "min "
void add_factor(FirDesk& desk);           // "add "
void delete_factor(FirDesk& desk);        // "del "
void change_factor(FirDesk& desk);        // "ch  "
void multiply_factors(FirDesk& desk);     // "mult", all of them
void multiply_selected(FirDesk& desk);    // those that the form lists, each with leading coefficient 1
void cascade_with_itself(FirDesk& desk);  // "sqr "

}  // namespace kavrel
