#include "iir/edits.h"

namespace kavrel {

Refusal add_flat_loss(IirFilter&, const IirRequest&, const UnitSet&) { return {}; }
Refusal add_factor(IirFilter&, const IirRequest&, const UnitSet&) { return {}; }
Refusal delete_factor(IirFilter&, const IirRequest&, const UnitSet&) { return {}; }
Refusal permute_factors(IirFilter&, const IirRequest&, const UnitSet&) { return {}; }
Refusal resample(IirFilter&, const IirRequest&, const UnitSet&) { return {}; }

}  // namespace kavrel
