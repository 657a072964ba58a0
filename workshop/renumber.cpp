#include "workshop/renumber.h"

#include <algorithm>

#include "circuit/branch_kinds.h"

namespace kavrel {

namespace {

int smallest_distance(const Circuit& circuit, int k, int before);

}  // namespace

void renumberBranches(Circuit& circuit) {
    if (circuit.klast == 0) return;
    compactValues(circuit);
    const Circuit former = circuit;
    circuit.INDX1.fill(0);
    int k = 1;
    for (int old = 1, before = 0; old != 0;) {
        Branch branch = unpackBranch(former, old);
        const int next = branch.kn;
        branch.kp = before;
        branch.kn = next == 0 ? 0 : k + smallest_distance(former, next, old);
        packBranch(circuit, k, branch);
        circuit.klast = before = k;
        k = branch.kn;
        old = next;
    }
}

namespace {

// A two-port keeps a free slot on either side, but for an equalizer right behind the load.
int smallest_distance(const Circuit& circuit, int k, int before) {
    const auto is_wide = [&](int slot) { return !branch_kinds[unpackBranch(circuit, slot).id].slot_element(); };
    const int least = is_wide(k) || is_wide(before) ? 2 : 1;
    const bool is_odd = (k - before) % 2 != 0;
    return std::min(k - before, least + (is_odd == (least == 1) ? 0 : 1));
}

}  // namespace

}  // namespace kavrel
