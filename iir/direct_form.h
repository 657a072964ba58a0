// The direct form: H multiplied out.
#pragma once

#include "iir/iir_filter.h"
#include "shell/refusal.h"

namespace kavrel {

inline constexpr std::string_view no_natural_modes = "Natural modes unknown, no direct form";

// ZNUM and ZDEN are the coefficients of ZMULT/PMULT prod(1 - zero z^-1) and of prod(1 - pole z^-1), so that ZDEN(1) is
// 1; multiplied out in the wide type. Refused where there is no root at all.
[[nodiscard]] Refusal makeDirect(IirFilter& filter);

}  // namespace kavrel
