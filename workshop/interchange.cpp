#include "workshop/interchange.h"

#include <algorithm>

#include "circuit/branch_kinds.h"
#include "shell/edited.h"

namespace kavrel {

namespace {

bool are_in_one_place(const Circuit& circuit, int k1, int k2);

}  // namespace

Refusal interchangeBranches(Circuit& circuit, int k1, int k2) {
    if (k1 == k2 || !are_in_one_place(circuit, std::min(k1, k2), std::max(k1, k2)))
        return {edited<"(A,I3,A,I3,A)">(" Branches ", k1, " and ", k2, " cannot be interchanged"), "branch1"};
    Branch a = unpackBranch(circuit, k1), b = unpackBranch(circuit, k2);
    std::swap(a.id, b.id);
    std::swap(a.i1, b.i1);
    std::swap(a.in, b.in);
    packBranch(circuit, k1, a);
    packBranch(circuit, k2, b);
    return {};
}

namespace {

bool is_reactance(const Circuit& circuit, int k) {
    if (!branchExists(circuit, k)) return false;
    const BranchKind& kind = branch_kinds[unpackBranch(circuit, k).id];
    return kind.slot_element() && kind.id != BranchId::resistor;
}

bool are_in_one_place(const Circuit& circuit, int from, int to) {
    if (!is_reactance(circuit, from) || !is_reactance(circuit, to)) return false;
    for (int k = from; k != to; k = unpackBranch(circuit, k).kn) {
        if (k == 0 || k > to || (k - from) % 2 != 0 || !is_reactance(circuit, k)) return false;
    }
    return (to - from) % 2 == 0;
}

}  // namespace

}  // namespace kavrel
