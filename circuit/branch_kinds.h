// The kinds of branches, one row for each id: how a branch is asked for, what its values are, how it is drawn, and
// which structure its immittances come from. Whatever differs from kind to kind belongs into this table.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

namespace kavrel {

inline constexpr int branch_kind_count = 26;
inline constexpr int unit_element_id = 10;
inline constexpr int quadruplet_id = 25;

// Where the immittances of a branch come from.
enum class Structure {
    slot_element,  // one impedance, in series in an even slot and across the rails in an odd one
    line,          // unit element
    network,       // elements between nodes, as `connections` tells
    lattice,       // symmetrical lattice of two arms, three cells each: L and C in series, X beside them
    quadruplet,    // four nodes, their elements in a table of their own
};

// An element of a network: nodes are 0 ground, 1 the port towards the load, 2 the port towards the source, from 3 on
// inner ones.
struct Connection {
    int cell;  // index of its value, from 0
    int from, to;
};
inline constexpr int max_network_nodes = 5;

// What is told beside a row of a drawing.
enum class Note { none, resonance, transmission_zero };

// A row of a drawing: fixed text, in which X is replaced by the letter of the row's cell.
struct DrawingRow {
    std::string_view text;
    int cell = -1;  // index of the value that stands beside the row, from 0; -1 none
    Note note = Note::none;
    int l = -1, c = -1;           // cells of the pair whose resonance is told
    int z = 0;                    // 1 to 3: impedance of the stub section that a microwave circuit tells here, 0 none
    std::string_view label = {};  // of that impedance
};

struct BranchKind {
    int id;
    std::string_view keyword;  // of the insert command, blank for kinds that only transformations make
    std::string_view cells;    // R, L, C or Z for each value in cell order; absent X of a triplet are as large as 1e30
    Structure structure;
    bool slot_element;                        // position rule: series in even slots, shunt in odd ones
    std::span<const DrawingRow> shunt;        // drawing in an odd slot, or of a two-port
    std::span<const DrawingRow> series;       // drawing in an even slot; empty for two-ports
    std::span<const Connection> connections;  // of a network; a cell may stand in it twice
};

extern const std::array<BranchKind, branch_kind_count> branch_kind_rows;

// Rows by id, 0 to 25.
struct BranchKindTable {
    const BranchKind& operator[](int id) const { return branch_kind_rows[static_cast<std::size_t>(id)]; }
    auto begin() const { return branch_kind_rows.begin(); }
    auto end() const { return branch_kind_rows.end(); }
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
