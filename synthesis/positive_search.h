// Search for an order of removals that leaves no negative element.
//
// Two ladders of one function differ in the order in which the zeros of transmission are realised, and each order fixes
// all elements. A partial removal stays positive as long as it leaves some of its pole; then the remainder is a
// reactance again, and the branch behind it positive. A complex quadruplet goes with a near element of its own value,
// which has to be positive, and a far one that is to be found in the pole behind it; on an impedance with its dual
// network. So the removals that keep all elements positive are known at each step without trying what follows, and the
// search is one in depth through them.
#pragma once

#include "synthesis/script.h"

namespace kavrel {

enum class SearchVerdict {
    found,
    none_exists,  // every order has been followed to its end
    given_up,     // more work than search_limit
};

// Sum of the squared degrees of the remainders that something is removed from: some thousand removals at degree 10,
// some hundred at 40, about a second at most.
inline constexpr int search_limit = 80000;

// On success `script` and `state` are those of the whole run, "fini" included; else they are as before.
[[nodiscard]] SearchVerdict positive_script(const LadderProblem& problem, const Selection& selection, Script& script,
                                            LadderState& state);

}  // namespace kavrel
