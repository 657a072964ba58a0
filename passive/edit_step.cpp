#include "passive/edit_step.h"

#include <algorithm>

#include "passive/command_tools.h"

namespace kavrel {

namespace {

constexpr std::string_view values_out_of_range = "Values of the circuit are out of range";

void settle_terminations(Circuit& circuit);

}  // namespace

void make_edit(PassiveDesk& desk, Promise promise, EditRoutine routine) {
    EditStep step{.filter = desk.filter, .promise = promise};
    if (!routine(desk, step)) return;
    settle_terminations(step.circuit());
    if (!is_finite(step.circuit())) return refuse(desk, values_out_of_range);  // as a dual arm that follows from others
    if (!(step.circuit() == desk.filter.circuit)) {
        if (!keep_for_undo(kept(desk))) return;
        if (!keeps_promise(desk.filter.circuit, step.circuit(), step.promise)) return refuse(desk, step.destroyed);
        desk.filter = step.filter;
        desk.filter.mod = 1.0F;
    }
    record_macro(desk, step.macro);
    show_changed(desk, step.changed);
}

bool passes(PassiveDesk& desk, const Refusal& wrong) {
    if (wrong.text.starts_with("Storage is full, ")) {
        desk.reporter.message(wrong.text, "Warning");
    } else if (!wrong.empty()) {
        refuse(desk, wrong);
    }
    return wrong.empty();
}

void show_changed(PassiveDesk& desk, int changed) {
    const Circuit& circuit = desk.filter.circuit;
    int from = changed == 0 ? circuit.klast : changed - 1;
    while (from > 1 && !branchExists(circuit, from)) --from;
    desk.state.lastBranch = std::max(from, 1);
    if (desk.state.suppress) {
        desk.state.lastBranch = 1;
    } else {
        show_circuit(desk);
    }
}

namespace {

void settle_terminations(Circuit& circuit) {
    const auto resistance = [&](int k) {
        if (!branchExists(circuit, k)) return 0.0;
        const Branch branch = unpackBranch(circuit, k);
        return branch.id == BranchId::resistor ? circuit.VALUE(branch.i1) : 0.0;
    };
    circuit.R1 = resistance(1);
    circuit.R2 = circuit.klast > 1 ? resistance(circuit.klast) : 0.0;
    if (circuit.R1 != 0) circuit.termination_ratio = circuit.R2 / circuit.R1;
}

}  // namespace

}  // namespace kavrel
