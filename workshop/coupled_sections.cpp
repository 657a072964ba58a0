#include "workshop/coupled_sections.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <vector>

#include "circuit/branch_kinds.h"
#include "circuit/element_formulas.h"
#include "workshop/coupled_nodes.h"
#include "workshop/node_scaling.h"
#include "workshop/scaling.h"
#include "workshop/section.h"

namespace kavrel {

namespace {

constexpr std::string_view inappropriate = "Inappropriate circuit";
constexpr std::string_view inappropriate_four = "Circuit is inappropriate";

bool is_triplet(const Circuit& circuit, int k);
Refusal couple_three(Circuit& circuit, int& k);
Refusal uncouple_three(Circuit& circuit, int& k);
Refusal change_coupling(Circuit& circuit, int& k, OtherCoupling which);
Refusal couple_four(Circuit& circuit, int& k);
Refusal uncouple_four(Circuit& circuit, int& k);
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

Refusal quadrupletTransform(Circuit& circuit, int& k) {
    const bool coupled = is_coupled_section(circuit, k) && !is_triplet(circuit, k);
    return on_copy(circuit, k, coupled ? uncouple_four : couple_four);
}

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

// Series branches of one kind, and a resonance between two of them.
struct LadderSection {
    BranchId kind{};
    std::vector<Wide> series;
    std::vector<Resonance> resonances;
    std::vector<int> numbers;  // of all branches
};

// That of `count` branches from branch `first` on; none where they are no such section.
std::optional<LadderSection> section_from(const Circuit& circuit, int first, std::size_t count);

// Instead of the branches of a section, or of the coupled section k. k becomes the number of the coupled section, or of
// the branch in the middle.
template <class Insert>
Refusal couple(Circuit& circuit, int& k, const LadderSection& section, Insert insert);
Refusal uncouple(Circuit& circuit, int& k, const LadderSection& section, const Refusal& refused);

double zero_frequency(const Circuit& circuit, const Resonance& resonance, BranchId kind);

double cell_of(BranchId kind, Wide y) { return static_cast<double>(admittance(kind, y)); }

// Three nodes --------------------------------------------------------------------------------------------------------

bool is_triplet(const Circuit& circuit, int k) {
    return is_coupled_section(circuit, k) && unpackBranch(circuit, k).id != BranchId::quadruplet;
}

Refusal couple_three(Circuit& circuit, int& k) {
    if (k % 2 == 0 || !branchExists(circuit, k)) return {no_triplet, "branch"};
    const auto section = section_from(circuit, unpackBranch(circuit, k).kp, 3);
    if (!section) return {inappropriate, "branch"};
    const Resonance& resonance = section->resonances.front();
    const Wide p = section->series[0], q = resonance.y, r = section->series[1], sum = p + q + r;
    if (sum == 0) return {inappropriate, "branch"};
    const BranchId kind = section->kind;
    const std::array values{cell_of(kind, p * q / sum), cell_of(kind, p * r / sum), inductance(resonance.K),
                            static_cast<double>(resonance.C), cell_of(kind, q * r / sum)};
    return couple(circuit, k, *section, [&] {
        return insert_values(circuit, k, kind == BranchId::inductor ? BranchId::triplet_lll : BranchId::triplet_ccc,
                             values);
    });
}

Refusal uncouple_three(Circuit& circuit, int& k) {
    const Refusal refused{inappropriate, "branch"};
    // One coupling of the other kind goes first; of two there is no section.
    CoupledNodes nodes = coupled_nodes(circuit, k);
    if (nodes.inductive(1, 2) != nodes.inductive(2, 3)) {
        const bool load = nodes.inductive(1, 2) != nodes.inductive(1, 3);
        const auto other = load ? OtherCoupling::at_load : OtherCoupling::at_source;
        if (Refusal wrong = change_coupling(circuit, k, other); !wrong.empty()) return wrong;
        nodes = coupled_nodes(circuit, k);
    } else if (nodes.inductive(1, 2) != nodes.inductive(1, 3)) {
        return refused;
    }
    const NodePairs<Wide>& X = nodes.inductive(1, 2) ? nodes.K : nodes.C;
    const Wide y12 = -X(1, 2), y13 = -X(1, 3), y23 = -X(2, 3), sum = y12 * y13 + y12 * y23 + y13 * y23;
    if (y12 == 0 || y13 == 0 || y23 == 0 || sum == 0) return refused;
    LadderSection section{.kind = nodes.inductive(1, 2) ? BranchId::inductor : BranchId::capacitor,
                          .series = {sum / y23, sum / y12},
                          .resonances = {{.y = sum / y13, .K = to_ground(nodes.K, 2), .C = to_ground(nodes.C, 2)}},
                          .numbers = {}};
    return uncouple(circuit, k, section, refused);
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
        x(end, end) = sum_of(std::array{x(end, end), 2 * t * x(end, 2), t * t * x(2, 2)});
        x(end, far) = sum_of(std::array{x(end, far), t * x(2, far)});
        x(end, 2) = sign * (x(end, 2) + t * x(2, 2));
        x(2, far) *= sign;
    }
    (inductive ? nodes.C : nodes.K)(end, 2) = 0;
    nodes.inductive(end, 2) = inductive;
    Refusal wrong = put_coupled_nodes(circuit, k, nodes);
    return wrong.text == incorrect_circuit ? refused : wrong;
}

// Four nodes ---------------------------------------------------------------------------------------------------------

std::optional<LadderSection> five_around(const Circuit& circuit, int k);

Refusal couple_four(Circuit& circuit, int& k) {
    if (!branchExists(circuit, k)) return {no_quadruplet, "branch"};
    const auto section = five_around(circuit, k);
    if (!section) return {inappropriate_four, "branch"};
    const Wide p = section->series[0], r = section->series[1], w = section->series[2];
    const Wide q = section->resonances[0].y, u = section->resonances[1].y;
    const Wide S1 = p + q + r, S2 = r + u + w, D = S1 * S2 - r * r;
    if (D == 0) return {inappropriate_four, "branch"};

    Quadruplet quadruplet;
    const auto pair = [&](int i, int j, Wide y) {
        const bool inductive = section->kind == BranchId::inductor;
        quadruplet.M(i, j) = inductive ? 1 : 0;
        (inductive ? quadruplet.XK : quadruplet.XC)(i, j) = static_cast<double>(y);
    };
    pair(1, 2, p * q * S2 / D);
    pair(1, 3, p * u * r / D);
    pair(1, 4, p * w * r / D);
    pair(2, 3, q * u * r / D);
    pair(2, 4, q * w * r / D);
    pair(3, 4, u * w * S1 / D);
    for (const int i : {1, 2}) {
        const Resonance& resonance = section->resonances[static_cast<std::size_t>(i - 1)];
        quadruplet.YK(i + 1) = static_cast<double>(resonance.K);
        quadruplet.YC(i + 1) = static_cast<double>(resonance.C);
        quadruplet.FRES(i) = zero_frequency(circuit, resonance, section->kind);
    }
    return couple(circuit, k, *section, [&] { return insert_quadruplet(circuit, k, quadruplet); });
}

// Those with k in the middle, else with k as the first resonance, the second, the first branch, the last.
std::optional<LadderSection> five_around(const Circuit& circuit, int k) {
    for (const int place : {2, 1, 3, 0, 4}) {
        int first = k;
        for (int i = 0; i < place && first != 0; ++i) first = unpackBranch(circuit, first).kp;
        if (auto section = section_from(circuit, first, 5)) return section;
    }
    return std::nullopt;
}

// p/q = y13/y23 = y14/y24 and u/w = y13/y14 = y23/y24 where there is such a section. With all that couples nodes 1 and
// 2 with 3 and 4, G = (p + q) (u + w) r/D, and y12 = p q S2/D = (p q/(p + q)^2) (p + q - G).
Refusal uncouple_four(Circuit& circuit, int& k) {
    constexpr Wide close = 1e-9L;
    const Refusal refused{inappropriate_four, "branch"};
    const CoupledNodes nodes = coupled_nodes(circuit, k);
    const bool inductive = nodes.inductive(1, 2);
    const NodePairs<Wide>& X = inductive ? nodes.K : nodes.C;
    for (int i = 1; i <= 3; ++i) {
        for (int j = i + 1; j <= 4; ++j) {
            if (nodes.inductive(i, j) != inductive || X(i, j) == 0) return refused;
        }
    }
    const Wide G = -(X(1, 3) + X(1, 4) + X(2, 3) + X(2, 4));
    const Wide p_to_q = X(1, 4) / X(2, 4), u_to_w = X(2, 3) / X(2, 4);
    if (std::fabs(X(1, 3) * X(2, 4) / (X(1, 4) * X(2, 3)) - 1) > close || p_to_q == -1 || u_to_w == -1) return refused;
    const Wide P = G - X(1, 2) * (1 + p_to_q) * (1 + p_to_q) / p_to_q;  // p + q
    const Wide U = G - X(3, 4) * (1 + u_to_w) * (1 + u_to_w) / u_to_w;  // u + w
    const Wide rest = P * U - G * (P + U);
    if (P == 0 || U == 0 || G == 0 || rest == 0) return refused;
    const Wide q = P / (1 + p_to_q), w = U / (1 + u_to_w);
    LadderSection section{.kind = inductive ? BranchId::inductor : BranchId::capacitor,
                          .series = {P - q, G * P * U / rest, w},
                          .resonances = {{.y = q, .K = to_ground(nodes.K, 2), .C = to_ground(nodes.C, 2)},
                                         {.y = U - w, .K = to_ground(nodes.K, 3), .C = to_ground(nodes.C, 3)}},
                          .numbers = {}};
    return uncouple(circuit, k, section, refused);
}

// The nodes' levels --------------------------------------------------------------------------------------------------

Refusal scale_section(Circuit& circuit, int& k, BranchId kind, std::span<const double> values) {
    if (!is_coupled_section(circuit, k)) return {no_coupled_section, "branch"};
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
    for (std::size_t i = 0; i < values.size(); ++i) wanted[i + 1] = static_cast<double>(admittance(kind, values[i]));
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

// Sections of a ladder -----------------------------------------------------------------------------------------------

// The y of a series branch, and a resonance across the rails.
std::optional<Wide> series_at(const Circuit& circuit, int k, BranchId kind);
std::optional<Resonance> resonance_at(const Circuit& circuit, int k, BranchId kind);

std::optional<NewBranch> branch_of(const Resonance& resonance, BranchId kind);

std::optional<LadderSection> section_from(const Circuit& circuit, int first, std::size_t count) {
    if (first == 0) return std::nullopt;
    LadderSection section;
    section.kind = unpackBranch(circuit, first).id;
    for (int k = first; section.numbers.size() < count; k = unpackBranch(circuit, k).kn) {
        if (k == 0) return std::nullopt;
        if (section.numbers.size() % 2 == 0) {
            const auto y = series_at(circuit, k, section.kind);
            if (!y) return std::nullopt;
            section.series.push_back(*y);
        } else {
            const auto resonance = resonance_at(circuit, k, section.kind);
            if (!resonance) return std::nullopt;
            section.resonances.push_back(*resonance);
        }
        section.numbers.push_back(k);
    }
    return section;
}

// The slot is that of the first resonance, or of the last branch where that ends the circuit, whose last number has a
// meaning.
template <class Insert>
Refusal couple(Circuit& circuit, int& k, const LadderSection& section, Insert insert) {
    const int last = section.numbers.back();
    k = last == circuit.klast ? last : section.numbers[1];
    for (int number : section.numbers) {
        if (const auto verdict = deleteBranch(circuit, number); verdict != CircuitVerdict::done)
            return message_of(verdict);
    }
    if (circuit.ilast > max_values - max_values_of_branch) compactValues(circuit);  // room for what comes instead
    const CircuitVerdict verdict = insert();
    return verdict == CircuitVerdict::done ? Refusal{} : Refusal{message_of(verdict)};
}

Refusal uncouple(Circuit& circuit, int& k, const LadderSection& section, const Refusal& refused) {
    std::vector<NewBranch> branches;
    for (std::size_t i = 0; i < section.series.size(); ++i) {
        if (i != 0) {
            const auto across = branch_of(section.resonances[i - 1], section.kind);
            if (!across) return refused;
            branches.push_back(*across);
        }
        branches.push_back({.id = section.kind, .values = {cell_of(section.kind, section.series[i])}});
    }
    const Circuit before = circuit;
    const auto behind = replace_section(circuit, k, k, branches);
    if (!behind) return message_of(CircuitVerdict::storage_full);
    k = *behind != 0 ? unpackBranch(circuit, *behind).kp : circuit.klast;
    for (std::size_t i = 0; i < branches.size() / 2; ++i) k = unpackBranch(circuit, k).kp;
    return is_driven_as(before, circuit) ? Refusal{} : refused;
}

std::optional<Wide> series_at(const Circuit& circuit, int k, BranchId kind) {
    if (k == 0 || k % 2 != 0 || !is_plain(kind)) return std::nullopt;
    const Branch branch = unpackBranch(circuit, k);
    const double value = branch.id == kind ? circuit.VALUE(branch.i1) : 0;
    if (value == 0) return std::nullopt;
    return admittance(kind, value);
}

std::optional<Resonance> resonance_at(const Circuit& circuit, int k, BranchId kind) {
    if (k % 2 == 0) return std::nullopt;
    const Branch branch = unpackBranch(circuit, k);
    const auto values = branch_values(circuit, branch);
    const bool inductive = kind == BranchId::inductor;
    const bool three = branch.id == (inductive ? BranchId::lcl : BranchId::lcc);
    if ((branch.id != BranchId::lc && !three) || std::ranges::find(values, 0.0) != values.end()) return std::nullopt;
    const Wide K = 1 / static_cast<Wide>(values[0]), C = values[1];
    if (three) return Resonance{.y = admittance(kind, values[2]), .K = K, .C = C};
    return inductive ? Resonance{.y = K, .C = C} : Resonance{.y = C, .K = K};
}

std::optional<NewBranch> branch_of(const Resonance& resonance, BranchId kind) {
    const auto& [y, K, C] = resonance;
    const double x = cell_of(kind, y), L = K == 0 ? 0 : static_cast<double>(1 / K), c = static_cast<double>(C);
    if (K == 0 && C == 0) return std::nullopt;
    const auto across = [](BranchId id, std::array<double, 3> values) {
        return NewBranch{.id = id, .shunt = true, .values = values};
    };
    if (kind == BranchId::inductor) {
        if (K == 0) return across(BranchId::lc, {x, c});
        return C == 0 ? across(BranchId::inductor, {x + L}) : across(BranchId::lcl, {L, c, x});
    }
    if (C == 0) return across(BranchId::lc, {L, x});
    return K == 0 ? across(BranchId::capacitor, {static_cast<double>(y * C / (y + C))})
                  : across(BranchId::lcc, {L, c, x});
}

// Where y and what is in series with it resonate.
double zero_frequency(const Circuit& circuit, const Resonance& resonance, BranchId kind) {
    const auto& [y, K, C] = resonance;
    const Wide inverse = kind == BranchId::inductor ? K + y : K, capacitance = kind == BranchId::inductor ? C : C + y;
    return inverse == 0
               ? 0
               : resonant_frequency(circuit, static_cast<double>(1 / inverse), static_cast<double>(capacitance));
}

}  // namespace

}  // namespace kavrel
