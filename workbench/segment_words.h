// Command tables of the Segments whose folders are still to come: the words that each knows, in the order in which it
// looks them up. None of them has a routine yet.
#pragma once

#include "segment/command_table.h"

namespace kavrel {

[[nodiscard]] CommandWords active_words();
[[nodiscard]] CommandWords lattice_words();

}  // namespace kavrel
