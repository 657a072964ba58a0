// Ladders to try edits on: what is edited between random branches and two terminations.
#pragma once

#include <vector>

#include <gtest/gtest.h>

#include "tests/circuit/random_circuits.h"
#include "tests/workshop/two_port.h"

namespace kavrel::testing {

// A branch of the part that is edited: its kind, and whether it lies across the rails.
struct Part {
    BranchId id;
    bool shunt = false;
};

struct Ladder {
    Circuit circuit;
    std::vector<int> parts = {};  // their branch numbers
};

// Values are about 1, with a share of negative ones; numbers may have gaps. Of three seeds one is a microwave circuit,
// and all that have a line; of two seeds one has a source.
inline Ladder ladder_about(unsigned seed, const std::vector<Part>& parts, double negative_share = 0) {
    using enum BranchId;
    CircuitMaker maker(seed);
    maker.negative_share = negative_share;
    const bool lines = std::ranges::any_of(parts, [](const Part& part) { return part.id == unit_element; });
    Ladder ladder{.circuit = maker.circuit({inductor, capacitor, lc}, maker.whole(0, 3), false)};
    Circuit& circuit = ladder.circuit;
    circuit.kind = lines || seed % 3 == 0 ? CircuitKind::microwave : CircuitKind::lumped;
    circuit.fs = 2;
    for (const Part& part : parts) {
        int k = circuit.klast + 1;
        if (k % 2 != (part.shunt ? 1 : 0)) ++k;
        if (part.id == unit_element) k = circuit.klast + 2;
        EXPECT_EQ(insert_values(circuit, k, part.id, maker.values(part.id)), CircuitVerdict::done);
        ladder.parts.push_back(k);
    }
    for (int i = maker.whole(0, 3); i > 0; --i) (void)maker.append(circuit, i % 2 != 0 ? inductor : capacitor);
    int k = circuit.klast + 1;
    if (seed % 2 == 0) (void)insertBranch(circuit, k, maker.uniform(0.5, 2), 0, resistor);
    return ladder;
}

inline int branch_count(const Circuit& circuit) {
    int count = 0;
    for (int k = circuit.klast; k != 0; k = unpackBranch(circuit, k).kp) ++count;
    return count;
}

// The factor of impedances at the source of circuits whose load stays.
inline double source_level(const Circuit& before, const Circuit& after) {
    return after.VALUE(unpackBranch(after, after.klast).i1) / before.VALUE(unpackBranch(before, before.klast).i1);
}

}  // namespace kavrel::testing
