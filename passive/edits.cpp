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

constexpr std::string_view insert_menu = "Branch Insert";
constexpr int behind_load = 2;  // slot of an equalizer

[[nodiscard]] bool cell_value(const PassiveDesk& desk, BranchId id, char letter, double typed, double& value);
[[nodiscard]] Refusal cell_values(const PassiveDesk& desk, const BranchKind& kind, std::span<double> values);
Refusal insert_refusal(CircuitVerdict verdict);
std::string insert_keys(const InsertRequest& request, std::size_t values);
bool in_range(int k) { return k >= 1 && k <= max_branches; }
void show_step(PassiveDesk& desk, std::string_view menu);

}  // namespace

bool insert_branch(PassiveDesk& desk, EditStep& step) {
    const InsertRequest& request = desk.command.insert;
    if (request.element == insert_copy) return copy_branch(desk, step);
    const BranchKind& kind = insert_kind(request.element);
    const bool lumped = step.circuit().kind == CircuitKind::lumped;
    if (kind.equalizer() && !lumped) return passes(desk, {no_equalizer, "element"});
    if (!kind.equalizer() && !in_range(request.branch))
        return passes(desk, {message_of(CircuitVerdict::out_of_range), "branch"});
    if (kind.structure == Structure::line && lumped) return passes(desk, {no_unit_element, "element"});

    std::array<double, 3> room{};
    const auto values = std::span(room).first(kind.typed.size());
    if (const Refusal wrong = cell_values(desk, kind, values); !wrong.empty()) return passes(desk, wrong);
    step.changed = kind.equalizer() ? behind_load : request.branch;
    step.macro = {insert_menu, insert_keys(request, values.size())};
    return passes(desk, insert_refusal(kind.equalizer()
                                           ? insertEqualizer(step.circuit(), values[0], values[1], values[2], kind.id)
                                           : insert_values(step.circuit(), step.changed, kind.id, values)));
}

bool copy_branch(PassiveDesk& desk, EditStep& step) {
    const InsertRequest& request = desk.command.insert;
    const Circuit& circuit = desk.filter.circuit;
    if (!in_range(request.branch)) return passes(desk, {message_of(CircuitVerdict::out_of_range), "branch"});
    if (!branchExists(circuit, request.copy_of)) return passes(desk, {no_source, "copy_of"});

    const Branch source = unpackBranch(circuit, request.copy_of);
    step.changed = request.branch;
    std::string keys = "{DOWN " + std::to_string(insert_copy - 1) + "}";
    for (const int branch : {request.branch, request.copy_of}) keys += std::string(macro_tab) + macro_branch(branch);
    step.macro = {insert_menu, keys + std::string(macro_return)};
    return passes(
        desk,
        insert_refusal(branch_kinds[source.id].structure == Structure::quadruplet
                           ? insert_quadruplet(step.circuit(), step.changed, circuit.QUADRUPLETS(source.i1))
                           : insert_values(step.circuit(), step.changed, source.id, branch_values(circuit, source))));
}

bool delete_branch(PassiveDesk& desk, EditStep& step) {
    step.changed = desk.command.deleted_branch;
    step.macro = {"Branch Delete", macro_branch(desk.command.deleted_branch) + std::string(macro_return)};
    const CircuitVerdict verdict = deleteBranch(step.circuit(), step.changed);
    return verdict == CircuitVerdict::done || passes(desk, {message_of(verdict), "branch"});
}

bool change_branch(PassiveDesk& desk, EditStep& step) {
    const ChangeRequest& request = desk.command.change;
    const Circuit& circuit = desk.filter.circuit;
    if (!branchExists(circuit, request.branch)) return passes(desk, {no_such_branch, "branch"});
    const Branch branch = unpackBranch(circuit, request.branch);
    if (!branch_kinds[branch.id].simple()) return passes(desk, {no_change, "branch"});

    const auto cells = branch_values(step.circuit(), branch);
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const char letter = branch_kinds[branch.id].cells[i];
        const double typed = letter == 'C' ? request.second : request.first;
        if (typed == typed_value(circuit, letter, cells[i], desk.session.units)) continue;
        if (!cell_value(desk, branch.id, letter, typed, cells[i]))
            return passes(desk, {zero_value, letter == 'C' ? "second" : "first"});
    }
    step.changed = request.branch;
    step.macro = {"Branch Change", macro_branch(request.branch) + std::string(macro_tab) +
                                       macro_value_d(request.first) + std::string(macro_tab) +
                                       macro_value_d(request.second) + std::string(macro_return)};
    return true;
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
    if (letter != 'L' && letter != 'C' && typed == 0) return false;
    value = stored_value(desk.filter.circuit, letter, typed, desk.session.units);
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

Refusal insert_refusal(CircuitVerdict verdict) {
    if (verdict == CircuitVerdict::storage_full) return storage_full_operations;
    return {message_of(verdict), "branch"};
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

}  // namespace

}  // namespace kavrel
