#include "workshop/branch_rewriting.h"

#include <algorithm>

namespace kavrel {

CircuitVerdict replace_branch(Circuit& circuit, int k, BranchId id, std::span<const double> values) {
    Branch branch = unpackBranch(circuit, k);
    const auto count = static_cast<int>(values.size());
    if (count > branch.in + 1) {
        if (circuit.ilast + count > max_values) return CircuitVerdict::storage_full;
        branch.i1 = circuit.ilast + 1;
        circuit.ilast += count;
    }
    branch.id = id;
    branch.in = count - 1;
    packBranch(circuit, k, branch);
    std::ranges::copy(values, branch_values(circuit, branch).begin());
    return CircuitVerdict::done;
}

CircuitVerdict insert_behind(Circuit& circuit, int k, BranchId id, std::span<const double> values) {
    const int next = unpackBranch(circuit, k).kn;
    int slot = k + 2;
    if (next == 0 || next > slot) return insert_values(circuit, slot, id, values);
    if (const auto verdict = shiftBranches(circuit, next, 2); verdict != CircuitVerdict::done) return verdict;
    return insert_values(circuit, slot, id, values);
}

}  // namespace kavrel
