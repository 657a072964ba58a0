// "par ", "dir ", "lat ", "allp": the commands that make a form of the filter.
#pragma once

#include "iir/iir_desk.h"

namespace kavrel {

void make_parallel_form(IirDesk& desk);
void make_direct_form(IirDesk& desk);
void make_lattice_form(IirDesk& desk);
void make_allpass_form(IirDesk& desk);

[[nodiscard]] std::string_view cannot_make_allpass(const IirDesk& desk);

}  // namespace kavrel
