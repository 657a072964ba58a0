// The kinds of branches by name. The numbers are those of branch words, and so of stored files and listings.
#pragma once

namespace kavrel {

enum class BranchId : int {
    resistor = 0,
    inductor = 1,
    capacitor = 2,
    lc = 3,              // in series a parallel pair, across the rails a series pair
    bridged_l = 4,       // a T of two L and a C to ground, bridged by C
    bridged_c = 5,       // its dual
    bridged_c_trap = 6,  // a T of two C and an L to ground, bridged by L and C side by side
    bridged_l_trap = 7,  // its dual
    twin_t = 8,          // two T side by side: L, C to ground, L; and C, L to ground, C
    twin_t_trap = 9,     // the second one has L and C in series to ground
    unit_element = 10,   // a line, a quarter wave long at half of fs
    lattice_c = 11,      // arms of L and C in series, C beside them
    lattice_l = 12,      // L beside them
    lcc = 13,            // L and C in parallel behind C across the rails, in series beside C in a series slot
    lcl = 14,            // L in place of the second C
    equalizer_a = 15,    // a bridged T of constant resistance; in its bridge L and C in series, R beside them
    equalizer_b = 16,    // L, C and R side by side
    triplet_lll = 17,    // three coupled nodes: what lies between 1 and 3, 1 and 2, 3 and 2
    triplet_llc = 18,
    triplet_cll = 19,
    triplet_clc = 20,
    triplet_ccc = 21,
    triplet_lcc = 22,
    triplet_ccl = 23,
    triplet_lcl = 24,
    quadruplet = 25,  // four coupled nodes
};

inline constexpr int branch_kind_count = 26;

}  // namespace kavrel
