#include "iir/digital_design.h"

#include "iir/iir_forms.h"

namespace kavrel {

DigitalDesignOutcome digitalDesign(FilterSpec&, FilterDesign&, IirRequest& request, const UnitSet& units,
                                   Reporter& reporter, IirFilter& filter) {
    if (!run_form(Z_TRANSFORM_DLG, &request, units, reporter)) return DigitalDesignOutcome::cancelled;
    filter.fs = 1;
    return DigitalDesignOutcome::done;
}

}  // namespace kavrel
