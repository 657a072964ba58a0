#include "passive/edits.h"

#include <algorithm>
#include <cmath>

#include "circuit/branch_kinds.h"
#include "passive/command_tools.h"
#include "passive/hindrances.h"

namespace kavrel {

namespace {

constexpr std::string_view zero_value = "Zero value not permitted";
constexpr std::string_view no_unit_element = "Not microwave, no unit element";
constexpr std::string_view no_equalizer = "Microwave, equalizer section may not be added";
constexpr std::string_view no_source = "Missing or inappropriate branch";
constexpr std::string_view no_change = "Branch may not be changed";
constexpr std::string_view values_out_of_range = "Values of the circuit are out of range";

constexpr std::string_view insert_menu = "Branch Insert";
constexpr int behind_load = 2;  // slot of an equalizer

[[nodiscard]] bool cell_value(const PassiveDesk& desk, BranchId id, char letter, double typed, double& value);
[[nodiscard]] Refusal cell_values(const PassiveDesk& desk, const BranchKind& kind, std::span<double> values);
void report_insert_verdict(PassiveDesk& desk, CircuitVerdict verdict);
std::string insert_keys(const InsertRequest& request, std::size_t values);
bool in_range(int k) { return k >= 1 && k <= max_branches; }
void show_step(PassiveDesk& desk, std::string_view menu);
void settle_terminations(Circuit& circuit);

}  // namespace

void take_edit(PassiveDesk& desk, const Circuit& edited, int changed, const MacroStep& step) {
    if (!is_finite(edited)) return refuse(desk, values_out_of_range);  // as a dual arm that follows from others
    if (!keep_for_undo(kept(desk))) return;
    desk.filter.circuit = edited;
    desk.filter.mod = 1.0F;
    settle_terminations(desk.filter.circuit);
    record_macro(desk, step);
    show_changed(desk, changed);
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

void insert_branch(PassiveDesk& desk) {
    const InsertRequest& request = desk.command.insert;
    if (request.element == insert_copy) return copy_branch(desk);
    const BranchKind& kind = insert_kind(request.element);
    const bool lumped = desk.filter.circuit.kind == CircuitKind::lumped;
    if (kind.equalizer() && !lumped) return refuse(desk, {no_equalizer, "element"});
    if (!kind.equalizer() && !in_range(request.branch))
        return refuse(desk, {message_of(CircuitVerdict::out_of_range), "branch"});
    if (kind.structure == Structure::line && lumped) return refuse(desk, {no_unit_element, "element"});

    std::array<double, 3> room{};
    const auto values = std::span(room).first(kind.typed.size());
    if (const Refusal wrong = cell_values(desk, kind, values); !wrong.empty()) return refuse(desk, wrong);
    Circuit edited = desk.filter.circuit;
    int k = kind.equalizer() ? behind_load : request.branch;
    const CircuitVerdict verdict = kind.equalizer() ? insertEqualizer(edited, values[0], values[1], values[2], kind.id)
                                                    : insert_values(edited, k, kind.id, values);
    if (verdict != CircuitVerdict::done) return report_insert_verdict(desk, verdict);
    take_edit(desk, edited, k, {insert_menu, insert_keys(request, values.size())});
}

void copy_branch(PassiveDesk& desk) {
    const InsertRequest& request = desk.command.insert;
    const Circuit& circuit = desk.filter.circuit;
    if (!in_range(request.branch)) return refuse(desk, {message_of(CircuitVerdict::out_of_range), "branch"});
    if (!branchExists(circuit, request.copy_of)) return refuse(desk, {no_source, "copy_of"});

    const Branch source = unpackBranch(circuit, request.copy_of);
    Circuit edited = circuit;
    int k = request.branch;
    const CircuitVerdict verdict = branch_kinds[source.id].structure == Structure::quadruplet
                                       ? insert_quadruplet(edited, k, circuit.QUADRUPLETS(source.i1))
                                       : insert_values(edited, k, source.id, branch_values(circuit, source));
    if (verdict != CircuitVerdict::done) return report_insert_verdict(desk, verdict);
    std::string keys = "{DOWN " + std::to_string(insert_copy - 1) + "}";
    for (const int branch : {request.branch, request.copy_of}) keys += std::string(macro_tab) + macro_branch(branch);
    take_edit(desk, edited, k, {insert_menu, keys + std::string(macro_return)});
}

void delete_branch(PassiveDesk& desk) {
    Circuit edited = desk.filter.circuit;
    int k = desk.command.deleted_branch;
    const CircuitVerdict verdict = deleteBranch(edited, k);
    if (verdict != CircuitVerdict::done) return refuse(desk, {message_of(verdict), "branch"});
    take_edit(desk, edited, k,
              {"Branch Delete", macro_branch(desk.command.deleted_branch) + std::string(macro_return)});
}

void change_branch(PassiveDesk& desk) {
    const ChangeRequest& request = desk.command.change;
    const Circuit& circuit = desk.filter.circuit;
    if (!branchExists(circuit, request.branch)) return refuse(desk, {no_such_branch, "branch"});
    const Branch branch = unpackBranch(circuit, request.branch);
    if (!branch_kinds[branch.id].simple()) return refuse(desk, {no_change, "branch"});

    Circuit edited = circuit;
    const auto cells = branch_values(edited, branch);
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const char letter = branch_kinds[branch.id].cells[i];
        const double typed = letter == 'C' ? request.second : request.first;
        if (typed == typed_value(circuit, letter, cells[i], desk.session.units)) continue;
        if (!cell_value(desk, branch.id, letter, typed, cells[i]))
            return refuse(desk, {zero_value, letter == 'C' ? "second" : "first"});
    }
    const std::string keys = macro_branch(request.branch) + std::string(macro_tab) + macro_value_d(request.first) +
                             std::string(macro_tab) + macro_value_d(request.second) + std::string(macro_return);
    take_edit(desk, edited, request.branch, {"Branch Change", keys});
}

void undo_edit(PassiveDesk& desk) {
    if (undo(kept(desk))) show_step(desk, "Undo Undo");
}

void redo_edit(PassiveDesk& desk) {
    if (redo(kept(desk))) show_step(desk, "Undo Redo");
}

void store_circuit(PassiveDesk& desk) {
    if (store(kept(desk))) report_done(desk);
}

void recall_circuit(PassiveDesk& desk) {
    if (recall(kept(desk))) show_changed(desk, 1);
}

namespace {

// From what was typed to what a cell holds: in a microwave circuit a capacitive cell holds the admittance of the
// impedance that was typed. False for what no cell may hold: a resistor, a line or a microwave stub of no impedance,
// half a pair.
bool cell_value(const PassiveDesk& desk, BranchId id, char letter, double typed, double& value) {
    if (id == BranchId::lc && typed == 0) return false;
    const UnitSet& units = desk.session.units;
    const bool lumped = desk.filter.circuit.kind == CircuitKind::lumped;
    if (letter == 'L') {
        value = lumped ? typed * units.inductor_multiplier : typed;
    } else if (letter == 'C') {
        value = lumped ? typed * units.capacitor_multiplier : 1 / typed;
    } else {
        value = typed;
        if (typed == 0) return false;
    }
    return std::isfinite(value);
}

Refusal cell_values(const PassiveDesk& desk, const BranchKind& kind, std::span<double> values) {
    constexpr std::string_view fields[] = {"value1", "value2", "value3"};
    const InsertRequest& request = desk.command.insert;
    const double typed[] = {request.value1, request.value2, request.value3};
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (!cell_value(desk, kind.id, kind.typed[i], typed[i], values[i])) return {zero_value, fields[i]};
    }
    return {};
}

void report_insert_verdict(PassiveDesk& desk, CircuitVerdict verdict) {
    if (verdict == CircuitVerdict::storage_full) {
        desk.reporter.message(storage_full_operations, "Warning");
    } else {
        refuse(desk, {message_of(verdict), "branch"});
    }
}

// The list of elements is brought to its first row, then down to the one that was chosen.
std::string insert_keys(const InsertRequest& request, std::size_t values) {
    const int down = request.element - 1;
    std::string keys = "{UP " + std::to_string(insert_copy - 1) + "}";
    if (down == 1) keys += " {DOWN}";
    if (down > 1) keys += " {DOWN " + std::to_string(down) + "}";
    keys += std::string(macro_tab) + macro_branch(request.branch);
    const double typed[] = {request.value1, request.value2, request.value3};
    for (std::size_t i = 0; i < values; ++i) keys += std::string(macro_tab) + macro_value_e(typed[i]);
    return keys + std::string(macro_return);
}

void show_step(PassiveDesk& desk, std::string_view menu) {
    record_macro(desk, {menu});
    show_changed(desk, 1);
}

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
