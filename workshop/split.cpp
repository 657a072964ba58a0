#include "workshop/split.h"

#include "workshop/section.h"

namespace kavrel {

namespace {

bool may_split(const Circuit& circuit, int k) {
    const BranchId id = unpackBranch(circuit, k).id;
    return id == BranchId::inductor || id == BranchId::capacitor;
}

// Inductors in series and capacitors across the rails; of the others the inverse values add up.
bool values_add_up(const Circuit& circuit, int k) {
    return (unpackBranch(circuit, k).id == BranchId::inductor) == (k % 2 == 0);
}

}  // namespace

Refusal splitBranch(Circuit& circuit, int k, double part) {
    if (!branchExists(circuit, k)) return {no_branch, "branch"};
    if (!may_split(circuit, k)) return {"Branch may not be split", "branch"};
    if (part == 0) return {"Zero value not permitted", "value"};
    const Branch branch = unpackBranch(circuit, k);
    const double value = circuit.VALUE(branch.i1);
    if (part == value) return {"No change", "value"};
    const double rest = values_add_up(circuit, k) ? value - part : part * value / (part - value);
    if (insertBranch(circuit, k, part, 0, branch.id) != CircuitVerdict::done)
        return {"Storage is full, operation discontinued"};
    circuit.VALUE(branch.i1) = rest;
    return {};
}

double half_of_branch(const Circuit& circuit, int k) {
    if (!branchExists(circuit, k) || !may_split(circuit, k)) return 0;
    const double value = circuit.VALUE(unpackBranch(circuit, k).i1);
    return values_add_up(circuit, k) ? value / 2 : 2 * value;
}

}  // namespace kavrel
