// The files in which a circuit is handed over to other programs.
#pragma once

#include <string_view>

namespace kavrel {

struct TransferFileType {
    enum { scompact = 1, touchstone = 2, spice = 3, sstar = 4, pcfilt = 5, matlab = 6 };
};

// What a microwave circuit answers to a type that knows no lines; blank when the type is fit.
[[nodiscard]] std::string_view transfer_refusal(int file_type, bool microwave);

}  // namespace kavrel
