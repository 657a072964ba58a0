// "scal", "ord ": the levels within a cascade, and the search for the order of its sections that is best for noise.
#pragma once

#include "iir/iir_desk.h"

namespace kavrel {

inline constexpr std::string_view separately_question = "Sections to be considered separately?";
inline constexpr std::string_view denominators_first_question = "Do denominators come first?";

void scale_sections(IirDesk& desk);
void order_sections(IirDesk& desk);

}  // namespace kavrel
