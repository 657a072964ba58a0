#include "workshop/coupled_nodes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "circuit/branch_kinds.h"
#include "workshop/section.h"

namespace kavrel {

namespace {

constexpr Wide negligible = 1e-14L;  // of the largest term of a sum

enum class Port { load, source };

int node_of(Port port, const CoupledNodes& nodes) { return port == Port::load ? 1 : nodes.count == 3 ? 3 : 4; }

// Places of the couplings in the cells of a triplet; cells 2 and 3 are L and C of node 2.
struct TripletCell {
    std::size_t cell;
    int i, j;
};
constexpr TripletCell triplet_cells[] = {{0, 1, 2}, {1, 1, 3}, {4, 2, 3}};

CoupledNodes triplet_nodes(const BranchKind& kind, std::span<const double> values);
CoupledNodes quadruplet_nodes(const Quadruplet& quadruplet);
void put_triplet(Circuit& circuit, int k, const CoupledNodes& nodes);
void put_quadruplet(Quadruplet& quadruplet, const CoupledNodes& nodes);
std::vector<int> shunts_at(const Circuit& circuit, int k, Port port, BranchId id);
CircuitVerdict put_shunt(Circuit& circuit, int& k, Port port, BranchId id, Wide admittance);

constexpr BranchId plain_kinds[] = {BranchId::inductor, BranchId::capacitor};

// Of one kind, as a reference to the matrix.
auto& matrix_of(auto& nodes, BranchId id) { return id == BranchId::inductor ? nodes.K : nodes.C; }

void couple(CoupledNodes& nodes, int i, int j, BranchId id, Wide value) {
    auto& matrix = matrix_of(nodes, id);
    nodes.inductive(i, j) = id == BranchId::inductor;
    matrix(i, j) -= value;
    matrix(i, i) += value;
    matrix(j, j) += value;
}

}  // namespace

double inductance(Wide inverse) { return inverse == 0 ? 2 * absent_inductor : static_cast<double>(1 / inverse); }

Wide sum_of(std::span<const Wide> terms) {
    Wide sum = 0, largest = 0;
    for (const Wide term : terms) {
        sum += term;
        largest = std::max(largest, std::fabs(term));
    }
    return std::fabs(sum) <= negligible * largest ? 0 : sum;
}

Wide to_ground(const NodePairs<Wide>& matrix, int node) {
    std::array<Wide, 4> terms{};
    for (int j = 1; j <= 4; ++j) terms[static_cast<std::size_t>(j - 1)] = matrix(j, node);
    return sum_of(terms);
}

bool is_coupled_section(const Circuit& circuit, int k) {
    if (!branchExists(circuit, k)) return false;
    const Structure structure = branch_kinds[unpackBranch(circuit, k).id].structure;
    return structure == Structure::triplet || structure == Structure::quadruplet;
}

CoupledNodes coupled_nodes(const Circuit& circuit, int k) {
    const Branch branch = unpackBranch(circuit, k);
    CoupledNodes nodes = branch.id == BranchId::quadruplet
                             ? quadruplet_nodes(circuit.QUADRUPLETS(branch.i1))
                             : triplet_nodes(branch_kinds[branch.id], branch_values(circuit, branch));
    for (const Port port : {Port::load, Port::source}) {
        const int node = node_of(port, nodes);
        for (const BranchId id : plain_kinds) {
            for (const int shunt : shunts_at(circuit, k, port, id))
                matrix_of(nodes, id)(node, node) += admittance(id, circuit.VALUE(unpackBranch(circuit, shunt).i1));
        }
    }
    return nodes;
}

Refusal put_coupled_nodes(Circuit& circuit, int& k, const CoupledNodes& nodes) {
    if (circuit.ilast > max_values - max_values_of_branch) compactValues(circuit);
    const Circuit before = circuit;
    if (nodes.count == 3) {
        put_triplet(circuit, k, nodes);
    } else {
        put_quadruplet(circuit.QUADRUPLETS(unpackBranch(circuit, k).i1), nodes);
    }
    for (const Port port : {Port::load, Port::source}) {
        const int node = node_of(port, nodes);
        for (const BranchId id : plain_kinds) {
            const Wide value = to_ground(matrix_of(nodes, id), node);
            if (const auto verdict = put_shunt(circuit, k, port, id, value); verdict != CircuitVerdict::done)
                return message_of(verdict);
        }
    }
    if (!is_driven_as(before, circuit)) return incorrect_circuit;
    return {};
}

namespace {

CoupledNodes triplet_nodes(const BranchKind& kind, std::span<const double> values) {
    CoupledNodes nodes;
    nodes.count = 3;
    for (const auto& [cell, i, j] : triplet_cells) {
        const BranchId id = kind.cells[cell] == 'L' ? BranchId::inductor : BranchId::capacitor;
        const bool present = element_present(kind, static_cast<int>(cell), values[cell]);
        couple(nodes, i, j, id, present ? admittance(id, values[cell]) : 0);
    }
    if (element_present(kind, 2, values[2])) nodes.K(2, 2) += 1 / static_cast<Wide>(values[2]);
    nodes.C(2, 2) += values[3];
    return nodes;
}

CoupledNodes quadruplet_nodes(const Quadruplet& quadruplet) {
    CoupledNodes nodes;
    nodes.count = 4;
    for (int i = 1; i <= 4; ++i) {
        for (int j = i + 1; j <= 4; ++j) {
            const bool inductive = quadruplet.M(i, j) == 1;
            couple(nodes, i, j, inductive ? BranchId::inductor : BranchId::capacitor,
                   inductive ? quadruplet.XK(i, j) : quadruplet.XC(i, j));
        }
    }
    for (int i = 2; i <= 3; ++i) {
        nodes.K(i, i) += quadruplet.YK(i);
        nodes.C(i, i) += quadruplet.YC(i);
    }
    return nodes;
}

void put_triplet(Circuit& circuit, int k, const CoupledNodes& nodes) {
    Branch branch = unpackBranch(circuit, k);
    const auto values = branch_values(circuit, branch);
    for (const BranchKind& kind : branch_kinds) {
        bool fits = kind.structure == Structure::triplet;
        for (const auto& [cell, i, j] : triplet_cells)
            fits = fits && (kind.cells[cell] == 'L') == nodes.inductive(i, j);
        if (fits) branch.id = kind.id;
    }
    packBranch(circuit, k, branch);
    for (const auto& [cell, i, j] : triplet_cells)
        values[cell] = nodes.inductive(i, j) ? inductance(-nodes.K(i, j)) : static_cast<double>(-nodes.C(i, j));
    values[2] = inductance(to_ground(nodes.K, 2));
    values[3] = static_cast<double>(to_ground(nodes.C, 2));
}

void put_quadruplet(Quadruplet& quadruplet, const CoupledNodes& nodes) {
    for (int i = 1; i <= 4; ++i) {
        for (int j = i + 1; j <= 4; ++j) {
            quadruplet.M(i, j) = nodes.inductive(i, j) ? 1 : 0;
            quadruplet.XK(i, j) = nodes.inductive(i, j) ? static_cast<double>(-nodes.K(i, j)) : 0;
            quadruplet.XC(i, j) = nodes.inductive(i, j) ? 0 : static_cast<double>(-nodes.C(i, j));
        }
    }
    for (int i = 2; i <= 3; ++i) {
        quadruplet.YK(i) = static_cast<double>(to_ground(nodes.K, i));
        quadruplet.YC(i) = static_cast<double>(to_ground(nodes.C, i));
    }
}

// The plain branches of one kind across a port, the nearest one first. Others across the rails may lie between them.
std::vector<int> shunts_at(const Circuit& circuit, int k, Port port, BranchId id) {
    const auto next = [&](int from) {
        const Branch branch = unpackBranch(circuit, from);
        return port == Port::load ? branch.kp : branch.kn;
    };
    std::vector<int> shunts;
    for (int i = next(k); i != 0; i = next(i)) {
        const Branch branch = unpackBranch(circuit, i);
        if (i % 2 == 0 || !branch_kinds[branch.id].slot_element()) break;
        if (branch.id == id) shunts.push_back(i);
    }
    return shunts;
}

CircuitVerdict put_shunt(Circuit& circuit, int& k, Port port, BranchId id, Wide admittance) {
    const double value = id == BranchId::inductor ? inductance(admittance) : static_cast<double>(admittance);
    std::vector<int> shunts = shunts_at(circuit, k, port, id);
    if (shunts.empty() && admittance != 0) {
        // The odd slot beside the section.
        int slot = port == Port::load ? k - 1 + k % 2 : k + 1 + k % 2;
        const auto verdict = insert_values(circuit, slot, id, {&value, 1});
        if (verdict == CircuitVerdict::done && port == Port::load) k = unpackBranch(circuit, slot).kn;
        return verdict;
    }
    const std::size_t kept = admittance != 0 ? 1 : 0;
    if (kept == 1) circuit.VALUE(unpackBranch(circuit, shunts.front()).i1) = value;
    for (std::size_t i = kept; i < shunts.size(); ++i) {
        if (const auto verdict = deleteBranch(circuit, shunts[i]); verdict != CircuitVerdict::done) return verdict;
    }
    return CircuitVerdict::done;
}

}  // namespace

}  // namespace kavrel
