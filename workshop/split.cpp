#include "workshop/split.h"

#include "workshop/section.h"

namespace kavrel {

Refusal splitBranch(Circuit& circuit, int k, double part) {
    if (!branchExists(circuit, k)) return {no_branch, "branch"};
    if (!is_plain(unpackBranch(circuit, k).id)) return {"Branch may not be split", "branch"};
    if (part == 0) return {"Zero value not permitted", "value"};
    const Branch branch = unpackBranch(circuit, k);
    const double value = circuit.VALUE(branch.i1);
    if (part == value) return {"No change", "value"};
    const double rest = values_add_up(branch.id, k) ? value - part : part * value / (part - value);
    if (insertBranch(circuit, k, part, 0, branch.id) != CircuitVerdict::done)
        return {"Storage is full, operation discontinued"};
    circuit.VALUE(branch.i1) = rest;
    return {};
}

double half_of_branch(const Circuit& circuit, int k) {
    if (!branchExists(circuit, k)) return 0;
    const Branch branch = unpackBranch(circuit, k);
    if (!is_plain(branch.id)) return 0;
    const double value = circuit.VALUE(branch.i1);
    return values_add_up(branch.id, k) ? value / 2 : 2 * value;
}

}  // namespace kavrel
