// Branches that change places, or become one.
#include "workshop/interchange.h"

#include "tests/support/circuit_literal.h"
#include "tests/workshop/edited_ladders.h"
#include "workshop/combine.h"
#include "workshop/renumber.h"

namespace kavrel {
namespace {

using testing::ladder_about;
using testing::two_port_deviation;
using enum BranchId;

TEST(Interchange, KeepsTheTwoPort) {
    for (unsigned seed = 0; seed < 100; ++seed) {
        for (const bool shunt : {false, true}) {
            const auto ladder = ladder_about(seed, {{lcc, shunt}, {capacitor, shunt}, {lcl, shunt}}, 0.2);
            Circuit edited = ladder.circuit;
            ASSERT_TRUE(interchangeBranches(edited, ladder.parts[2], ladder.parts[0]).empty());
            EXPECT_EQ(unpackBranch(edited, ladder.parts[0]).id, lcl);
            EXPECT_LT(two_port_deviation(ladder.circuit, edited), 1e-10) << seed;
        }
    }
}

TEST(Combine, KeepsTheTwoPortAndSqueezingLeavesNoEqualNeighbours) {
    for (unsigned seed = 0; seed < 200; ++seed) {
        const bool shunt = seed % 4 < 2;
        const BranchId id = seed % 8 < 4 ? inductor : capacitor;
        const auto ladder = ladder_about(seed, {{id, shunt}, {id, shunt}, {lc, !shunt}, {id, shunt}}, 0.2);
        Circuit combined = ladder.circuit;
        ASSERT_TRUE(combineBranches(combined, ladder.parts[1], ladder.parts[0]).empty());
        EXPECT_LT(two_port_deviation(ladder.circuit, combined), 1e-10) << seed;

        Circuit squeezed = ladder.circuit;
        squeezeAll(squeezed);
        EXPECT_LT(two_port_deviation(ladder.circuit, squeezed), 1e-10) << seed;
        Circuit again = squeezed;
        squeezeAll(again);
        EXPECT_TRUE(again == squeezed) << seed;
    }
}

TEST(Renumber, KeepsAllButTheGaps) {
    for (unsigned seed = 0; seed < 100; ++seed) {
        const auto ladder = seed % 2 == 0 ? ladder_about(seed, {{capacitor, true}, {unit_element}, {lc, true}})
                                          : ladder_about(seed, {{triplet_ccc}, {lcl}, {lattice_c}, {lcc, true}});
        Circuit dense = ladder.circuit;
        for (int k = dense.klast; k > 1; k -= 3) ASSERT_EQ(shiftBranches(dense, k, 4), CircuitVerdict::done);
        const int last = dense.klast;
        renumberBranches(dense);
        EXPECT_LT(two_port_deviation(ladder.circuit, dense), 1e-15) << seed;
        EXPECT_LT(dense.klast, last);
        Circuit again = dense;
        renumberBranches(again);
        EXPECT_TRUE(again == dense) << seed;
    }
    Circuit equalized = circuit("R 50 | eqa 10m 300 20n | C5 1n | R 50");
    const Circuit before = equalized;
    renumberBranches(equalized);
    EXPECT_TRUE(equalized == before) << "an equalizer stays right behind the load";
}

TEST(Combine, WhatCancelsOrIsOpenGoes) {
    const struct {
        std::string_view before, after;
    } rows[] = {
        {"R 1 | C3 1 | C5 -1 | L6 2 | R7 1", "R 1 | L2 2 | R 1"},
        {"R 1 | L2 1 | C4 3 | C6 -3 | L8 2", "R 1 | L2 3"},
        {"R 1 | L2 1 | C3 0 | L4 2 | L5 1e26 | L6 3 | C7 1", "R 1 | L2 6 | C3 1"},
        {"R 1 | L2 1 | C3 0", "R 1 | L2 1 | C3 0"},  // without it, it would be driven by a voltage
        {"R 1 | L2 1 | C3 5 | C5 -5", "R 1 | L2 1 | C3 5 | C5 -5"},
        {"R 1 | C3 5 | C5 0", "R 1 | C3 5"},
    };
    for (const auto& row : rows) {
        Circuit edited = circuit(row.before), expected = circuit(row.after);
        squeezeAll(edited);
        renumberBranches(edited);
        EXPECT_TRUE(edited == expected) << row.before;
    }
}

}  // namespace
}  // namespace kavrel
