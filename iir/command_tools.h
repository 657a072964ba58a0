// What many commands of the IIR Segment do, and the frame of its edits.
#pragma once

#include "iir/iir_desk.h"
#include "iir/stored_iir.h"

namespace kavrel {

// The filter as the kit keeps it.
[[nodiscard]] KeptFilter<IirFilter> kept(IirDesk& desk);

// Why commands cannot act on what there is; blank when they can.
[[nodiscard]] std::string_view needs_filter(const IirDesk& desk);             // "Data is unavailable"
[[nodiscard]] std::string_view needs_roots(const IirDesk& desk);              // the same, without poles and zeros
[[nodiscard]] std::string_view needs_frequency_results(const IirDesk& desk);  // "No analysis results"
[[nodiscard]] std::string_view needs_time_results(const IirDesk& desk);

// A routine that changes a filter by what a form asked for, or answers why it does not; it knows no desk.
using IirEdit = Refusal (*)(IirFilter& filter, const IirRequest& request, const UnitSet& units);

// Lets an edit work on a copy, which takes the place of the filter only when all went well: so a refused edit leaves no
// trace. The former filter is pushed for undo, the filter is marked as modified, and its cascade is shown. Where
// nothing has changed there is nothing to undo.
void make_edit(IirDesk& desk, IirEdit edit);

// The routine of a command's row: edit<add_factor>.
template <IirEdit routine>
void edit(IirDesk& desk) {
    make_edit(desk, routine);
}

}  // namespace kavrel
