// Design input data of the filter form (.qfi), four unformatted records:
//   1  16 doubles: lower_passband, upper_passband, fq_or_fs, band_edge_loss, loss_slope, flat_loss, multiplier,
//      lower_stopband, upper_stopband, lower_stop_loss, upper_stop_loss, r1, r2, q_predistortion, center_frequency,
//      and the band-edge value once more where it is no loss (dropped when read)
//   2  14 integers: filter_kind, filter_type (band pass 4), passband_type, function_type, the rows of DOUBLETS,
//      stopband_type, bandpass_form, zeros_at_zero, zeros_at_infinity, unit_elements, zs_parameter, odd_parametric,
//      zeros below and above the pass band
//   3  pairs of doubles: 15 requirements, 25 TR_ZEROS, 10 fixed zeros, 25 movable zeros; then the real and the
//      imaginary column of 25 DOUBLETS
//   4  4 multipliers (doubles) and 4 indices (integers) of the units
// A list ends before the rows of zeros that fill it up. Frequencies are in the unit of record 4, zeros too, whichever
// unit they were entered in.
#pragma once

#include <string>
#include <string_view>

#include "forms/filter_request.h"
#include "shell/units.h"

namespace kavrel {

inline constexpr int stored_fixed_zeros = 10;  // what the file has room for

// The bytes of the file; FIXED_ZEROS holds at most `stored_fixed_zeros` rows.
[[nodiscard]] std::string filter_input_bytes(const FilterRequest& request, const UnitSet& units);

// False, with request and units as they were, when the bytes are not such a file or hold what the form could not.
[[nodiscard]] bool read_filter_input(std::string_view bytes, FilterRequest& request, UnitSet& units);

}  // namespace kavrel
