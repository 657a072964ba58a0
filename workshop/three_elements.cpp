#include "workshop/three_elements.h"

#include <algorithm>
#include <cmath>

#include "workshop/interchange.h"
#include "workshop/section.h"

namespace kavrel {

namespace {

constexpr std::string_view incorrect = "Incorrect branch specified";

// The pair s and o of a resonant branch, of which s is of the kind of the element x.
struct Elements {
    double s = 0, o = 0, x = 0;
};
Elements joined(const Elements& two, bool values_sum);
Elements parted(const Elements& three, bool values_sum);
Refusal join(Circuit& circuit, int resonant, int element);
Refusal part(Circuit& circuit, int k);
bool is_sound(const Elements& made);

}  // namespace

Refusal exchangeThree(Circuit& circuit, int resonant, int element) {
    if (!branchExists(circuit, resonant)) return {no_branch, "branch1"};
    const BranchId id = unpackBranch(circuit, resonant).id;
    if (is_three_element(id)) return part(circuit, resonant);
    if (!branchExists(circuit, element)) return {no_branch, "branch2"};
    if (id != BranchId::lc) return {incorrect, "branch1"};
    return join(circuit, resonant, element);
}

namespace {

Refusal join(Circuit& circuit, int resonant, int element) {
    const Branch other = unpackBranch(circuit, element);
    if (!is_plain(other.id)) return {incorrect, "branch2"};
    if ((element - resonant) % 2 != 0) return {"Take the dual of the circuit and repeat", "branch2"};
    Circuit beside = circuit;
    if (!interchangeBranches(beside, resonant, element).empty()) return {incorrect, "branch2"};  // something is between

    const auto pair = branch_values(circuit, unpackBranch(circuit, resonant));
    const bool inductive = other.id == BranchId::inductor;
    const Elements two{inductive ? pair[0] : pair[1], inductive ? pair[1] : pair[0], circuit.VALUE(other.i1)};
    const Elements made = joined(two, values_add_up(other.id, resonant));
    if (!is_sound(made)) return {incorrect, "branch2"};
    const NewBranch three{inductive ? BranchId::lcl : BranchId::lcc,
                          resonant % 2 != 0,
                          {inductive ? made.s : made.o, inductive ? made.o : made.s, made.x}};
    Circuit edited = circuit;
    int gone = element;
    (void)deleteBranch(edited, gone);
    if (!replace_section(edited, resonant, resonant, std::array{three})) return {"Storage is full"};
    circuit = edited;
    return {};
}

Refusal part(Circuit& circuit, int k) {
    const Branch branch = unpackBranch(circuit, k);
    const bool inductive = branch.id == BranchId::lcl;
    const BranchId element = inductive ? BranchId::inductor : BranchId::capacitor;
    const auto cells = branch_values(circuit, branch);
    const Elements three{inductive ? cells[0] : cells[1], inductive ? cells[1] : cells[0], cells[2]};
    const Elements made = parted(three, values_add_up(element, k));
    if (!is_sound(made)) return {incorrect, "branch1"};
    const bool shunt = k % 2 != 0;
    const std::array two{NewBranch{BranchId::lc, shunt, {inductive ? made.s : made.o, inductive ? made.o : made.s}},
                         NewBranch{element, shunt, {made.x}}};
    Circuit edited = circuit;
    if (!replace_section(edited, k, k, two)) return {"Storage is full"};
    circuit = edited;
    return {};
}

// Equal in all coefficients of the immittance; o scales with the inverse of s, since the resonance of the pair moves
// from a zero to a pole of it.
Elements joined(const Elements& two, bool values_sum) {
    const auto [s, o, x] = two;
    const double sum = s + x;
    if (values_sum) return {x * sum / s, o * (s / sum) * (s / sum), sum};
    return {x * x / sum, o * (sum / x) * (sum / x), x * s / sum};
}

Elements parted(const Elements& three, bool values_sum) {
    const auto [s, o, x] = three;
    const double sum = s + x;
    if (values_sum) return {x * x / sum, o * (sum / x) * (sum / x), s * x / sum};
    return {x * sum / s, o * (s / sum) * (s / sum), sum};
}

bool is_sound(const Elements& made) {
    return std::ranges::all_of(std::array{made.s, made.o, made.x},
                               [](double value) { return std::isfinite(value) && value != 0; });
}

}  // namespace

}  // namespace kavrel
