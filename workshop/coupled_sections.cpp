#include "workshop/coupled_sections.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <optional>
#include <vector>

#include "circuit/branch_kinds.h"
#include "circuit/element_formulas.h"
#include "workshop/coupled_nodes.h"
#include "workshop/node_scaling.h"
#include "workshop/scaling.h"

namespace kavrel {

namespace {

constexpr std::string_view inappropriate = "Inappropriate circuit";
constexpr std::string_view inappropriate_four = "Circuit is inappropriate";
constexpr std::string_view incorrect_circuit = "Incorrect circuit";

bool is_triplet(const Circuit& circuit, int k);
Refusal couple_three(Circuit& circuit, int& k);
Refusal uncouple_three(Circuit& circuit, int& k);
Refusal change_coupling(Circuit& circuit, int& k, OtherCoupling which);
Refusal couple_four(Circuit& circuit, int& k);
Refusal scale_section(Circuit& circuit, int& k, BranchId kind, std::span<const double> values);

// An edit of a copy, which is taken over when it is done.
template <class Edit>
Refusal on_copy(Circuit& circuit, int& k, Edit edit) {
    Circuit edited = circuit;
    int place = k;
    Refusal wrong = edit(edited, place);
    if (wrong.empty()) {
        circuit = edited;
        k = place;
    }
    return wrong;
}

}  // namespace

Refusal tripletTransform(Circuit& circuit, int& k, OtherCoupling other) {
    return on_copy(circuit, k, [other](Circuit& edited, int& place) {
        const bool coupled = is_triplet(edited, place);
        if (coupled && other == OtherCoupling::none) return uncouple_three(edited, place);
        if (!coupled) {
            if (Refusal wrong = couple_three(edited, place); !wrong.empty()) return wrong;
        }
        return other == OtherCoupling::none ? Refusal{} : change_coupling(edited, place, other);
    });
}

Refusal quadrupletTransform(Circuit& circuit, int& k) { return on_copy(circuit, k, couple_four); }

Refusal multipleTransform(Circuit& circuit, int& k, BranchId kind, std::span<const double> values) {
    return on_copy(circuit, k, [&](Circuit& edited, int& place) { return scale_section(edited, place, kind, values); });
}

namespace {

// A resonance across the rails: an element of the neighbours' kind, and in series with it K and C to ground. Elements
// are 1/L or C.
struct Resonance {
    Wide y = 0;
    Wide K = 0, C = 0;
};
std::optional<Resonance> resonance_at(const Circuit& circuit, int k, BranchId kind);
double zero_frequency(const Circuit& circuit, const Resonance& resonance, BranchId kind);

// The y of a series branch of this kind in slot k.
std::optional<Wide> series_at(const Circuit& circuit, int k, BranchId kind);

Wide inverse_of(BranchId kind, Wide value) { return kind == BranchId::inductor ? 1 / value : value; }
double inductance(Wide inverse) { return inverse == 0 ? 2 * absent_inductor : static_cast<double>(1 / inverse); }

// Where a section that becomes one branch is put: in the slot of its branch `k`, or of its last one where that ends the
// circuit, whose last number has a meaning.
int slot_of_section(const Circuit& circuit, int k, int last) { return last == circuit.klast ? last : k; }

Refusal delete_all(Circuit& circuit, std::span<const int> branches);

// A ladder section ---------------------------------------------------------------------------------------------------

bool is_triplet(const Circuit& circuit, int k) {
    return is_coupled_section(circuit, k) && unpackBranch(circuit, k).id != BranchId::quadruplet;
}

Refusal couple_three(Circuit& circuit, int& k) {
    if (k % 2 == 0 || !branchExists(circuit, k)) return {"Incorrect branch specification", "branch"};
    const Branch middle = unpackBranch(circuit, k);
    const BranchId kind = middle.kp == 0 ? BranchId::resistor : unpackBranch(circuit, middle.kp).id;
    const auto load = series_at(circuit, middle.kp, kind), source = series_at(circuit, middle.kn, kind);
    const auto resonance = resonance_at(circuit, k, kind);
    if (!load || !source || !resonance) return {inappropriate, "branch"};
    const Wide p = *load, q = resonance->y, r = *source, sum = p + q + r;
    if (sum == 0) return {inappropriate, "branch"};

    const bool inductive = kind == BranchId::inductor;
    const auto cell = [&](Wide y) { return static_cast<double>(inverse_of(kind, y)); };
    const std::array values{cell(p * q / sum), cell(p * r / sum), inductance(resonance->K),
                            static_cast<double>(resonance->C), cell(q * r / sum)};
    const std::array section{middle.kp, k, middle.kn};
    k = slot_of_section(circuit, k, middle.kn);
    if (Refusal wrong = delete_all(circuit, section); !wrong.empty()) return wrong;
    const BranchId id = inductive ? BranchId::triplet_lll : BranchId::triplet_ccc;
    if (const auto verdict = insert_values(circuit, k, id, values); verdict != CircuitVerdict::done)
        return message_of(verdict);
    return {};
}

// The branch across the rails of an uncoupled triplet.
struct Trap {
    BranchId id{};
    std::vector<double> values;
};
std::optional<Trap> trap_of(const Resonance& resonance, BranchId kind);

Refusal uncouple_three(Circuit& circuit, int& k) {
    const Refusal refused{inappropriate, "branch"};
    // One coupling of the other kind goes first; of two there is no section.
    CoupledNodes nodes = coupled_nodes(circuit, k);
    if (nodes.inductive(1, 2) != nodes.inductive(2, 3)) {
        const bool load = nodes.inductive(1, 2) != nodes.inductive(1, 3);
        const auto other = load ? OtherCoupling::at_load : OtherCoupling::at_source;
        if (Refusal wrong = change_coupling(circuit, k, other); !wrong.empty()) return wrong;
    } else if (nodes.inductive(1, 2) != nodes.inductive(1, 3)) {
        return refused;
    }
    const Branch branch = unpackBranch(circuit, k);
    const auto values = branch_values(circuit, branch);
    const BranchKind& row = branch_kinds[branch.id];
    for (const int cell : {0, 1, 4}) {
        if (!element_present(row, cell, values[static_cast<std::size_t>(cell)])) return refused;
    }
    const BranchId kind = row.cells[0] == 'L' ? BranchId::inductor : BranchId::capacitor;
    const Wide y12 = inverse_of(kind, values[0]), y13 = inverse_of(kind, values[1]), y23 = inverse_of(kind, values[4]);
    const Wide sum = y12 * y13 + y12 * y23 + y13 * y23;
    if (sum == 0) return refused;
    const Resonance resonance{
        .y = sum / y13, .K = element_present(row, 2, values[2]) ? 1 / static_cast<Wide>(values[2]) : 0, .C = values[3]};
    const auto trap = trap_of(resonance, kind);
    if (!trap) return refused;

    const Circuit before = circuit;
    const double load = static_cast<double>(inverse_of(kind, sum / y23));
    const double source = static_cast<double>(inverse_of(kind, sum / y12));
    int slot = k - k % 2;
    if (Refusal wrong = delete_all(circuit, std::array{k}); !wrong.empty()) return wrong;
    CircuitVerdict verdict = insert_values(circuit, slot, kind, {&load, 1});
    if (verdict == CircuitVerdict::done) verdict = insert_values(circuit, k = slot + 1, trap->id, trap->values);
    if (verdict == CircuitVerdict::done) verdict = insert_values(circuit, slot = k + 1, kind, {&source, 1});
    if (verdict != CircuitVerdict::done) return message_of(verdict);
    return same_drive(before, circuit) ? Refusal{} : refused;
}

std::optional<Trap> trap_of(const Resonance& resonance, BranchId kind) {
    const auto& [y, K, C] = resonance;
    const double x = static_cast<double>(inverse_of(kind, y)), L = K == 0 ? 0 : static_cast<double>(1 / K);
    const double ground_c = static_cast<double>(C);
    if (K == 0 && C == 0) return std::nullopt;
    if (kind == BranchId::inductor) {
        if (K == 0) return Trap{BranchId::lc, {x, ground_c}};
        if (C == 0) return Trap{BranchId::inductor, {x + L}};
        return Trap{BranchId::lcl, {L, ground_c, x}};
    }
    if (C == 0) return Trap{BranchId::lc, {L, x}};
    if (K == 0) return Trap{BranchId::capacitor, {static_cast<double>(y * C / (y + C))}};
    return Trap{BranchId::lcc, {L, ground_c, x}};
}

// With v2 = t v_end + sign v2' the node matrices X become T'X T.
Refusal change_coupling(Circuit& circuit, int& k, OtherCoupling which) {
    const Refusal refused{inappropriate, "coupling"};
    CoupledNodes nodes = coupled_nodes(circuit, k);
    const int end = which == OtherCoupling::at_load ? 1 : 3, far = 4 - end;
    if (nodes.inductive(far, 2) != nodes.inductive(1, 3)) return refused;
    const bool inductive = !nodes.inductive(end, 2);
    const NodePairs<Wide>& leaves = inductive ? nodes.C : nodes.K;
    const NodePairs<Wide>& comes = inductive ? nodes.K : nodes.C;
    if (leaves(2, 2) == 0) return refused;
    const Wide t = -leaves(end, 2) / leaves(2, 2);
    const Wide coupling = -(comes(end, 2) + t * comes(2, 2));
    if (coupling == 0) return refused;
    const Wide sign = coupling < 0 ? -1 : 1;
    for (NodePairs<Wide>* X : {&nodes.K, &nodes.C}) {
        auto& x = *X;
        x(end, end) = sum_of({x(end, end), 2 * t * x(end, 2), t * t * x(2, 2)});
        x(end, far) = sum_of({x(end, far), t * x(2, far)});
        x(end, 2) = sign * (x(end, 2) + t * x(2, 2));
        x(2, far) *= sign;
    }
    (inductive ? nodes.C : nodes.K)(end, 2) = 0;
    nodes.inductive(end, 2) = inductive;
    Refusal wrong = put_coupled_nodes(circuit, k, nodes);
    return wrong.text == incorrect_circuit ? refused : wrong;
}

// Four nodes ---------------------------------------------------------------------------------------------------------

struct FiveBranches {
    std::array<int, 5> numbers{};
    BranchId kind{};
    std::array<Wide, 3> series{};
    std::array<Resonance, 2> resonances;
};
std::optional<FiveBranches> five_from(const Circuit& circuit, int first);
std::optional<FiveBranches> five_around(const Circuit& circuit, int k);

Refusal couple_four(Circuit& circuit, int& k) {
    if (!branchExists(circuit, k)) return {"Nonexistent branch", "branch"};
    const auto five = five_around(circuit, k);
    if (!five) return {inappropriate_four, "branch"};
    const auto [p, r, w] = five->series;
    const auto& [one, two] = five->resonances;
    const Wide q = one.y, u = two.y, S1 = p + q + r, S2 = r + u + w, D = S1 * S2 - r * r;
    if (D == 0) return {inappropriate_four, "branch"};

    Quadruplet quadruplet;
    const auto couple = [&](int i, int j, Wide y) {
        const bool inductive = five->kind == BranchId::inductor;
        quadruplet.M(i, j) = inductive ? 1 : 0;
        (inductive ? quadruplet.XK : quadruplet.XC)(i, j) = static_cast<double>(y);
    };
    couple(1, 2, p * q * S2 / D);
    couple(1, 3, p * u * r / D);
    couple(1, 4, p * w * r / D);
    couple(2, 3, q * u * r / D);
    couple(2, 4, q * w * r / D);
    couple(3, 4, u * w * S1 / D);
    for (const int i : {1, 2}) {
        const Resonance& resonance = five->resonances[static_cast<std::size_t>(i - 1)];
        quadruplet.YK(i + 1) = static_cast<double>(resonance.K);
        quadruplet.YC(i + 1) = static_cast<double>(resonance.C);
        quadruplet.FRES(i) = zero_frequency(circuit, resonance, five->kind);
    }
    k = slot_of_section(circuit, five->numbers[1], five->numbers[4]);
    if (Refusal wrong = delete_all(circuit, five->numbers); !wrong.empty()) return wrong;
    if (const auto verdict = insert_quadruplet(circuit, k, quadruplet); verdict != CircuitVerdict::done)
        return message_of(verdict);
    return {};
}

// Those with k in the middle, else with k as the first resonance, the second, the first branch, the last.
std::optional<FiveBranches> five_around(const Circuit& circuit, int k) {
    for (const int place : {2, 1, 3, 0, 4}) {
        int first = k;
        for (int i = 0; i < place && first != 0; ++i) first = unpackBranch(circuit, first).kp;
        if (const auto five = five_from(circuit, first)) return five;
    }
    return std::nullopt;
}

std::optional<FiveBranches> five_from(const Circuit& circuit, int first) {
    if (first == 0) return std::nullopt;
    FiveBranches five;
    five.kind = unpackBranch(circuit, first).id;
    int k = first;
    for (std::size_t i = 0; i < five.numbers.size(); ++i) {
        if (k == 0) return std::nullopt;
        five.numbers[i] = k;
        if (i % 2 == 0) {
            const auto y = series_at(circuit, k, five.kind);
            if (!y) return std::nullopt;
            five.series[i / 2] = *y;
        } else {
            const auto resonance = resonance_at(circuit, k, five.kind);
            if (!resonance) return std::nullopt;
            five.resonances[i / 2] = *resonance;
        }
        k = unpackBranch(circuit, k).kn;
    }
    return five;
}

// The nodes' levels --------------------------------------------------------------------------------------------------

Refusal scale_section(Circuit& circuit, int& k, BranchId kind, std::span<const double> values) {
    if (!is_coupled_section(circuit, k)) return {"Incorrect section", "branch"};
    constexpr std::string_view fields[] = {"value1", "value2", "value3"};
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (!(values[i] > 0)) return {"Values must be > 0.0", fields[i]};
    }
    CoupledNodes nodes = coupled_nodes(circuit, k);
    const auto count = static_cast<std::size_t>(nodes.count);
    const NodePairs<Wide>& matrix = kind == BranchId::inductor ? nodes.K : nodes.C;
    std::vector<double> X, wanted(count, 1.0), s(count, 1.0);
    for (int i = 1; i <= nodes.count; ++i) {
        for (int j = 1; j <= nodes.count; ++j) X.push_back(static_cast<double>(matrix(i, j)));
    }
    for (std::size_t i = 0; i < values.size(); ++i) wanted[i + 1] = static_cast<double>(inverse_of(kind, values[i]));
    switch (scale_nodes(X, wanted, s, values.empty() ? 0 : 1)) {
        case NodeScalingVerdict::no_convergence: return "No convergence";
        case NodeScalingVerdict::not_positive_definite: return incorrect_circuit;
        case NodeScalingVerdict::done: break;
    }
    const double first = s.front();
    for (double& scale : s) scale /= first;
    if (std::ranges::all_of(s, [](double scale) { return std::fabs(scale - 1) < 1e-12; })) return "No change";

