// "par ", "dir ", "lat ", "allp": the commands that make a form of the filter, and report its table. A form that is
// there already stays; making one is no edit, so there is nothing to undo.
#pragma once

#include "iir/iir_desk.h"

namespace kavrel {

void make_parallel_form(IirDesk& desk);
void make_direct_form(IirDesk& desk);
void make_lattice_form(IirDesk& desk);
void make_allpass_form(IirDesk& desk);

// Why a form cannot be made of what there is; blank where it can, or where it is there.
[[nodiscard]] std::string_view cannot_make_direct(const IirDesk& desk);
[[nodiscard]] std::string_view cannot_make_lattice(const IirDesk& desk);
[[nodiscard]] std::string_view cannot_make_allpass(const IirDesk& desk);

}  // namespace kavrel
