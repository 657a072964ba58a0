#include "passive/coupling_edits.h"

#include <array>
#include <span>

#include "workshop/coupled_nodes.h"
#include "workshop/coupled_sections.h"

namespace kavrel {

namespace {

constexpr std::string_view four_destroyed = "Circuit destroyed, recover using 'undo'";

// The items that send "mtr ".
struct MultipleItem {
    MultipleKind kind;
    std::string_view menu;
};
constexpr MultipleItem multiple_items[] = {
    {MultipleKind::equal_inductors, "Modify Norton Multiple Equal L's"},
    {MultipleKind::equal_capacitors, "Modify Norton Multiple Equal C's"},
    {MultipleKind::specified, "Modify Norton Multiple Specified values"},
};

BranchId scaled_kind(const MultipleRequest& request);
std::array<double, 3> stored_values(const PassiveDesk& desk, BranchId kind);
MacroStep multiple_step(const MultipleRequest& request, std::span<const double> typed);
int first_of_section(const Circuit& circuit, int k, int before);

std::string one_key(int branch) { return macro_branch(branch) + std::string(macro_return); }

}  // namespace

bool couple_three(PassiveDesk& desk, EditStep& step) {
    const auto& [branch, coupling] = desk.command.triplet;
    step.changed = branch;
    step.macro = {"Modify Triplet", one_key(branch)};
    if (coupling != OtherCoupling::none) {
        const std::string down = coupling == OtherCoupling::at_load ? "{DOWN}" : "{DOWN 2}";
        step.macro.keys = macro_branch(branch) + std::string(macro_tab) + down + std::string(macro_return);
    }
    const Refusal wrong = tripletTransform(step.circuit(), step.changed, coupling);
    step.changed = first_of_section(step.circuit(), step.changed, 1);
    return passes(desk, wrong);
}

bool couple_four(PassiveDesk& desk, EditStep& step) {
    step.changed = desk.command.coupled_four;
    step.macro = {"Modify Quadruplet", one_key(step.changed)};
    step.destroyed = four_destroyed;
    const Refusal wrong = quadrupletTransform(step.circuit(), step.changed);
    step.changed = first_of_section(step.circuit(), step.changed, 2);
    return passes(desk, wrong);
}

bool transform_coupling(PassiveDesk& desk, EditStep& step) {
    const MultipleRequest& request = desk.command.multiple;
    const Circuit& circuit = desk.filter.circuit;
    const BranchId kind = scaled_kind(request);
    std::size_t count = 0;
    if (request.kind == MultipleKind::specified && is_coupled_section(circuit, request.branch))
        count = unpackBranch(circuit, request.branch).id == BranchId::quadruplet ? 3 : 2;
    const std::array typed{request.value1, request.value2, request.value3};
    const auto stored = stored_values(desk, kind);

    step.changed = request.branch;
    step.macro = multiple_step(request, std::span(typed).first(count));
    step.destroyed = four_destroyed;
    const Refusal wrong = multipleTransform(step.circuit(), step.changed, kind, std::span(stored).first(count));
    step.changed = first_of_section(step.circuit(), step.changed, 0);
    return passes(desk, wrong);
}

namespace {

BranchId scaled_kind(const MultipleRequest& request) {
    const bool inductive = request.kind == MultipleKind::specified ? request.couplings == SideBranches::inductive
                                                                   : request.kind == MultipleKind::equal_inductors;
    return inductive ? BranchId::inductor : BranchId::capacitor;
}

// What cells hold of the values that were typed; what cannot be one is 0.
std::array<double, 3> stored_values(const PassiveDesk& desk, BranchId kind) {
    const MultipleRequest& request = desk.command.multiple;
    const UnitSet& units = desk.session.units;
    const bool lumped = desk.filter.circuit.kind == CircuitKind::lumped;
    std::array values{request.value1, request.value2, request.value3};
    for (double& value : values) {
        if (lumped) {
            value *= kind == BranchId::inductor ? units.inductor_multiplier : units.capacitor_multiplier;
        } else if (kind == BranchId::capacitor && value != 0) {
            value = 1 / value;
        }
    }
    return values;
}

MacroStep multiple_step(const MultipleRequest& request, std::span<const double> typed) {
    MacroStep step;
    for (const MultipleItem& item : multiple_items) {
        if (item.kind == request.kind) step.menu = item.menu;
    }
    step.keys = macro_branch(request.branch);
    if (!typed.empty()) {
        const bool inductive = request.couplings == SideBranches::inductive;
        step.keys += std::string(macro_tab) + (inductive ? "{UP}" : "{DOWN}");
        for (const double value : typed) step.keys += std::string(macro_tab) + macro_value_d(value);
    }
    step.keys += macro_return;
    return step;
}

// Where the section of k begins: with what lies across its port, which may have changed, too. Of a ladder, whose middle
// k is, `before` branches come first.
int first_of_section(const Circuit& circuit, int k, int before) {
    const auto previous = [&](int of) { return branchExists(circuit, of) ? unpackBranch(circuit, of).kp : 0; };
    for (int i = is_coupled_section(circuit, k) ? before : 0; i < before; ++i) k = previous(k);
    for (int shunt = previous(k); shunt > 1 && shunt % 2 != 0; shunt = previous(k)) {
        if (!branch_kinds[unpackBranch(circuit, shunt).id].slot_element()) break;
        k = shunt;
    }
    return k;
}

}  // namespace

}  // namespace kavrel