    for (int i = 1; i <= nodes.count; ++i) {
        for (int j = i; j <= nodes.count; ++j) {
            const Wide factor =
                static_cast<Wide>(s[static_cast<std::size_t>(i - 1)]) * s[static_cast<std::size_t>(j - 1)];
            nodes.K(i, j) *= factor;
            nodes.C(i, j) *= factor;
        }
    }
    scale(circuit, 1 / (s.back() * s.back()), 1, k + 1);
    return put_coupled_nodes(circuit, k, nodes);
}

// What they have in common -------------------------------------------------------------------------------------------

std::optional<Wide> series_at(const Circuit& circuit, int k, BranchId kind) {
    if (k == 0 || k % 2 != 0 || (kind != BranchId::inductor && kind != BranchId::capacitor)) return std::nullopt;
    const Branch branch = unpackBranch(circuit, k);
    const double value = branch.id == kind ? circuit.VALUE(branch.i1) : 0;
    if (value == 0) return std::nullopt;
    return inverse_of(kind, value);
}

std::optional<Resonance> resonance_at(const Circuit& circuit, int k, BranchId kind) {
    if (k % 2 == 0) return std::nullopt;
    const Branch branch = unpackBranch(circuit, k);
    const auto values = branch_values(circuit, branch);
    const bool inductive = kind == BranchId::inductor;
    const bool three = branch.id == (inductive ? BranchId::lcl : BranchId::lcc);
    if ((branch.id != BranchId::lc && !three) || std::ranges::find(values, 0.0) != values.end()) return std::nullopt;
    const Wide K = 1 / static_cast<Wide>(values[0]), C = values[1];
    if (three) return Resonance{.y = inverse_of(kind, values[2]), .K = K, .C = C};
    return inductive ? Resonance{.y = K, .C = C} : Resonance{.y = C, .K = K};
}

// Where y and what is in series with it resonate.
double zero_frequency(const Circuit& circuit, const Resonance& resonance, BranchId kind) {
    const auto& [y, K, C] = resonance;
    const Wide inverse = kind == BranchId::inductor ? K + y : K, capacitance = kind == BranchId::inductor ? C : C + y;
    return inverse == 0
               ? 0
               : resonant_frequency(circuit, static_cast<double>(1 / inverse), static_cast<double>(capacitance));
}

Refusal delete_all(Circuit& circuit, std::span<const int> branches) {
    for (int k : branches) {
        if (const auto verdict = deleteBranch(circuit, k); verdict != CircuitVerdict::done) return message_of(verdict);
    }
    if (circuit.ilast > max_values - max_values_of_branch) compactValues(circuit);  // room for what comes instead
    return {};
}

}  // namespace

}  // namespace kavrel
