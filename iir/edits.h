// Edits of an IIR filter by what their forms ask for. Each answers why it does not act; the filter may then be in any
// state (iir/command_tools.h works on a copy).
#pragma once

#include "iir/iir_request.h"
#include "shell/refusal.h"
#include "shell/units.h"

namespace kavrel {

[[nodiscard]] Refusal add_flat_loss(IirFilter& filter, const IirRequest& request, const UnitSet& units);
[[nodiscard]] Refusal add_factor(IirFilter& filter, const IirRequest& request, const UnitSet& units);
[[nodiscard]] Refusal delete_factor(IirFilter& filter, const IirRequest& request, const UnitSet& units);
[[nodiscard]] Refusal permute_factors(IirFilter& filter, const IirRequest& request, const UnitSet& units);
[[nodiscard]] Refusal resample(IirFilter& filter, const IirRequest& request, const UnitSet& units);

}  // namespace kavrel
