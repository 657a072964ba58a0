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
    // The dual, L and C exchanged, R and Z inverted: its kind, and for each of its cells the place of the old value,
    // from 0; blank where the values do not just change places, or there is no dual.
    BranchId dual = BranchId::quadruplet;
    std::string_view dual_order = {};
    // The same turned end for end, of which `flipped_kind` is the kind; blank where all stays as it is.
    std::string_view flip_order = {};

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
    // A row a line.
    // clang-format off
    return std::array<BranchKind, branch_kind_count>{{
        {resistor, "r", "R", "R", S::slot_element, d::plain_shunt, d::plain_series, {}, resistor, "0"},
        {inductor, "l", "L", "L", S::slot_element, d::plain_shunt, d::plain_series, {}, capacitor, "0"},
        {capacitor, "c", "C", "C", S::slot_element, d::plain_shunt, d::plain_series, {}, inductor, "0"},
        {lc, "lc", "LC", "LC", S::slot_element, d::pair_shunt, d::pair_series, {}, lc, "10"},
        {bridged_l, "compound", "", "LCCL", S::network, d::bridged_l, {}, n::bridged_t, bridged_c, "0213", "3120"},
        {bridged_c, "compound", "", "CLLC", S::network, d::bridged_c, {}, n::bridged_t, bridged_l, "0213", "3120"},
        {bridged_c_trap, "compound", "", "CLCLC", S::network, d::bridged_c_trap, {}, n::bridged_c_trap, bridged_l_trap, "03214", "41230"},
        {bridged_l_trap, "compound", "", "LCLCL", S::network, d::bridged_l_trap, {}, n::bridged_l_trap, bridged_c_trap, "03214", "41230"},
        {twin_t, "compound", "", "LCCLCL", S::network, d::twin_t, {}, n::twin_t, twin_t, "", "542310"},
        {twin_t_trap, "compound", "", "LCCLCCL", S::network, d::twin_t_trap, {}, n::twin_t_trap, twin_t_trap, "", "6523410"},
        {unit_element, "ue", "Z", "Z", S::line, d::line, {}, {}, unit_element, "0"},
        {lattice_c, "lattice", "", "LCCLCC", S::lattice, d::lattice, {}, {}, lattice_l},
        {lattice_l, "lattice", "", "LCLLCL", S::lattice, d::lattice, {}, {}, lattice_c},
        {lcc, "lcc", "LCC", "LCC", S::slot_element, d::three_shunt, d::three_series, {}, lcl, "102"},
        {lcl, "lcl", "LCL", "LCL", S::slot_element, d::three_shunt, d::three_series, {}, lcc, "102"},
        {equalizer_a, "eqa", "LRC", "RLRCLRC", S::network, d::equalizer_a, {}, n::equalizer_a, equalizer_a, "0654321"},
        {equalizer_b, "eqb", "LRC", "RLRCLRC", S::network, d::equalizer_b, {}, n::equalizer_b, equalizer_b, "0654321"},
        {triplet_lll, "triplet", "", "LLLCL", S::triplet, d::triplet, {}, n::coupled_three, triplet_lll, "", "41230"},
        {triplet_llc, "triplet", "", "LLLCC", S::triplet, d::triplet, {}, n::coupled_three, triplet_llc, "", "41230"},
        {triplet_cll, "triplet", "", "CLLCL", S::triplet, d::triplet, {}, n::coupled_three, triplet_cll, "", "41230"},
        {triplet_clc, "triplet", "", "CLLCC", S::triplet, d::triplet, {}, n::coupled_three, triplet_clc, "", "41230"},
        {triplet_ccc, "triplet", "", "CCLCC", S::triplet, d::triplet, {}, n::coupled_three, triplet_ccc, "", "41230"},
        {triplet_lcc, "triplet", "", "LCLCC", S::triplet, d::triplet, {}, n::coupled_three, triplet_lcc, "", "41230"},
        {triplet_ccl, "triplet", "", "CCLCL", S::triplet, d::triplet, {}, n::coupled_three, triplet_ccl, "", "41230"},
        {triplet_lcl, "triplet", "", "LCLCL", S::triplet, d::triplet, {}, n::coupled_three, triplet_lcl, "", "41230"},
        {quadruplet, "quadruplet", "", "", S::quadruplet, d::quadruplet, {}, n::coupled_four},
    }};
    // clang-format on
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

// What a branch of this kind is when it is turned end for end: the kind of its structure whose cells these are then.
[[nodiscard]] BranchId flipped_kind(const BranchKind& kind);

// The drawing of a branch of this kind in slot k.
[[nodiscard]] std::span<const DrawingRow> drawing_of(const BranchKind& kind, int k);

// From this magnitude on an inductor of a coupled triplet is absent.
inline constexpr double absent_inductor = 1e30;

// Whether cell `cell` of this kind holds an element at all: triplets leave out inductors of 1e30 or more and capacitors
// of 0.
[[nodiscard]] bool element_present(const BranchKind& kind, int cell, double value);

}  // namespace kavrel
