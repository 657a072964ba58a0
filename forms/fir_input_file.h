// Design input data of the FIR form (.qfi), two unformatted records:
//   1  the band table (10 rows of 4 doubles), the shape's frequencies and values (501 single-precision numbers each),
//      its row count
//   2  lower, upper and sampling frequency, parameter, slope as doubles; type, filter type, method, specification type,
//      length and window type as integers
// Frequencies stay in the unit in which they were entered.
#pragma once

#include <string>
#include <string_view>

#include "fir/fir_request.h"
#include "shell/units.h"

namespace kavrel {

[[nodiscard]] std::string fir_input_bytes(const FirRequest& request, const UnitSet& units);

// The file has no units, and leaves them alone. False, with the request as it was, when the bytes are not such a file
// or hold what the form could not.
[[nodiscard]] bool read_fir_input(std::string_view bytes, FirRequest& request, UnitSet& units);

}  // namespace kavrel
