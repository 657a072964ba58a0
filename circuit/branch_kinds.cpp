#include "circuit/branch_kinds.h"

#include <algorithm>
#include <cmath>

namespace kavrel {

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

}  // namespace

}  // namespace kavrel
