// The transfer function as a script for Matlab.
#pragma once

#include "exchange/transfer_request.h"

namespace kavrel {

// Defines num, denom and fnorm.
[[nodiscard]] TransferVerdict matlab_data(const TransferInput& input, const TransferRequest& request,
                                          std::vector<std::string>& lines);

}  // namespace kavrel
