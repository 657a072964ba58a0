// Coupled triplets and quadruplets, made from sections of a ladder whose resonant branches make transmission zeros, and
// the scaling of their nodes. What is refused leaves the circuit as it was.
#pragma once

#include <span>
#include <string_view>

#include "circuit/circuit.h"
#include "shell/refusal.h"

namespace kavrel {

inline constexpr std::string_view no_triplet = "Incorrect branch specification";
inline constexpr std::string_view no_quadruplet = "Nonexistent branch";
inline constexpr std::string_view no_coupled_section = "Incorrect section";

// A coupling of a triplet that is to be of the other kind than the other two.
enum class OtherCoupling : int { none = 1, at_load = 2, at_source = 3 };  // 1-2 and 2-3

// A resonant branch k across the rails between two series inductors, or two series capacitors, becomes a coupled
// triplet, and a triplet k becomes such a section again. The elements are the arms of a star, whose middle disappears:
// y12 = p q/(p + q + r), y13 = p r/(p + q + r), y23 = q r/(p + q + r), of arms p, q, r towards the load, the resonance
// and the source, y being 1/L or C. The resonance has, in series with q, L and C side by side or one of them: q is L of
// lc or X of lcl between inductors, C of lc or X of lcc between capacitors.
//
// With another kind of coupling the inner node's voltage becomes t v + (+-)v2 of a port's voltage v and its own, with
// the t that takes the former coupling away: the two-port stays, what lies across the ports changes. It is of the other
// kind already: of the same kind as the others again. The new coupling is positive; another one may be negative.
//
// k becomes the number of the triplet, or of the branch across the rails. Refused: "Incorrect branch specification",
// "Inappropriate circuit" (also where both couplings of node 2 are of the other kind), a full store.
[[nodiscard]] Refusal tripletTransform(Circuit& circuit, int& k, OtherCoupling other = OtherCoupling::none);

// Five branches, series a1, resonance x1, series a2, resonance x2, series a3, become a coupled quadruplet in the next
// slot of the table. With p, q, r, u, w = y of a1, x1, a2, x2, a3, S1 = p + q + r, S2 = r + u + w, D = S1 S2 - r^2:
// y12 = p q S2/D, y13 = p u r/D, y14 = p w r/D, y23 = q u r/D, y24 = q w r/D, y34 = u w S1/D.
//
// A quadruplet of such couplings, y13 y24 = y14 y23, whatever its nodes' levels, becomes such a section again.
//
// k is the branch in the middle; where that is none of them, another one of the five. It becomes the number of the
// quadruplet, or of the branch in the middle. Refused: "Nonexistent branch", "Circuit is inappropriate", a full store.
[[nodiscard]] Refusal quadrupletTransform(Circuit& circuit, int& k);

// Scales the nodes of the coupled section k, what lies across its ports included, so that all inductors to ground are
// equal (kind an inductor), or all capacitors; with values those at node 2, 3 (and 4) have these, as cells hold them.
// Node 1 keeps its level; behind the section impedances are multiplied by 1/s^2 of the last node. Elements of the other
// kind follow. Refused: "Incorrect section", "Values must be > 0.0", "No convergence", "Incorrect circuit" where
// the node matrix is not positive definite, "No change", a full store.
[[nodiscard]] Refusal multipleTransform(Circuit& circuit, int& k, BranchId kind, std::span<const double> values = {});

}  // namespace kavrel
