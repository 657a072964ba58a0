// The kinds of branches, one row for each id: how a branch is asked for, what its values are, how it is drawn, and
// which structure its immittances come from. Whatever differs from kind to kind belongs into this table.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

#include "circuit/branch_id.h"
#include "circuit/branch_shapes.h"

namespace kavrel {

// Where the immittances of a branch come from, and with it which slots it may have.
enum class Structure {
    slot_element,  // one impedance, in series in an even slot and across the rails in an odd one
    line,          // unit element; this and all that follow are two-ports, which may have any slot
    network,       // elements between nodes, as `connections` says
    lattice,       // symmetrical lattice of two arms, three cells each: L and C in series, X beside them
    triplet,       // a network of five cells that may leave out some; its transmission zeros follow from the values
    quadruplet,    // a network whose elements and transmission zeros are in a table of their own
};

struct BranchKind {
    BranchId id;
    std::string_view name;   // of the insert command and in JSON
    std::string_view typed;  // letters of the values that are typed in; blank: commands and synthesis alone make it
    std::string_view cells;  // R, L, C or Z for each value in cell order
    Structure structure;
    std::span<const DrawingRow> shunt;             // drawing in an odd slot, or of a two-port
    std::span<const DrawingRow> series = {};       // drawing in an even slot; empty for two-ports
    std::span<const Connection> connections = {};  // of a network; a cell may be in it twice

    [[nodiscard]] constexpr bool slot_element() const { return structure == Structure::slot_element; }

    // One or two values, all of them typed in: what can be inserted and changed by values alone.
    [[nodiscard]] constexpr bool simple() const { return cells.size() <= 2 && typed == cells && !cells.empty(); }

    // Most of its values follow from those typed in and from the load, right behind which it lies.
    [[nodiscard]] constexpr bool equalizer() const { return !typed.empty() && typed != cells; }
};

inline constexpr std::array<BranchKind, branch_kind_count> branch_kind_rows = [] {
    using enum BranchId;
    using S = Structure;
    namespace d = drawings;
    namespace n = networks;
    return std::array<BranchKind, branch_kind_count>{{
        {resistor, "r", "R", "R", S::slot_element, d::plain_shunt, d::plain_series},
        {inductor, "l", "L", "L", S::slot_element, d::plain_shunt, d::plain_series},
        {capacitor, "c", "C", "C", S::slot_element, d::plain_shunt, d::plain_series},
        {lc, "lc", "LC", "LC", S::slot_element, d::pair_shunt, d::pair_series},
        {bridged_l, "compound", "", "LCCL", S::network, d::bridged_l, {}, n::bridged_t},
        {bridged_c, "compound", "", "CLLC", S::network, d::bridged_c, {}, n::bridged_t},
        {bridged_c_trap, "compound", "", "CLCLC", S::network, d::bridged_c_trap, {}, n::bridged_c_trap},
        {bridged_l_trap, "compound", "", "LCLCL", S::network, d::bridged_l_trap, {}, n::bridged_l_trap},
        {twin_t, "compound", "", "LCCLCL", S::network, d::twin_t, {}, n::twin_t},
        {twin_t_trap, "compound", "", "LCCLCCL", S::network, d::twin_t_trap, {}, n::twin_t_trap},
        {unit_element, "ue", "Z", "Z", S::line, d::line},
        {lattice_c, "lattice", "", "LCCLCC", S::lattice, d::lattice},
        {lattice_l, "lattice", "", "LCLLCL", S::lattice, d::lattice},
        {lcc, "lcc", "LCC", "LCC", S::slot_element, d::three_shunt, d::three_series},
        {lcl, "lcl", "LCL", "LCL", S::slot_element, d::three_shunt, d::three_series},
        {equalizer_a, "eqa", "LRC", "RLRCLRC", S::network, d::equalizer_a, {}, n::equalizer_a},
        {equalizer_b, "eqb", "LRC", "RLRCLRC", S::network, d::equalizer_b, {}, n::equalizer_b},
        {triplet_lll, "triplet", "", "LLLCL", S::triplet, d::triplet, {}, n::coupled_three},
        {triplet_llc, "triplet", "", "LLLCC", S::triplet, d::triplet, {}, n::coupled_three},
        {triplet_cll, "triplet", "", "CLLCL", S::triplet, d::triplet, {}, n::coupled_three},
        {triplet_clc, "triplet", "", "CLLCC", S::triplet, d::triplet, {}, n::coupled_three},
        {triplet_ccc, "triplet", "", "CCLCC", S::triplet, d::triplet, {}, n::coupled_three},
        {triplet_lcc, "triplet", "", "LCLCC", S::triplet, d::triplet, {}, n::coupled_three},
        {triplet_ccl, "triplet", "", "CCLCL", S::triplet, d::triplet, {}, n::coupled_three},
        {triplet_lcl, "triplet", "", "LCLCL", S::triplet, d::triplet, {}, n::coupled_three},
        {quadruplet, "quadruplet", "", "", S::quadruplet, d::quadruplet, {}, n::coupled_four},
    }};
}();

// Rows by id.
struct BranchKindTable {
    [[nodiscard]] static constexpr bool has(BranchId id) {
        return static_cast<int>(id) >= 0 && static_cast<int>(id) < branch_kind_count;
    }
    constexpr const BranchKind& operator[](BranchId id) const { return branch_kind_rows[static_cast<std::size_t>(id)]; }
    constexpr auto begin() const { return branch_kind_rows.begin(); }
    constexpr auto end() const { return branch_kind_rows.end(); }
};
inline constexpr BranchKindTable branch_kinds;

// The drawing of a branch of this kind in slot k.
[[nodiscard]] std::span<const DrawingRow> drawing_of(const BranchKind& kind, int k);

// From this magnitude on an inductor of a coupled triplet is absent.
inline constexpr double absent_inductor = 1e30;

// Whether cell `cell` of this kind holds an element at all: triplets leave out inductors of 1e30 or more and capacitors
// of 0.
[[nodiscard]] bool element_present(const BranchKind& kind, int cell, double value);

}  // namespace kavrel
