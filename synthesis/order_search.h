// Search for an order of removals that leaves no negative element, or few of them.
//
// Two ladders of one function differ in the order in which the zeros of transmission are realised, and each order fixes
// all elements. A partial removal stays positive as long as it leaves some of its pole; then the remainder is a
// reactance again, and the branch behind it positive. A complex quadruplet goes with a near element of its own value,
// which has to be positive, and a far one that is to be found in the pole behind it; on an impedance with its dual
// network. So the removals that keep all elements positive are known at each step without trying what follows, and the
// search is one in depth through them.
//
// A negative element adds to its pole: the remainder is a reactance, too. At a zero s = j w of I = j X the residue to
// be taken from infinity has the sign of X, that from zero the opposite one. So where both poles are in one form, one
// of them makes the zero with a positive element, the other with a negative one, and a ladder can always be gone on
// with.
//
// Where no zero of transmission is left at an extreme point, and no pole, a negative element puts a pole there. It
// serves any number of zeros, and is then removed completely: with the elements taken from it, it makes an ideal
// transformer at that point, no zero of transmission. Source: O. Brune, "Synthesis of a finite two-terminal network"
// (1931).
#pragma once

#include "shell/watcher.h"
#include "synthesis/script.h"

namespace kavrel {

enum class SearchVerdict {
    found,
    none_exists,  // every order within the bound has been followed to its end
    given_up,     // more work than its limit
    stopped,      // by the watcher
};

// Sum of the squared degrees of the remainders that something is removed from: some thousand removals at degree 10,
// some hundred at 40, about a second at most.
inline constexpr int search_limit = 80000;

struct SearchBounds {
    int negative_elements = 0;  // at most
    int work = search_limit;
};
inline constexpr int any_number = 1000;  // of negative elements

// On success `script` and `state` are those of the whole run, "fini" included; else they are as before.
[[nodiscard]] SearchVerdict search_order(const LadderProblem& problem, const Selection& selection,
                                         const SearchBounds& bounds, Watcher& watcher, Script& script,
                                         LadderState& state);

}  // namespace kavrel
