// "scal", "ord ": the levels within a cascade, and the search for the order of its sections that is best for noise.
#pragma once

#include "iir/iir_desk.h"

namespace kavrel {

inline constexpr std::string_view separately_question = "Sections to be considered separately?";
inline constexpr std::string_view denominators_first_question = "Do denominators come first?";

// "scal": puts scale factors into the sections, reports them with the noise gain, and lets the user modify them. Where
// it fails an earlier scaling is undone all the same.
void scale_sections(IirDesk& desk);

// "ord ": reports good orders of the sections, or why there are none; applies the best of them where that is asked for.
// An earlier scaling is undone. A search that was stopped changes nothing.
void order_sections(IirDesk& desk);
[[nodiscard]] std::string_view cannot_order(const IirDesk& desk);

}  // namespace kavrel
