// Ratios of Norton transformations that make the values of a chain equal.
//
// The chain begins with an element X1 across the rails at node 1; X2 to Xn lie in series, X(i+1) between the nodes i
// and i+1. With K the node matrix of the chain (of 1/L, C or 1/Z), and node i scaled by s(i), the element across the
// rails at node i becomes s(i) (K s)(i). That all of them are w is where
//
//     s' K s / 2 - w log s(1) - ... - w log s(n)
//
// has its minimum, which is the only one, since K is positive definite. The node i+1 is that much above node i by a
// transformation whose n is s(i)/s(i+1).
#pragma once

#include <span>

#include "circuit/circuit.h"
#include "shell/refusal.h"

namespace kavrel {

inline constexpr int equalised_limit = 25;  // branches

// The ratios of the transformations, as they are to be made one after the other.
struct ComputedRatios {
    int count = 0;
    Table<double, equalised_limit - 1> t;  // [i] n^2 of branch i and branch i+1 of the list
};

enum class EndValues { equal, halved };

// The ratios for the branches of a list in the order of the chain or against it, the first one across the rails. A
// refusal says why there are none.
[[nodiscard]] Refusal equalise(const Circuit& circuit, std::span<const int> list, EndValues ends,
                               ComputedRatios& ratios);

}  // namespace kavrel
