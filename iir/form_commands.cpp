#include "iir/form_commands.h"

namespace kavrel {

void make_parallel_form(IirDesk&) {}
void make_direct_form(IirDesk&) {}
void make_lattice_form(IirDesk&) {}
void make_allpass_form(IirDesk&) {}
std::string_view cannot_make_allpass(const IirDesk&) { return {}; }

}  // namespace kavrel
