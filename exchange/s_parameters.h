// The S-parameters of an analysed circuit as a Touchstone file of two ports, which every RF program reads.
#pragma once

#include "exchange/transfer_request.h"

namespace kavrel {

// Port 1 is the source's end, port 2 the load, branch 1; both are normalised to R1, the load:
//     S11 = (A + B/R1 - C R1 - D)/N,  S21 = 2/N,  S12 = 2 (A D - B C)/N,  S22 = (-A + B/R1 - C R1 + D)/N,
//     N = A + B/R1 + C R1 + D
// with the chain matrix A to D from port 1 to port 2. A frequency on a pole has no row. An internal error
// when the circuit cannot be analysed.
[[nodiscard]] TransferVerdict s_parameter_lines(const TransferInput& input, const TransferRequest& request,
                                                std::vector<std::string>& lines);

}  // namespace kavrel
