// What is shown: the filter of the current Segment, its design, and how it meets its request.
#pragma once

#include "workbench/workbench.h"

namespace kavrel {

// The design behind what is shown, as far as it has one.
struct Shown {
    const FilterSpec* request = nullptr;  // as the approximation was asked
    const FilterSpec* spec = nullptr;     // with what was found for it
    const TransferFunction* transfer = nullptr;
    double used_q = 0;                          // that a predistortion allowed for
    const DesignedFilter* filter = nullptr;     // the last design, while it is that of what is shown
    const SynthesisState* synthesis = nullptr;  // of the last synthesis, while its circuit is what is shown
};
[[nodiscard]] Shown shown(const Workbench& bench);

// Of the parts that can be shown: the last transfer function, the circuit, the IIR filter. A FIR filter has no such
// design.
[[nodiscard]] Shown shown_function(const Workbench& bench);
[[nodiscard]] Shown shown_circuit(const Workbench& bench);
[[nodiscard]] Shown shown_iir(const Workbench& bench);

// Of what is shown; kept until the next event. One that was stopped is made anew when it is asked for again.
[[nodiscard]] const RequestCheck& shown_check(Workbench& bench);
[[nodiscard]] RequestCheck check_of_shown(const Workbench& bench);  // made anew, unless it is kept

// Of the transfer function of a design; of the parts that can be shown: the last function, the circuit, the FIR and the
// IIR filter.
[[nodiscard]] RequestCheck check_of(const DesignedFilter& filter, WindowLayer& window);
[[nodiscard]] RequestCheck check_of_function(const Workbench& bench);
[[nodiscard]] RequestCheck check_of_circuit(const Workbench& bench);
[[nodiscard]] RequestCheck check_of_fir(const Workbench& bench);
[[nodiscard]] RequestCheck check_of_iir(const Workbench& bench);

// The last analysis as CSV, blank without one; the report says where it is of an earlier filter.
[[nodiscard]] std::string table_of_results(Workbench& bench);

// The report's lines of what a check misses.
void report_missed(Workbench& bench, const RequestCheck& check);

}  // namespace kavrel
