#include "exchange/expanded_circuit.h"

#include <algorithm>
#include <cmath>

#include "circuit/branch_elements.h"

namespace kavrel {

namespace {

using Kind = NetElement::Kind;
using Ends = std::array<int, 2>;  // nodes of an element

// Appends the elements of one branch after the other.
class Expansion {
public:
    Expansion(const Circuit& circuit, const ExpansionRequest& request, ExpandedCircuit& expanded)
        : circuit_(circuit), request_(request), expanded_(expanded), at_(request.first_node), highest_(at_) {}

    [[nodiscard]] bool run();

private:
    [[nodiscard]] static bool fits(const Branch& branch);
    void expand(NetBranch& branch, const Branch& word, bool grounded);
    void slot_element(NetBranch& branch, int inner);
    void lattice(NetBranch& branch, int inner);
    void network(NetBranch& branch, const Branch& word, int inner);
    [[nodiscard]] bool is_coil_tee(const NetBranch& branch) const;

    void arm(NetBranch& branch, std::size_t first, std::span<const Ends> copies, int between, double scale);
    void element(NetBranch& branch, char letter, double value, int from, int to, double scale = 1);
    void pair(NetBranch& branch, Kind kind, double L, double C, int from, int to, double scale = 1);

    const Circuit& circuit_;
    const ExpansionRequest& request_;
    ExpandedCircuit& expanded_;
    int at_;       // node of the chain
    int highest_;  // number in use
};

// Inner nodes of a branch; networks number theirs from 3 on.
int inner_nodes(const BranchKind& kind, bool series, const ExpansionRequest& request);

}  // namespace

bool expand_circuit(const Circuit& circuit, const ExpansionRequest& request, ExpandedCircuit& expanded) {
    expanded = {};
    return Expansion(circuit, request, expanded).run();
}

namespace {

bool Expansion::run() {
    if (circuit_.klast < 2 || !branchExists(circuit_, 1) || !branchExists(circuit_, circuit_.klast)) return false;
    const Branch load = unpackBranch(circuit_, 1);
    const Branch last = unpackBranch(circuit_, circuit_.klast);
    if (load.id != BranchId::resistor || !fits(load) || !fits(last)) return false;
    expanded_.R1 = circuit_.VALUE(load.i1);
    const bool terminated = last.id == BranchId::resistor;
    expanded_.R2 = terminated ? circuit_.VALUE(last.i1) : 0;
    if (!(expanded_.R1 > 0) || (terminated && !(expanded_.R2 > 0))) return false;
    expanded_.series_end = !terminated && circuit_.klast % 2 == 0;
    expanded_.first = at_;

    const int end = terminated ? circuit_.klast : 0;
    int before = 1;
    for (int k = load.kn; k != end;) {
        if (k <= before || !branchExists(circuit_, k)) return false;
        const Branch word = unpackBranch(circuit_, k);
        if (!fits(word)) return false;
        NetBranch branch{.k = k,
                         .kind = &branch_kinds[word.id],
                         .values = branch_values(circuit_, word),
                         .series = k % 2 == 0,
                         .in = at_};
        expand(branch, word, request_.end_on_ground && expanded_.series_end && k == circuit_.klast);
        expanded_.branches.push_back(std::move(branch));
        before = k;
        k = word.kn;
    }
    expanded_.last = at_;
    expanded_.highest = highest_;
    return std::ranges::all_of(expanded_.branches, [](const NetBranch& branch) {
        return std::ranges::all_of(branch.elements, [](const NetElement& e) {
            return std::isfinite(e.value) && std::isfinite(e.second) && std::isfinite(e.third);
        });
    });
}

bool Expansion::fits(const Branch& branch) {
    if (!branch_kinds.has(branch.id)) return false;
    const BranchKind& kind = branch_kinds[branch.id];
    if (kind.structure == Structure::quadruplet) return branch.i1 >= 1 && branch.i1 <= max_quadruplets;
    const auto cells = kind.cells.size();
    return branch.i1 >= 1 && branch.i1 + branch.in <= max_values && static_cast<std::size_t>(branch.in) + 1 == cells;
}

void Expansion::expand(NetBranch& branch, const Branch& word, bool grounded) {
    const int inner = highest_ + 1;
    const bool through = !branch.kind->slot_element() || branch.series;
    highest_ += inner_nodes(*branch.kind, branch.series, request_);
    branch.out = !through ? branch.in : grounded ? 0 : ++highest_;
    if (!grounded) at_ = branch.out;
    switch (branch.kind->structure) {
        case Structure::slot_element: slot_element(branch, inner); break;
        case Structure::line: branch.elements.push_back({Kind::line, {branch.in, branch.out}, branch.values[0]}); break;
        case Structure::lattice: lattice(branch, inner); break;
        case Structure::network:
        case Structure::triplet:
        case Structure::quadruplet: network(branch, word, inner); break;
    }
}

void Expansion::slot_element(NetBranch& branch, int inner) {
    const auto v = branch.values;
    const std::string_view letters = branch.kind->cells;
    const int from = branch.in;
    const int to = branch.series ? branch.out : 0;
    if (v.size() == 1) return element(branch, letters[0], v[0], from, to);

    // Three elements: X beside a series pair in a series slot, behind a parallel pair in a shunt slot.
    const bool three = v.size() == 3;
    const bool in_series = three == branch.series;
    const int pair_to = three && !branch.series ? inner : to;
    if (request_.pairs) {
        pair(branch, in_series ? Kind::series_pair : Kind::parallel_pair, v[0], v[1], from, pair_to);
    } else {
        element(branch, 'L', v[0], from, in_series ? inner : pair_to);
        element(branch, 'C', v[1], in_series ? inner : from, pair_to);
    }
    if (three) element(branch, letters[2], v[2], branch.series ? from : inner, to);
}

void Expansion::lattice(NetBranch& branch, int inner) {
    const int in = branch.in;
    const int out = branch.out;
    switch (request_.lattice) {
        case LatticeText::four_arms: {
            const int p = inner, q = inner + 1;
            arm(branch, 0, std::array{Ends{in, p}, Ends{0, q}}, inner + 2, 1);
            arm(branch, 3, std::array{Ends{in, q}, Ends{0, p}}, inner + 4, 1);
            branch.elements.push_back({Kind::transformer, {p, q, out, 0}, 1});
            break;
        }
        case LatticeText::isolated:
            branch.elements.push_back({Kind::transformer, {in, 0, inner, inner + 1}, 1});
            branch.elements.push_back({Kind::transformer, {out, 0, inner + 2, inner + 3}, 1});
            break;
        case LatticeText::half:
            arm(branch, 0, std::array<Ends, 1>{Ends{in, out}}, inner + 1, 2);
            arm(branch, 3, std::array<Ends, 1>{Ends{in, inner}}, inner + 2, 2);
            branch.elements.push_back({Kind::transformer, {inner, 0, out, 0}, -1});
            break;
        case LatticeText::half_paired:
            arm(branch, 0, std::array<Ends, 1>{Ends{in, inner}}, inner + 2, 2);
            branch.elements.push_back({Kind::transformer, {inner, 0, out, 0}, 1});
            arm(branch, 3, std::array<Ends, 1>{Ends{in, inner + 1}}, inner + 3, 2);
            branch.elements.push_back({Kind::transformer, {inner + 1, 0, out, 0}, -1});
            break;
    }
}

// Copies of one arm between the given nodes, with inner nodes from `between` on; its impedance is multiplied by
// `scale`.
void Expansion::arm(NetBranch& branch, std::size_t first, std::span<const Ends> copies, int between, double scale) {
    const auto v = branch.values.subspan(first, 3);
    if (request_.pairs) {
        for (const Ends& end : copies) pair(branch, Kind::series_pair, v[0], v[1], end[0], end[1], scale);
    } else {
        int inner = between;
        for (const Ends& end : copies) element(branch, 'L', v[0], end[0], inner++, scale);
        inner = between;
        for (const Ends& end : copies) element(branch, 'C', v[1], inner++, end[1], scale);
    }
    const char letter = branch.kind->cells[first + 2];
    for (const Ends& end : copies) element(branch, letter, v[2], end[0], end[1], scale);
}

void Expansion::network(NetBranch& branch, const Branch& word, int inner) {
    const auto node = [&](int i) { return i == 0 ? 0 : i == 1 ? branch.in : i == 2 ? branch.out : inner + i - 3; };
    const BranchElements elements = branch_elements(circuit_, word);
    if (request_.coupled_coils && is_coil_tee(branch)) {
        const double through_1 = branch.values[0], to_ground = branch.values[2], through_2 = branch.values[4];
        const double l1 = through_1 + to_ground, l2 = to_ground + through_2;
        branch.elements.push_back(
            {Kind::coupled_coils, {node(1), 0, node(2), 0}, l1, l2, to_ground / std::sqrt(l1 * l2)});
        if (elements.cells[1].present) element(branch, elements.cells[1].letter, branch.values[1], node(1), node(2));
        return;
    }

    std::vector<Connection> places(branch.kind->connections.begin(), branch.kind->connections.end());
    std::ranges::stable_sort(places, {}, &Connection::cell);
    for (const Connection& place : places) {
        const Element& cell = elements.cells[static_cast<std::size_t>(place.cell)];
        if (cell.present) element(branch, cell.letter, cell.value, node(place.from), node(place.to));
    }
}

// Coils from both ports to the inner node and from there to ground, no capacitor beside the latter, and one of the
// former negative.
bool Expansion::is_coil_tee(const NetBranch& branch) const {
    const auto v = branch.values;
    const std::string_view cells = branch.kind->cells;
    if (branch.kind->structure != Structure::triplet || cells[0] != 'L' || cells[4] != 'L') return false;
    for (const int cell : {0, 2, 4}) {
        if (!element_present(*branch.kind, cell, v[static_cast<std::size_t>(cell)])) return false;
    }
    const double l1 = v[0] + v[2], l2 = v[2] + v[4];
    if (v[3] != 0 || !(v[2] > 0) || !(std::min(v[0], v[4]) < 0) || !(l1 > 0) || !(l2 > 0)) return false;
    return v[2] / std::sqrt(l1 * l2) < request_.largest_coupling;
}

void Expansion::element(NetBranch& branch, char letter, double value, int from, int to, double scale) {
    const bool capacitance = letter == 'C' && circuit_.kind == CircuitKind::lumped;
    const double shown = shown_value(circuit_.kind, letter, value);
    const Kind kind = letter == 'L' ? Kind::inductor : letter == 'C' ? Kind::capacitor : Kind::resistor;
    branch.elements.push_back({kind, {from, to}, capacitance ? shown / scale : shown * scale});
}

void Expansion::pair(NetBranch& branch, Kind kind, double L, double C, int from, int to, double scale) {
    branch.elements.push_back({kind, {from, to}, L * scale, C / scale});
}

int inner_nodes(const BranchKind& kind, bool series, const ExpansionRequest& request) {
    switch (kind.structure) {
        case Structure::slot_element: {
            const auto cells = kind.cells.size();
            if (cells == 1) return 0;
            const bool three = cells == 3;
            if (three && !series) return 1;
            return !request.pairs && three == series ? 1 : 0;
        }
        case Structure::line: return 0;
        case Structure::lattice: {
            const int arm_nodes = request.pairs ? 0 : 1;
            switch (request.lattice) {
                case LatticeText::four_arms: return 2 + 4 * arm_nodes;
                case LatticeText::isolated: return 4;
                case LatticeText::half: return 1 + 2 * arm_nodes;
                case LatticeText::half_paired: return 2 + 2 * arm_nodes;
            }
            return 0;
        }
        case Structure::network:
        case Structure::triplet:
        case Structure::quadruplet: {
            int largest = 2;
            for (const Connection& c : kind.connections) largest = std::max({largest, c.from, c.to});
            return largest - 2;
        }
    }
    return 0;
}

}  // namespace

}  // namespace kavrel
