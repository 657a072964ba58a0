// What many commands of the IIR Segment do, and the frame of its edits.
#pragma once

#include "iir/iir_desk.h"
#include "iir/iir_report.h"
#include "iir/stored_iir.h"

namespace kavrel {

// The filter as the kit keeps it.
[[nodiscard]] KeptFilter<IirFilter> kept(IirDesk& desk);

// Why commands cannot act on what there is; blank when they can.
[[nodiscard]] std::string_view needs_filter(const IirDesk& desk);             // "Data is unavailable"
[[nodiscard]] std::string_view needs_roots(const IirDesk& desk);              // the same, without poles and zeros
[[nodiscard]] std::string_view needs_frequency_results(const IirDesk& desk);  // "No analysis results"
[[nodiscard]] std::string_view needs_time_results(const IirDesk& desk);
[[nodiscard]] std::string_view needs_cascade(const IirDesk& desk);  // "No cascade form, operation illegal"
[[nodiscard]] std::string_view needs_place_for_factor(const IirDesk& desk);
[[nodiscard]] std::string_view needs_factor(const IirDesk& desk);
[[nodiscard]] std::string_view needs_factors_to_permute(const IirDesk& desk);

// A routine that changes a filter by what a form asked for, or answers why it does not; it knows no desk. Lines that it
// leaves are reported.
using IirEdit = Refusal (*)(IirFilter& filter, const IirRequest& request, const UnitSet& units, Lines& lines);

// Lets an edit work on a copy, which takes the place of the filter only when all went well: so a refused edit leaves no
// trace.
void make_edit(IirDesk& desk, IirEdit edit);

// Takes the place of the filter: the former one is pushed for undo, the new one is marked as modified, the lines and
// its cascade are reported. Where nothing has changed there is nothing to undo, and the lines are all; one whose
// numbers have become infinite is refused. Whether the filter is the new one.
bool take_edited(IirDesk& desk, const IirFilter& edited, const Lines& lines);

// The routine of a command's row: edit<add_factor>.
template <IirEdit routine>
void edit(IirDesk& desk) {
    make_edit(desk, routine);
}

}  // namespace kavrel
