#include "workshop/flip.h"

#include <algorithm>
#include <array>
#include <utility>

#include "circuit/branch_kinds.h"

namespace kavrel {

namespace {

void turn_values(Circuit& circuit, const Branch& branch);
void turn_quadruplet(Quadruplet& quadruplet);

}  // namespace

bool can_flip(const Circuit& circuit) {
    return circuit.klast % 2 != 0 && unpackBranch(circuit, circuit.klast).id == BranchId::resistor;
}

Refusal flip(Circuit& circuit) {
    if (!can_flip(circuit)) return no_flip;
    const int last = circuit.klast;
    Table<std::int32_t, max_branches> words{};
    const auto turned = [&](int k) { return k == 0 ? 0 : last - k + 1; };
    for (int k = last; k != 0; k = unpackBranch(circuit, k).kp) {
        Branch branch = unpackBranch(circuit, k);
        turn_values(circuit, branch);
        branch.id = flipped_kind(branch_kinds[branch.id]);
        branch.kp = std::exchange(branch.kn, turned(branch.kp));
        branch.kp = turned(branch.kp);
        words(turned(k)) = branch_word(branch);
    }
    circuit.INDX1 = words;
    return {};
}

namespace {

void turn_values(Circuit& circuit, const Branch& branch) {
    const BranchKind& kind = branch_kinds[branch.id];
    if (kind.structure == Structure::quadruplet) return turn_quadruplet(circuit.QUADRUPLETS(branch.i1));
    const auto values = branch_values(circuit, branch);
    std::array<double, max_values_of_branch> old{};
    std::ranges::copy(values, old.begin());
    for (std::size_t i = 0; i < kind.flip_order.size(); ++i)
        values[i] = old[static_cast<std::size_t>(kind.flip_order[i] - '0')];
}

// Node 1 is exchanged with node 4, and 2 with 3.
void turn_quadruplet(Quadruplet& quadruplet) {
    const Quadruplet old = quadruplet;
    for (int i = 1; i <= 4; ++i) {
        for (int j = i; j <= 4; ++j) {
            quadruplet.XK(i, j) = old.XK(5 - i, 5 - j);
            quadruplet.XC(i, j) = old.XC(5 - i, 5 - j);
            quadruplet.M(i, j) = old.M(5 - i, 5 - j);
        }
        quadruplet.YK(i) = old.YK(5 - i);
        quadruplet.YC(i) = old.YC(5 - i);
    }
}

}  // namespace

}  // namespace kavrel
