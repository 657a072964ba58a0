// Norton transformations: two like elements, one in series and one across the rails, become three, and all impedances
// behind them, towards the source, grow by n^2.
//
// One of the two is the centre x: a series element between the nodes 1 and 2 of a pi, or a shunt element that the
// meshes 1 and 2 of a tee share; 1 is towards the load. With y1 and y2 the like elements beside it, 0 where there are
// none, inverse inductances and capacitances of a pi, inductances and inverse capacitances of a tee, the second row and
// column of its matrix are multiplied by t:
//
//     | y1 + x     -x   |        | y1 + x         -x t      |        t = 1/n  of a pi
//     |   -x     y2 + x |   ->   |  -x t     (y2 + x) t^2   |        t = n    of a tee
//
// so that x becomes x t, y1 becomes y1 + x (1 - t) and y2 becomes y2 t^2 + x (t^2 - t).
//
// The centre of two plain elements is the series one. A resonant branch is the centre with both of its elements; a unit
// element is one beside a shunt inductor, as a series inductor of its impedance would be, or beside a series capacitor.
#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "circuit/circuit.h"
#include "shell/refusal.h"

namespace kavrel {

// A cell of VALUE. `inverse`: what the matrix holds is 1/value.
struct NortonElement {
    int cell = 0;  // 0: none
    bool inverse = false;
};

inline constexpr std::string_view no_norton_branch = "Branch is missing";

// Elements of one kind.
struct LikeElements {
    NortonElement centre;
    std::array<NortonElement, 2> side{};  // at 1 towards the load, at 2 towards the source; 0 in the cell of a new one
};

struct NortonSection {
    bool tee = false;
    std::size_t near = 0;                 // side of the element that was named beside the centre
    std::array<LikeElements, 2> kinds{};  // inductive, capacitive; without a centre where there is none
};

// A new element beside a resonant centre, of the kind that was named, is one of its own or joins a like one that is
// there. The other kind joins, plain elements never do.
enum class NewElement { joins, own_branch };

// Finds the section of the branches k1 and k2 (in either order): brings them side by side by interchanges, and inserts
// the elements that are still missing, with the value 0. "Branch is missing", "Branches are inappropriate" or
// "Storage is full", and the circuit is as it was.
[[nodiscard]] Refusal nortonSection(Circuit& circuit, int k1, int k2, NewElement element, NortonSection& section);

// The n^2 at which an element beside the centre vanishes, of two kinds the one nearer 1: none between it and 1 makes a
// positive element negative. 1 where none is there that could vanish.
[[nodiscard]] double largestRatio(const Circuit& circuit, const NortonSection& section);

// The n^2 that makes branch `match1` equal to branch `match2`, the one nearest 1 within the largest ratio, or else
// beside it; none when no n does. `before` is the circuit before nortonSection: a number is that of a branch of the
// section as it is now, or one of the circuit before, or of any other now, the first that has a value of the kind that
// the other has. "Branch is missing"; "Branches are inappropriate" where there is none.
[[nodiscard]] Refusal matchingRatio(const Circuit& before, const Circuit& circuit, const NortonSection& section,
                                    int match1, int match2, std::optional<double>& ratio);

// The ratio itself, or, where an element that is there would all but vanish, the one at which it does.
[[nodiscard]] double settledRatio(const Circuit& circuit, const NortonSection& section, double ratio);

// The transformation by ratio = n^2 > 0, settled. Elements that become 0 are removed.
void norton(Circuit& circuit, const NortonSection& section, double ratio);

// The branch of the lowest number that the transformation changes.
[[nodiscard]] int firstBranch(const Circuit& circuit, const NortonSection& section);

}  // namespace kavrel
