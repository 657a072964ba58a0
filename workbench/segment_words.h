// Command tables of the Segments whose folders are still to come: the words that each knows, in the order in which it
// looks them up. None of them has a routine yet.
#pragma once

#include <span>

#include "shell/commands.h"

namespace kavrel {

[[nodiscard]] std::span<const CommandKeyword> active_words();
[[nodiscard]] std::span<const CommandKeyword> iir_words();
[[nodiscard]] std::span<const CommandKeyword> lattice_words();

}  // namespace kavrel
