// The element list for PCFilt: a value, a letter and a code on each line.
#pragma once

#include "exchange/transfer_request.h"

namespace kavrel {

// Both terminations are lines of it. Lines and stubs are two lines each, Z their impedance and D their length in
// degrees at the quarter-wave frequency. Kinds that the list has no code for leave a line that says so. An internal
// error when the store is no circuit.
[[nodiscard]] TransferVerdict pcfilt_list(const TransferInput& input, const TransferRequest& request,
                                          std::vector<std::string>& lines);

}  // namespace kavrel
