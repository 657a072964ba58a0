// Commands that report the filter: "show", "asci", "disp", "func", "des ", "lbl ", "pri ".
#pragma once

#include "iir/iir_desk.h"

namespace kavrel {

void show(IirDesk& desk);
void write_text_file(IirDesk& desk);
void display_design(IirDesk& desk);
void display_function(IirDesk& desk);
void draw_section(IirDesk& desk);
void change_title(IirDesk& desk);
void choose_print(IirDesk& desk);

}  // namespace kavrel
