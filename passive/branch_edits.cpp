#include "passive/branch_edits.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "circuit/branch_kinds.h"
#include "passive/hindrances.h"
#include "shell/edited.h"
#include "workshop/combine.h"
#include "workshop/interchange.h"
#include "workshop/renumber.h"
#include "workshop/resonance_exchange.h"
#include "workshop/split.h"
#include "workshop/tee_pi.h"
#include "workshop/three_elements.h"
#include "workshop/unit_elements.h"

namespace kavrel {

namespace {

constexpr int squeeze_number = 101;  // typed as the first branch to combine: all that may be

[[nodiscard]] bool passes_squeezed(PassiveDesk& desk, EditStep& step, const Refusal& wrong);
[[nodiscard]] Refusal exchange_with_line(PassiveDesk& desk, EditStep& step);
[[nodiscard]] Refusal part_of_branch(const PassiveDesk& desk, double& part);
MacroStep split_step(const SplitRequest& request);
std::string two_numbers(const TwoBranches& branches);
int behind_neighbour(const Circuit& circuit, int k);
bool is_line(const Circuit& circuit, int k);

}  // namespace

bool combine_branches(PassiveDesk& desk, EditStep& step) {
    const auto [k1, k2] = desk.command.combined;
    if (const auto why = needs_branches<nothing_to_combine>(desk); !why.empty()) return passes(desk, {why, "branch1"});
    step.macro = {"Branch Combine", two_numbers(desk.command.combined)};
    if (k1 == squeeze_number) return passes_squeezed(desk, step, {});
    step.changed = std::min(k1, k2);
    return passes(desk, combineBranches(step.circuit(), k1, k2));
}

bool squeeze_branches(PassiveDesk&, EditStep& step) {
    step.macro = {"View Squeeze"};
    renumberBranches(step.circuit());
    return true;
}

bool split_branch(PassiveDesk& desk, EditStep& step) {
    const int k = desk.command.split.branch;
    step.changed = k;
    step.macro = split_step(desk.command.split);
    double part = 0;
    if (const Refusal wrong = part_of_branch(desk, part); !wrong.empty()) return passes(desk, wrong);
    return passes(desk, splitBranch(step.circuit(), k, part));
}

bool interchange_branches(PassiveDesk& desk, EditStep& step) {
    const auto [k1, k2] = desk.command.interchanged;
    if (const auto why = needs_branches<unfit_branches>(desk); !why.empty()) return passes(desk, {why, "branch1"});
    for (const int k : {k1, k2}) {
        if (k <= 1 || k > max_branches)
            return passes(desk, {message_of(CircuitVerdict::unfit_kind), k == k1 ? "branch1" : "branch2"});
    }
    step.changed = behind_neighbour(step.circuit(), std::min(k1, k2));
    step.macro = {"Branch Interchange", two_numbers(desk.command.interchanged)};
    const bool with_line = is_line(step.circuit(), k1) || is_line(step.circuit(), k2);
    return passes_squeezed(desk, step,
                           with_line ? exchange_with_line(desk, step) : interchangeBranches(step.circuit(), k1, k2));
}

bool exchange_tee_and_pi(PassiveDesk& desk, EditStep& step) {
    const auto [k, side] = desk.command.tee_pi;
    const bool up = side == TeePiSide::up;
    step.changed = k;
    step.macro = {"Modify Tee-pi", macro_branch(k) + std::string(macro_tab) + (up ? "{UP}" : "{DOWN}") + " ~"};
    if (has_resonant_middle(step.circuit(), k)) step.promise = Promise::level;
    return passes_squeezed(desk, step, teePi(step.circuit(), step.changed, up ? TeePiEnd::load : TeePiEnd::source));
}

bool exchange_resonances(PassiveDesk& desk, EditStep& step) {
    const auto [k1, k2] = desk.command.exchanged;
    step.changed = behind_neighbour(step.circuit(), std::min(k1, k2));
    step.macro = {"Modify Exchange", two_numbers(desk.command.exchanged)};
    return passes_squeezed(desk, step, exchangeResonant(step.circuit(), k1, k2));
}

bool convert_three_elements(PassiveDesk& desk, EditStep& step) {
    const auto [resonant, element] = desk.command.converted;
    step.macro = {"Modify Exchange", two_numbers(desk.command.converted)};
    return passes(desk, exchangeThree(step.circuit(), resonant, element));
}

namespace {

// What was rewritten may have met its like.
bool passes_squeezed(PassiveDesk& desk, EditStep& step, const Refusal& wrong) {
    if (wrong.empty()) squeezeAll(step.circuit());
    return passes(desk, wrong);
}

Refusal exchange_with_line(PassiveDesk& desk, EditStep& step) {
    const auto [k1, k2] = desk.command.interchanged;
    auto kind = KurodaKind::lowpass_equivalent;
    const bool may_ask = kuroda_kind(step.circuit(), k1, k2).has_value();
    if (may_ask && desk.reporter.message("Lowpass equivalent?", "Question", Buttons::yes_no) != Answer::yes) {
        kind = KurodaKind::same_kind;
        step.promise = Promise::level;
    }
    return kurodaInterchange(step.circuit(), k1, k2, kind);
}

// What is split off, as the store holds it; 0 of a branch that may not be split.
Refusal part_of_branch(const PassiveDesk& desk, double& part) {
    const SplitRequest& request = desk.command.split;
    const Circuit& circuit = desk.filter.circuit;
    part = half_of_branch(circuit, request.branch);
    if (part == 0 || request.half) return {};
    const BranchId id = unpackBranch(circuit, request.branch).id;
    if (request.match == 0) {
        const char letter = branch_kinds[id].cells.front();
        part = request.value == 0 ? 0 : stored_value(circuit, letter, request.value, desk.session.units);
        return {};
    }
    const int match = std::abs(request.match);
    if (!branchExists(circuit, match)) return {edited<"(A,I3,A)">(" Branch no. ", match, " does not exist"), "match"};
    const Branch other = unpackBranch(circuit, match);
    if (other.id != id) return {edited<"(A,I3,A)">(" Branch ", match, " is of the wrong type"), "match"};
    part = std::copysign(circuit.VALUE(other.i1), static_cast<double>(request.match));
    return {};
}

MacroStep split_step(const SplitRequest& request) {
    MacroStep step{"Branch Split", macro_branch(request.branch) + std::string(macro_return), macro_wait_line("Split")};
    if (request.half) {
        step.further += macro_key_line("~");
    } else {
        step.further += macro_key_line("!n") + macro_key_line(macro_value_d(request.value) + std::string(macro_tab) +
                                                              macro_branch(request.match) + std::string(macro_return));
    }
    return step;
}

std::string two_numbers(const TwoBranches& branches) {
    return macro_branch(branches.branch1) + std::string(macro_tab) + macro_branch(branches.branch2) +
           std::string(macro_return);
}

// The first number that what takes the place of branch k may have.
int behind_neighbour(const Circuit& circuit, int k) {
    return branchExists(circuit, k) ? unpackBranch(circuit, k).kp + 1 : k;
}

bool is_line(const Circuit& circuit, int k) {
    return branchExists(circuit, k) && unpackBranch(circuit, k).id == BranchId::unit_element;
}

}  // namespace

}  // namespace kavrel
