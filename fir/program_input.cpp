#include "fir/program_input.h"

#include <fmt/format.h>

namespace kavrel {

std::string function_text(const FirProgramInput& input) {
    constexpr std::string_view symmetries[] = {"even symmetry", "odd symmetry", "no symmetry"};
    const auto& [taps, symmetry, word, gain, asked] = input.shape();
    return fmt::format("FIR filter of {} tap{}, {}", taps, taps == 1 ? "" : "s",
                       symmetries[static_cast<int>(symmetry)]);
}

}  // namespace kavrel
