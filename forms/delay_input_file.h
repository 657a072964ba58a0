// Design input data of the delay form (.qfi), four unformatted records:
//   1  a table of 501 + 501 doubles, a column after the other, and its row count: FREQUENCY and DELAY of an equalizer,
//      for the other delay types the real and imaginary parts of the transmission zeros
//   2  9 doubles: end_of_passband, start_of_stopband, center_frequency, delay, q_value, fq_or_fs, r1, r2,
//      normalization_freq
//   3  10 integers: PLUS_MIN, implementation, network_type, hurwitz, selection, degree, zeros_at_infinity, stopband,
//      delay_type, odd_parametric. PLUS_MIN is a bit for each row, the first in the lowest, set where the sign is minus
//   4  4 multipliers (doubles) and 4 indices (integers) of the units
// Frequencies and delays are in the units of record 4.
#pragma once

#include <string>
#include <string_view>

#include "forms/delay_form.h"
#include "shell/units.h"

namespace kavrel {

[[nodiscard]] std::string delay_input_bytes(const DelayRequest& request, const UnitSet& units);

// False, with request and units as they were, when the bytes are not such a file or hold what the form could not.
[[nodiscard]] bool read_delay_input(std::string_view bytes, DelayRequest& request, UnitSet& units);

}  // namespace kavrel
