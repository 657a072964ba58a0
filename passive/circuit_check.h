// What a circuit that comes from a file must fulfil before it takes the place of the one in work.
#pragma once

#include "passive/passive_filter.h"

namespace kavrel {

// Whether the store can be walked and edited: the numbers of branches, cells and natural modes are within their tables,
// the kind is known, and the branch words form one chain from branch 1, a resistor, to `klast`, in increasing numbers,
// with links both ways and no word outside of it. Each branch has the number of cells that its kind asks for, among the
// first `ilast`, or a slot of the quadruplet table that is in use, and shares them with no other.
//
// How far apart two-ports are is not asked: analysis does not depend on it, and edits restore it.
[[nodiscard]] bool sound_store(const Circuit& circuit);

// The branch words as files hold them. Where no branch is in the last slot it holds the mark of preferred values; no
// branch word is as small.
[[nodiscard]] Table<std::int32_t, max_branches> marked_words(const Circuit& circuit);
void take_marked_words(const Table<std::int32_t, max_branches>& words, Circuit& circuit);

// Whether the counts and choices of a design are such as its tables can hold.
[[nodiscard]] bool sound_design(const PassiveFilter& filter);

// Whether all numbers are finite. The ratio of terminations alone may be infinite: one of them may be 0.
[[nodiscard]] bool all_finite(const PassiveFilter& filter);

}  // namespace kavrel
