#include "workshop/stub_transfer.h"

#include <utility>

#include "circuit/branch_kinds.h"

namespace kavrel {

Refusal transfer(Circuit& circuit) {
    if (circuit.kind != CircuitKind::microwave) return no_transfer;
    Circuit made = circuit;
    for (int k = made.klast; k != 0; k = unpackBranch(made, k).kp) {
        Branch branch = unpackBranch(made, k);
        const BranchKind& kind = branch_kinds[branch.id];
        if (!kind.slot_element()) return "Complex filter structure\n may not be transferred";
        if (branch.id == BranchId::resistor) continue;
        // L z becomes C 1/z: the kind is that of the dual, whose L and C are exchanged as well, in its own slot.
        const auto values = branch_values(made, branch);
        for (double& value : values) value = 1 / value;
        if (values.size() > 1) std::swap(values[0], values[1]);
        branch.id = kind.dual;
        packBranch(made, k, branch);
    }
    const auto turned = [&](double f) { return f > 0 ? circuit.fs / 2 - f : 0; };
    made.fa = turned(circuit.fb);
    made.fb = turned(circuit.fa);
    made.fnorm = turned(circuit.fnorm);
    made.mode_count = 0;
    circuit = made;
    return {};
}

}  // namespace kavrel
