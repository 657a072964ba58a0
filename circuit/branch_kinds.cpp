#include "circuit/branch_kinds.h"

#include <algorithm>
#include <cmath>

namespace kavrel {

namespace {

constexpr BranchId flipped_id(const BranchKind& kind) {
    const auto letter = [&](std::size_t i) {
        return kind.cells[kind.flip_order.empty() ? i : static_cast<std::size_t>(kind.flip_order[i] - '0')];
    };
    for (const BranchKind& other : branch_kinds) {
        bool same = other.structure == kind.structure && other.cells.size() == kind.cells.size();
        for (std::size_t i = 0; same && i < kind.cells.size(); ++i) same = other.cells[i] == letter(i);
        if (same && (kind.structure == Structure::triplet || other.id == kind.id)) return other.id;
    }
    return BranchId::quadruplet;
}

}  // namespace

BranchId flipped_kind(const BranchKind& kind) { return flipped_id(kind); }

std::span<const DrawingRow> drawing_of(const BranchKind& kind, int k) {
    return kind.series.empty() || k % 2 != 0 ? kind.shunt : kind.series;
}

bool element_present(const BranchKind& kind, int cell, double value) {
    if (kind.structure != Structure::triplet) return true;
    const char letter = kind.cells[static_cast<std::size_t>(cell)];
    return letter == 'L' ? std::fabs(value) < absent_inductor : value != 0.0;
}

namespace {

constexpr bool in_order() {
    int id = 0;
    return std::all_of(branch_kinds.begin(), branch_kinds.end(),
                       [&](const BranchKind& kind) { return static_cast<int>(kind.id) == id++; });
}
static_assert(in_order());

// A quadruplet has none in the store, but six couplings, and L and C of two nodes.
constexpr int cell_count(const BranchKind& kind) {
    return kind.structure == Structure::quadruplet ? 10 : static_cast<int>(kind.cells.size());
}

// A drawing names only cells that there are, and every one of them.
constexpr bool shows_all_cells(const BranchKind& kind, std::span<const DrawingRow> drawing) {
    for (int cell = 0; cell < cell_count(kind); ++cell) {
        if (std::none_of(drawing.begin(), drawing.end(), [&](const DrawingRow& row) { return row.cell == cell; })) {
            return false;
        }
    }
    return std::all_of(drawing.begin(), drawing.end(), [&](const DrawingRow& row) {
        return std::max({row.cell, row.l, row.c}) < cell_count(kind) && (row.l < 0) == (row.note != Note::resonance);
    });
}
static_assert(std::all_of(branch_kinds.begin(), branch_kinds.end(), [](const BranchKind& kind) {
    return shows_all_cells(kind, kind.shunt) &&
           (kind.slot_element() ? shows_all_cells(kind, kind.series) : kind.series.empty());
}));

constexpr bool connects_all_cells(const BranchKind& kind) {
    for (int cell = 0; cell < cell_count(kind); ++cell) {
        if (std::none_of(kind.connections.begin(), kind.connections.end(),
                         [&](const Connection& place) { return place.cell == cell; })) {
            return false;
        }
    }
    return std::all_of(kind.connections.begin(), kind.connections.end(), [&](const Connection& place) {
        return place.cell < cell_count(kind) && std::max(place.from, place.to) <= max_network_nodes;
    });
}
static_assert(std::all_of(branch_kinds.begin(), branch_kinds.end(),
                          [](const BranchKind& kind) { return kind.connections.empty() || connects_all_cells(kind); }));

// Each place once; what comes to a cell is what its letter asks for.
template <class Letter>
constexpr bool is_order(const BranchKind& kind, std::string_view order, std::string_view cells, Letter letter) {
    for (std::size_t i = 0; i < order.size(); ++i) {
        const auto from = static_cast<std::size_t>(order[i] - '0');
        if (order.find(order[i]) != i || from >= kind.cells.size() || cells[i] != letter(kind.cells[from]))
            return false;
    }
    return order.empty() || order.size() == cells.size();
}
static_assert(std::all_of(branch_kinds.begin(), branch_kinds.end(), [](const BranchKind& kind) {
    const BranchKind &dual = branch_kinds[kind.dual], &flipped = branch_kinds[flipped_id(kind)];
    const auto same = [](char letter) { return letter; };
    const auto other = [](char letter) { return letter == 'L' ? 'C' : letter == 'C' ? 'L' : letter; };
    return dual.dual == kind.id && is_order(kind, kind.dual_order, dual.cells, other) &&
           flipped_id(flipped) == kind.id && is_order(kind, kind.flip_order, flipped.cells, same);
}));

}  // namespace

}  // namespace kavrel
