// The differential allpass form: two allpass chains, whose sum or difference is the filter.
#pragma once

#include "iir/iir_filter.h"
#include "shell/refusal.h"

namespace kavrel {

inline constexpr std::string_view not_symmetrical = "Not symmetrical, no allpass form";

// Deals the poles out to the chains as LARR has it, a pair by that of its first member. Refused where ALLPASS_OK is not
// set, or a chain is left without a factor or would get more than it holds.
[[nodiscard]] Refusal makeAllpass(IirFilter& filter);

}  // namespace kavrel
