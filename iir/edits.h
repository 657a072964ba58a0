// Edits of an IIR filter by what their forms ask for. Each answers why it does not act; the filter may then be in any
// state (iir/command_tools.h works on a copy). Lines that an edit leaves are for the report.
#pragma once

#include <vector>

#include "iir/iir_report.h"
#include "iir/iir_request.h"
#include "shell/refusal.h"
#include "shell/units.h"

namespace kavrel {

inline constexpr std::string_view degree_too_high = " **** Degree is too high, factor cannot be added ****";
inline constexpr std::string_view no_such_factor = "Factor does not exist";
inline constexpr std::string_view no_cascade = "No cascade form, operation illegal";
inline constexpr std::string_view too_few_to_permute = "Not enough factors to permute";

// "flat": H is multiplied by 10^(-loss/20), in all forms that there are and in the level that was asked for. The
// differential allpass form is given up, since its outputs are the filter only at their own level.
[[nodiscard]] Refusal add_flat_loss(IirFilter& filter, const IirRequest& request, const UnitSet& units, Lines& lines);

// "add ": H is multiplied, or divided, by 1 + c1 z^-1 + c2 z^-2. "del ": by the inverse of one of its factors. Both end
// the request and give the derived forms up; a deleted factor also ends scaling.
[[nodiscard]] Refusal add_factor(IirFilter& filter, const IirRequest& request, const UnitSet& units, Lines& lines);
[[nodiscard]] Refusal delete_factor(IirFilter& filter, const IirRequest& request, const UnitSet& units, Lines& lines);

// "perm": factor i becomes the one whose number is at place i of the sequence. H and all other forms stay.
[[nodiscard]] Refusal permute_factors(IirFilter& filter, const IirRequest& request, const UnitSet& units, Lines& lines);

// Value i becomes the one whose number is at place i of the sequence.
void permute(Table<double, iir_section_limit>& values, const std::vector<int>& sequence);

// "fs  ": the same coefficients at another sampling frequency, so that all frequencies of the filter, of its request
// and of the design that it came from are multiplied by one factor.
[[nodiscard]] Refusal resample(IirFilter& filter, const IirRequest& request, const UnitSet& units, Lines& lines);

}  // namespace kavrel
