// What many commands of the FIR Segment do, and the frame of its edits.
#pragma once

#include <string>
#include <vector>

#include "fir/fir_desk.h"
#include "fir/stored_fir.h"

namespace kavrel {

using Lines = std::vector<std::string>;

inline constexpr std::string_view no_such_function = "Function does not exist";
inline constexpr std::string_view no_factored_form = "No factored form";  // caption "Warning"
inline constexpr std::string_view no_space = "No space available";        // caption "Warning"

// A refusal in a box with caption "Warning".
[[nodiscard]] Refusal warning(std::string_view text, std::string_view field = {});

// The filter as the kit keeps it.
[[nodiscard]] KeptFilter<FirFilter> kept(FirDesk& desk);

// Why commands cannot act on what there is; blank when they can.
[[nodiscard]] std::string_view needs_filter(const FirDesk& desk);             // "Data is unavailable"
[[nodiscard]] std::string_view needs_factors(const FirDesk& desk);            // "No factored form"
[[nodiscard]] std::string_view needs_frequency_results(const FirDesk& desk);  // "No analysis results"
[[nodiscard]] std::string_view needs_time_results(const FirDesk& desk);
[[nodiscard]] std::string_view needs_function_to_show(const FirDesk& desk);  // "No function to show", ...
[[nodiscard]] std::string_view needs_function_to_analyze(const FirDesk& desk);
[[nodiscard]] std::string_view needs_function_to_truncate(const FirDesk& desk);
[[nodiscard]] std::string_view needs_function(const FirDesk& desk);  // "Function does not exist"

// Whether results are of one of the filter's functions.
[[nodiscard]] bool is_of_filter(const FirFilter& filter, Fingerprint analysed);

// Whether the filter has the function that the command's form names; a box says so if not, in the words of the
// hindrance where there is none at all.
[[nodiscard]] bool has_function(FirDesk& desk, std::string_view hindrance = "");

// The lines of a table of results into a file; marked above where no function of the filter is the one analysed.
void tabulate_results(FirDesk& desk, Fingerprint analysed, Lines& lines);

// "*** Done ***" in a box with caption "Success".
void report_edit_done(FirDesk& desk);

// A routine that changes a filter by what a form asked for, or answers why it does not; it knows no desk. Lines that it
// leaves are reported.
using FirEdit = Refusal (*)(FirFilter& filter, const FirCommandRequest& request, Lines& lines);

// Lets an edit work on a copy, which takes the place of the filter only when all went well: so a refused edit leaves no
// trace. True when the filter is the new one.
bool make_edit(FirDesk& desk, FirEdit edit);

// Takes the place of the filter: the former one is pushed for undo, and the lines, or where there are none a box, say
// that it is done. Where nothing has changed there is nothing to undo, and the lines are all; one whose numbers have
// become infinite is refused. Whether the filter is the new one.
bool take_edited(FirDesk& desk, const FirFilter& edited, const Lines& lines);

// The routine of a command's row: edit<add_factor>.
template <FirEdit routine>
void edit(FirDesk& desk) {
    make_edit(desk, routine);
}

// The same of the function that the command's form names, which there is.
template <FirEdit routine>
void edit_function(FirDesk& desk) {
    if (has_function(desk)) make_edit(desk, routine);
}

}  // namespace kavrel
