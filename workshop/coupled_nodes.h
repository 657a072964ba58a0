// A coupled section as a network of nodes, together with the inductors and capacitors across its ports: what couples
// two nodes, and what lies from a node to ground.
#pragma once

#include <span>
#include <string_view>

#include "circuit/circuit.h"
#include "numeric/complex.h"
#include "shell/refusal.h"

namespace kavrel {

// Node matrices of inverse inductances and of capacitances (of a microwave circuit, of the cells of stubs). A coupling
// is the negative of its cell beside the diagonal, what lies from a node to ground the sum of a row.
struct CoupledNodes {
    int count = 0;  // 3 of a triplet, 4 of a quadruplet; node 1 is the port towards the load, the last one the other
    NodePairs<Wide> K;
    NodePairs<Wide> C;
    NodePairs<bool> inductive;  // (i, j) i < j: the kind of the coupling
};

// What an inductor or a capacitor adds to its node matrix, 1/L or C. The same again gives the value back.
[[nodiscard]] constexpr Wide admittance(BranchId id, Wide value) {
    return id == BranchId::inductor ? 1 / value : value;
}
// The cell of an inductor to ground or of a coupling: absent where it adds nothing.
[[nodiscard]] double inductance(Wide inverse);

// The sum of terms; 0 where they cancel but for rounding.
[[nodiscard]] Wide sum_of(std::span<const Wide> terms);

// What lies from a node to ground.
[[nodiscard]] Wide to_ground(const NodePairs<Wide>& matrix, int node);

inline constexpr std::string_view incorrect_circuit = "Incorrect circuit";

[[nodiscard]] bool is_coupled_section(const Circuit& circuit, int k);

// Of the coupled section in slot k and of all L and C branches that lie across its ports, no series branch in between.
[[nodiscard]] CoupledNodes coupled_nodes(const Circuit& circuit, int k);

// Gives the section in slot k the elements of the network. What lies across a port becomes one branch of each kind, a
// new one where none was, none where nothing is left; k follows where the section moves. Elements may be negative. Of a
// quadruplet the transmission zeros stay. Refused: a full store, and a source that would be of another kind for the
// number of the last branch. The circuit is of no use then.
[[nodiscard]] Refusal put_coupled_nodes(Circuit& circuit, int& k, const CoupledNodes& nodes);

}  // namespace kavrel
