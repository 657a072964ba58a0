// A circuit as single elements between numbered nodes, as the netlists of other programs want it.
//
// Ground is 0. Nodes rise through the chain from branch 1 on; a branch numbers its inner nodes first and the node
// behind it last. The inner node of a coupled triplet is one number, node 2 and then node 3 of a coupled quadruplet are
// two.
#pragma once

#include <array>
#include <span>
#include <vector>

#include "circuit/branch_kinds.h"
#include "circuit/circuit.h"

namespace kavrel {

// A lattice of the arms Za (in series) and Zb (crossed), each L and C in series with X beside them, has both rails on
// ground only with the help of a transformer:
enum class LatticeText {
    four_arms,  // Za, Za, Zb, Zb to a floating pair of nodes, and a transformer from there to the node behind
    isolated,   // two transformers with a four-port between two floating pairs of nodes; the arms are written elsewhere
    half,       // 2 Za through, 2 Zb to a node whose voltage is the negative of that behind: a transformer of -1
    half_paired,  // the same with a transformer of 1 behind 2 Za
};

struct NetElement {
    enum class Kind {
        resistor,
        inductor,       // in a microwave circuit a short-circuited stub
        capacitor,      // in a microwave circuit an open stub; value is its impedance
        series_pair,    // L (value) and C (second) in series
        parallel_pair,  // the same side by side
        line,           // unit element from nodes[0] to nodes[1], both against ground
        transformer,    // ideal: V(nodes[2], nodes[3]) = value times V(nodes[0], nodes[1])
        coupled_coils,  // value across the first two nodes, second across the others, coupled by third
    };

    Kind kind = Kind::resistor;
    std::array<int, 4> nodes{};
    double value = 0;
    double second = 0;
    double third = 0;
};

struct NetBranch {
    int k = 0;  // slot
    const BranchKind* kind = nullptr;
    std::span<const double> values{};  // as stored
    bool series = false;
    int in = 0;  // node towards branch 1
    int out = 0;
    std::vector<NetElement> elements{};  // in cell order
};

// What lies between the terminations.
struct ExpandedCircuit {
    double R1 = 0;            // branch 1
    double R2 = 0;            // the last branch; 0: singly terminated
    bool series_end = false;  // singly terminated: the last branch has an even number
    int first = 1;            // node at branch 1
    int last = 1;             // node at the other end
    int highest = 1;          // largest number in use
    std::vector<NetBranch> branches;
};

struct ExpansionRequest {
    int first_node = 1;
    LatticeText lattice = LatticeText::four_arms;
    bool pairs = false;           // L and C of slot elements and of lattice arms stay together as pairs (lumped)
    bool coupled_coils = false;   // a triplet whose tee of coils has a negative arm becomes two coupled coils
    double largest_coupling = 1;  // that such a pair may have
    bool end_on_ground = false;   // a last series branch ends on ground instead of in a node of its own
};

// False when the store is none that branches can be read from: no resistor at branch 1, nothing behind it, a broken
// chain, an unknown kind, a termination that is not positive, a value that is no number. Elements that triplets and
// quadruplets leave out are not there.
[[nodiscard]] bool expand_circuit(const Circuit& circuit, const ExpansionRequest& request, ExpandedCircuit& expanded);

}  // namespace kavrel
