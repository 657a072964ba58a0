#include "workshop/section.h"

#include <algorithm>

#include "circuit/branch_kinds.h"

namespace kavrel {

namespace {

bool has_source(const Circuit& circuit) { return unpackBranch(circuit, circuit.klast).id == BranchId::resistor; }

}  // namespace

std::optional<int> replace_section(Circuit& circuit, int first, int last, std::span<const NewBranch> branches) {
    const int end = circuit.klast;
    int before = unpackBranch(circuit, first).kp, behind = unpackBranch(circuit, last).kn;
    int k = first;
    while (k != behind) (void)deleteBranch(circuit, k);
    compactValues(circuit);

    k = first;
    for (const NewBranch& branch : branches) {
        const BranchKind& kind = branch_kinds[branch.id];
        if (!kind.slot_element()) {
            k = std::max(k, before + 2);
        } else if (k % 2 != (branch.shunt ? 1 : 0)) {
            k += k == first && k - 1 > before ? -1 : 1;
        }
        if (behind != 0 && behind <= k &&
            shiftBranches(circuit, behind, (k - behind) / 2 * 2 + 2) != CircuitVerdict::done)
            return std::nullopt;
        const auto values = std::span(branch.values).first(kind.cells.size());
        if (insert_values(circuit, k, branch.id, values) != CircuitVerdict::done) return std::nullopt;
        before = k;
        behind = unpackBranch(circuit, k).kn;
        ++k;
    }
    // The number of a two-port at the end says nothing but what drives the circuit.
    if (behind == 0 && (circuit.klast - end) % 2 != 0 &&
        !branch_kinds[unpackBranch(circuit, before).id].slot_element() &&
        shiftBranches(circuit, circuit.klast, 1) != CircuitVerdict::done)
        return std::nullopt;
    return behind;
}

bool is_driven_as(const Circuit& former, const Circuit& edited) {
    return has_source(former) || (edited.klast - former.klast) % 2 == 0;
}

}  // namespace kavrel
