// The search for the pairing and the order of a cascade's factors that make the least noise.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "iir/iir_filter.h"
#include "iir/iir_report.h"
#include "shell/watcher.h"

namespace kavrel {

// Section i gets numerator `numerator[i]` and denominator `denominator[i]`, counted from 1; `noise` is the noise gain
// as a power, once the sections are scaled in the L-two sense.
struct Assignment {
    std::vector<int> numerator;
    std::vector<int> denominator;
    double noise = 0;
};

struct OrderSearch {
    std::uint32_t seed = 0;
    int starts = 0;                       // random ones of each round
    double natural = 0;                   // the noise of the sections as they are
    std::vector<Assignment> rounds = {};  // the best of each
    std::size_t best = 0;                 // of all rounds
};

// 15 rounds of max(n/2, 5) random starts for n sections, and of one at the order as it is. A start is a permutation of
// the numerators and one of the denominators; of this and of its exchanges of two denominators it gives the best. The
// starts are drawn from the seed one after the other, and shared out among `threads`: the result is the same for any
// number of them. The cascade is not scaled, its sections are stable. None where the watcher stops the search.
[[nodiscard]] std::optional<OrderSearch> orderSections(const CascadeForm& cascade, std::uint32_t seed, int threads,
                                                       Watcher& watcher);

[[nodiscard]] Lines order_lines(const OrderSearch& search);

// Gives the factors of a cascade that is not scaled the places of an assignment; H stays.
void apply_order(CascadeForm& cascade, const Assignment& assignment);

}  // namespace kavrel
