#include "circuit/circuit.h"

#include <gtest/gtest.h>

#include "circuit/branch_elements.h"
#include "tests/circuit/random_circuits.h"
#include "tests/support/circuit_literal.h"

namespace kavrel {
namespace {

using enum BranchId;
using testing::CircuitMaker;

// What an edit must not change of a branch: kind, values, parity.
struct Sighting {
    BranchId id{};
    std::vector<double> values;
    int parity = 0;

    friend bool operator==(const Sighting&, const Sighting&) = default;
};

std::vector<int> slots_of(const Circuit& circuit) {
    std::vector<int> slots;
    for (int k = circuit.klast == 0 ? 0 : 1; k != 0; k = unpackBranch(circuit, k).kn) slots.push_back(k);
    return slots;
}

std::vector<Sighting> sightings(const Circuit& circuit) {
    std::vector<Sighting> seen;
    for (const int k : slots_of(circuit)) {
        const Branch branch = unpackBranch(circuit, k);
        const auto values = branch_values(circuit, branch);
        seen.push_back({branch.id, {values.begin(), values.end()}, k % 2});
    }
    return seen;
}

// Links both ways, rising order, no stray words, distances, cells within the store and shared by none.
void expect_sound(const Circuit& circuit, int trial) {
    int previous = 0, live = 0;
    std::vector<int> owner(max_values + 1, 0);
    for (const int k : slots_of(circuit)) {
        ASSERT_TRUE(branchExists(circuit, k)) << trial;
        const Branch branch = unpackBranch(circuit, k);
        ASSERT_EQ(branch.kp, previous) << trial;
        ASSERT_GT(k, previous) << trial;
        const BranchId before = previous == 0 ? resistor : unpackBranch(circuit, previous).id;
        const bool equalizer_at_load = before == resistor && branch_kinds[branch.id].equalizer();
        if (previous != 0 && !equalizer_at_load) {
            const bool plain = branch_kinds[before].slot_element() && branch_kinds[branch.id].slot_element();
            ASSERT_GE(k - previous, plain ? 1 : 2) << trial;
        }
        for (int i = 0; branch.id != quadruplet && i <= branch.in; ++i) {
            ASSERT_LE(branch.i1 + i, circuit.ilast) << trial;
            ASSERT_EQ(owner[static_cast<std::size_t>(branch.i1 + i)]++, 0) << trial;
        }
        previous = k;
        ++live;
    }
    ASSERT_EQ(circuit.klast, previous) << trial;
    for (int k = 1; k <= max_branches; ++k) live -= branchExists(circuit, k) ? 1 : 0;
    ASSERT_EQ(live, 0) << trial;
}

TEST(Circuit, AQuadrupletHasTenElements) { EXPECT_EQ(quadruplet_elements({}).count, 10); }

TEST(Circuit, BranchWords) {
    for (const Branch& branch :
         {Branch{resistor, 1, 0, 0, 0}, Branch{BranchId{50}, 150, 10, 100, 100}, Branch{quadruplet, 8, 0, 97, 98}}) {
        EXPECT_EQ(branch_of_word(branch_word(branch)), branch);
    }
    EXPECT_EQ(branch_word({inductor, 1, 1, 1, 1}), 1 + 51 + 7701 + 84711 + 8555811);
    EXPECT_EQ(branch_word({BranchId{50}, 150, 10, 100, 100}), 50 + 51 * 150 + 7701 * 10 + 84711 * 100 + 8555811 * 100);
    Circuit circuit;
    for (const int k : {-1, 0, 1, 100, 101}) EXPECT_FALSE(branchExists(circuit, k));
}

// Slots as an engineer asks for them and as they come: requests k in the circuit `before`.
TEST(Circuit, SlotsOfInsertion) {
    const struct {
        std::string_view before;
        BranchId id;
        int k, slot;
        std::vector<int> chain;
    } cases[] = {
        {"", resistor, 1, 1, {1}},
        {"R 1", inductor, 2, 2, {1, 2}},
        {"R 1", capacitor, 3, 3, {1, 3}},
        {"R 1", capacitor, 9, 3, {1, 3}},     // only the parity of the request counts
        {"R 1", unit_element, 2, 3, {1, 3}},  // a line skips exactly one slot
        {"R 1", unit_element, 3, 3, {1, 3}},
        {"R 1 | UE3 1", capacitor, 4, 6, {1, 3, 6}},  // behind it parity costs one slot more
        {"R 1 | UE3 1", capacitor, 5, 5, {1, 3, 5}},
        {"R 1 | UE3 1", unit_element, 4, 5, {1, 3, 5}},
        {"R 1", bridged_l, 2, 4, {1, 4}},
        {"R 1 | L2 1", capacitor, 2, 2, {1, 2, 4}},               // at a branch: before it, which moves by 2
        {"R 1 | C3 1", inductor, 2, 2, {1, 2, 3}},                // into a gap
        {"R 1 | L2 1 | C3 1", unit_element, 2, 4, {1, 4, 6, 7}},  // a line in between: free slots on both sides
        {"R 1 | UE3 1 | C5 1", inductor, 4, 6, {1, 3, 6, 7}},
        {"R 1 | UE3 1", inductor, 2, 2, {1, 2, 5}},
    };
    for (const auto& c : cases) {
        Circuit made = circuit(c.before);
        int k = c.k;
        const std::vector<double> values(branch_kinds[c.id].cells.size(), 7.0);
        ASSERT_EQ(insert_values(made, k, c.id, values), CircuitVerdict::done);
        EXPECT_EQ(k, c.slot) << c.before << ", " << branch_kinds[c.id].name << " at " << c.k;
        EXPECT_EQ(slots_of(made), c.chain) << c.before << ", " << branch_kinds[c.id].name << " at " << c.k;
    }
}

TEST(Circuit, RandomEditsKeepTheChain) {
    CircuitMaker make(11);
    int refusals = 0;
    for (int run = 0; run < 60; ++run) {
        Circuit circuit = make.circuit({inductor, capacitor, lc}, make.whole(0, 4), true);
        for (int edit = 0; edit < 120; ++edit) {
            const Circuit snapshot = circuit;
            auto expected = sightings(circuit);
            const auto slots = slots_of(circuit);
            CircuitVerdict verdict;
            if (make.whole(0, 2) != 0 || slots.size() < 3) {
                const BranchId kinds[] = {resistor,  inductor,    capacitor, lc,          unit_element, lcc,       lcl,
                                          bridged_l, twin_t_trap, lattice_c, equalizer_a, triplet_clc,  quadruplet};
                const BranchId id = kinds[make.whole(0, 12)];
                int k = make.whole(1, std::min(100, circuit.klast + 3));
                Sighting inserted{id, make.values(id), 0};
                if (id == quadruplet) {
                    verdict = insert_quadruplet(circuit, k, make.quadruplet());
                } else if (id == equalizer_a) {
                    verdict = insertEqualizer(circuit, make.value(), make.value(), make.value(), id);
                    k = 2;
                } else {
                    verdict = insert_values(circuit, k, id, inserted.values);
                }
                if (verdict == CircuitVerdict::done) {
                    const auto now = slots_of(circuit);
                    const auto place = std::find(now.begin(), now.end(), k) - now.begin();
                    ASSERT_LT(place, static_cast<std::ptrdiff_t>(now.size()));
                    if (id == equalizer_a) inserted.values = sightings(circuit)[1].values;
                    inserted.parity = k % 2;
                    expected.insert(expected.begin() + place, inserted);
                }
            } else {
                const int place = make.whole(1, static_cast<int>(slots.size()) - 1);
                int k = slots[static_cast<std::size_t>(place)];
                const bool last = place + 1 == static_cast<int>(slots.size());
                const int next = last ? 0 : slots[static_cast<std::size_t>(place + 1)];
                verdict = deleteBranch(circuit, k);
                ASSERT_EQ(verdict, CircuitVerdict::done);
                ASSERT_EQ(k, next);
                expected.erase(expected.begin() + place);
            }
            if (verdict != CircuitVerdict::done) {
                ++refusals;
                ASSERT_EQ(circuit, snapshot) << message_of(verdict);
            }
            ASSERT_NO_FATAL_FAILURE(expect_sound(circuit, run));
            ASSERT_EQ(sightings(circuit), expected);
            if (circuit.ilast >= 130) {
                compactValues(circuit);
                ASSERT_EQ(sightings(circuit), expected);
                int next_cell = 1;  // cells lie in the order of the chain
                for (const int k : slots_of(circuit)) {
                    const Branch branch = unpackBranch(circuit, k);
                    if (branch.id == quadruplet) continue;
                    ASSERT_EQ(branch.i1, next_cell);
                    next_cell += branch.in + 1;
                }
                ASSERT_EQ(circuit.ilast, next_cell - 1);
            }
        }
        // Undone branch by branch down to the load.
        while (circuit.klast > 1) {
            int k = circuit.klast;
            ASSERT_EQ(deleteBranch(circuit, k), CircuitVerdict::done);
            ASSERT_EQ(k, 0);
        }
        ASSERT_EQ(circuit.klast, 1);
    }
    EXPECT_GT(refusals, 100);  // the store was filled, too
}

TEST(Circuit, Refusals) {
    Circuit made;
    const auto insert = [&](int k, BranchId id) { return insertBranch(made, k, 1, 1, id); };
    EXPECT_EQ(insert(2, resistor), CircuitVerdict::not_a_resistor);
    EXPECT_EQ(insert(1, inductor), CircuitVerdict::not_a_resistor);
    EXPECT_EQ(message_of(CircuitVerdict::not_a_resistor), "First branch must be a resistor");
    EXPECT_EQ(insertEqualizer(made, 1, 1, 1, equalizer_a), CircuitVerdict::not_a_resistor);
    made = circuit("R 1");
    for (int outside : {-3, 0, 101}) {
        EXPECT_EQ(insert(outside, inductor), CircuitVerdict::out_of_range);
        EXPECT_EQ(deleteBranch(made, outside), CircuitVerdict::no_branch);
    }
    EXPECT_EQ(insert(1, capacitor), CircuitVerdict::not_a_resistor);
    for (const BranchId id : {bridged_l, lcc, quadruplet, BranchId{-1}, BranchId{branch_kind_count}})
        EXPECT_EQ(insert(2, id), CircuitVerdict::unfit_kind);
    ASSERT_EQ(insert(2, inductor), CircuitVerdict::done);
    int load = 1;
    EXPECT_EQ(deleteBranch(made, load), CircuitVerdict::no_branch);  // the load goes last

    // Slots run out at 98; nothing moves then.
    while (made.klast < 98) ASSERT_EQ(insert(made.klast + 1, capacitor), CircuitVerdict::done);
    const Circuit full = made;
    EXPECT_EQ(insert(99, capacitor), CircuitVerdict::storage_full);
    EXPECT_EQ(insert(50, capacitor), CircuitVerdict::storage_full);
    EXPECT_EQ(shiftBranches(made, 50, 1), CircuitVerdict::storage_full);
    EXPECT_EQ(shiftBranches(made, 99, 1), CircuitVerdict::done);
    EXPECT_EQ(shiftBranches(made, 2, 0), CircuitVerdict::done);
    EXPECT_EQ(made, full);

    // Values run out at 150: two do not fit where one does.
    clear_circuit(made);
    EXPECT_EQ(made.ilast + made.klast, 0);
    made = circuit("R 1 | L2 1");
    while (made.ilast < 149) {
        int k = 4;
        ASSERT_EQ(insert(k, inductor), CircuitVerdict::done);
        ASSERT_EQ(deleteBranch(made, k), CircuitVerdict::done);
    }
    EXPECT_EQ(insert(4, lc), CircuitVerdict::storage_full);
    EXPECT_EQ(made.ilast, 149);
    EXPECT_EQ(insert(4, inductor), CircuitVerdict::done);
    compactValues(made);
    EXPECT_EQ(made.ilast, 3);
}

// The equalizer's dual arm, behind the load of its own resistance, is a constant resistance.
TEST(Circuit, EqualizersAndThreeElements) {
    Circuit made = circuit("R 600 | L2 1");
    ASSERT_EQ(insertEqualizer(made, 0.01, 300, 2e-8, equalizer_b), CircuitVerdict::done);
    EXPECT_EQ(slots_of(made), (std::vector<int>{1, 2, 4}));
    const auto values = branch_values(made, unpackBranch(made, 2));
    const double expected[] = {600, 0.01, 300, 2e-8, 2e-8 * 360000, 1200, 0.01 / 360000};
    for (std::size_t i = 0; i < 7; ++i) EXPECT_DOUBLE_EQ(values[i], expected[i]);

    const auto three = [&](BranchId id, CircuitKind kind) {
        int k = 7;
        EXPECT_EQ(insertThreeElement(made, k, 20, 40, 80, id, kind), CircuitVerdict::done);
        const auto cells = branch_values(made, unpackBranch(made, k));
        return std::vector<double>(cells.begin(), cells.end());
    };
    EXPECT_EQ(three(lcc, CircuitKind::microwave), (std::vector<double>{20, 1.0 / 40, 1.0 / 80}));
    EXPECT_EQ(three(lcl, CircuitKind::lumped), (std::vector<double>{20, 40, 80}));
}

}  // namespace
}  // namespace kavrel
