#include "circuit/branch_kinds.h"

#include <cmath>

namespace kavrel {

namespace {

constexpr DrawingRow plain_shunt[] = {{"├───X───┤", 0}};
constexpr DrawingRow plain_series[] = {{"│       X", 0}};
constexpr DrawingRow pair_shunt[] = {
    {"├──L─C──┤", 0, Note::resonance, 0, 1, 1, "   z1 ="},
    {"│       │", 1, Note::none, -1, -1, 2, "  z2 ="},
};
constexpr DrawingRow pair_series[] = {
    {"│     ┌─┴┐"},
    {"│     L  C", 0, Note::resonance, 0, 1, 1, "   z1 ="},
    {"│     └─┬┘", 1, Note::none, -1, -1, 2, "  z2 ="},
};
constexpr DrawingRow drawing_4[] = {
    {"│    ┌──┤"}, {"│    L  │", 0}, {"│    │  C", 1}, {"├─C──┤  │", 2}, {"│    L  │", 3}, {"│    └──┤"},
};
constexpr DrawingRow drawing_5[] = {
    {"│    ┌──┤"}, {"│    C  │", 0}, {"│    │  L", 1}, {"├─L──┤  │", 2}, {"│    C  │", 3}, {"│    └──┤"},
};
constexpr DrawingRow drawing_6[] = {
    {"│    ┌──┤"},      {"│    C  │", 0}, {"│    │ ┌┴─┐"},  {"│    │ L  C", 1},
    {"│    │ └┬─┘", 2}, {"├─L──┤  │", 3}, {"│    C  │", 4}, {"│    └──┤"},
};
constexpr DrawingRow drawing_7[] = {
    {"│    ┌──┤"},    {"│    L  │", 0}, {"│    │  C", 1}, {"├─L─C┤  │", 2},
    {"│    │  │", 3}, {"│    L  │", 4}, {"│    └──┤"},
};
constexpr DrawingRow drawing_8[] = {
    {"│    ┌──┤"},    {"│    L  │", 0}, {"│    │  C", 1}, {"├─C──┤  │", 2}, {"│    │  │"},
    {"├─L──+──┤", 3}, {"│    │  C", 4}, {"│    L  │", 5}, {"│    └──┤"},
};
constexpr DrawingRow drawing_9[] = {
    {"│    ┌──┤"},    {"│    L  │", 0}, {"│    │  C", 1}, {"├─C──┤  │", 2}, {"│    │  │"},
    {"├─L─C+──┤", 3}, {"│    │  │", 4}, {"│    │  C", 5}, {"│    L  │", 6}, {"│    └──┤"},
};
constexpr DrawingRow drawing_line[] = {{"*       *"}, {"*  u e  *", 0}, {"*       *"}};
constexpr DrawingRow drawing_lattice[] = {
    {" ┌─L─C─┐ ", 0, Note::resonance, 0, 1}, {"─┤     ├─", 1}, {" └──X──┘ ", 2}, {"    X    "}, {"│       │"},
    {" ┌─L─C─┐ ", 3, Note::resonance, 3, 4}, {"─┤     ├─", 4}, {" └──X──┘ ", 5},
};
constexpr DrawingRow three_shunt[] = {
    {"├─L─┐   │", 0, Note::none, -1, -1, 1, "z1 ="},
    {"│   ├─X─┤", 2, Note::none, -1, -1, 2, "z2 ="},
    {"├─C─┘   │", 1, Note::resonance, 0, 1, 3, "   z3 ="},
};
constexpr DrawingRow three_series[] = {
    {"│     ┌─┴┐", -1, Note::resonance, 0, 1},
    {"│     │  L", 0, Note::none, -1, -1, 1, "z1 ="},
    {"│     X  │", 2, Note::none, -1, -1, 2, "z2 ="},
    {"│     │  C", 1, Note::none, -1, -1, 3, "  z3 ="},
    {"│     └─┬┘"},
};
constexpr DrawingRow drawing_15[] = {
    {"│     ┌─┴─┐   "},
    {"│     R  ┌┴┐  ", 0},
    {"│     │  │ L  ", 1},
    {"│     │  R │  ", 2},
    {"│     │  │ C  ", 3, Note::resonance, 1, 3},
    {"│  ┌L─┤  └┬┘  ", 4},
    {"├─R┤  │   │   ", 5},
    {"│  └C─┤   │   ", 6},
    {"│     R   │   ", 0},
    {"│     └─┬─┘   "},
};
constexpr DrawingRow drawing_16[] = {
    {"│     ┌─┴─┐   "},
    {"│     R ┌─┼─┐ ", 0},
    {"│     │ │ │ L ", 1},
    {"│     │ │ R │ ", 2},
    {"│     │ C │ │ ", 3, Note::resonance, 1, 3},
    {"├L─R─C┤ └─┼─┘ ", 4},
    {"│     │   │   ", 5},
    {"│     │   │   ", 6},
    {"│     R   │   ", 0},
    {"│     └─┬─┘   "},
};
constexpr DrawingRow drawing_triplet[] = {
    {"│       ├─┐   "},
    {"│       X │   ", 0},
    {"├───L───┤ │   ", 2, Note::transmission_zero},
    {"│       │ X   ", 1},
    {"├───C───┤ │   ", 3, Note::transmission_zero},
    {"│       X │   ", 4},
    {"│       ├─┘"},
};
// Cells are places of quadruplet_elements: couplings 12, 13, 14, 23, 24, 34, then L and C of nodes 2 and 3.
constexpr DrawingRow drawing_quadruplet[] = {
    {"│     ┌─┼───┐ "},
    {"│     X │   │ ", 0},
    {"│     │ │   │ "},
    {"├──L──┼─│─┐ │ ", 6},
    {"│     │ │ │ │ "},
    {"├──C──┤ │ │ │ ", 7},
    {"│     │ X │ │ ", 1, Note::transmission_zero},
    {"│     X │ │ │ ", 3, Note::transmission_zero},
    {"│     │ │ │ X ", 2},
    {"├──L──┼─┘ │ │ ", 8},
    {"│     │   │ │ "},
    {"├──C──┤   │ │ ", 9},
    {"│     │   X │ ", 4},
    {"│     X   │ │ ", 5},
    {"│     └─┬─┴─┘ "},
};

constexpr Connection star_4[] = {{0, 1, 3}, {1, 1, 2}, {2, 3, 0}, {3, 3, 2}};  // of 5, too
constexpr Connection star_6[] = {{0, 1, 3}, {1, 1, 2}, {2, 1, 2}, {3, 3, 0}, {4, 3, 2}};
constexpr Connection star_7[] = {{0, 1, 3}, {1, 1, 2}, {2, 3, 4}, {3, 4, 0}, {4, 3, 2}};
constexpr Connection stars_8[] = {{0, 1, 3}, {2, 3, 0}, {5, 3, 2}, {1, 1, 4}, {3, 4, 0}, {4, 4, 2}};
constexpr Connection stars_9[] = {{0, 1, 3}, {2, 3, 0}, {6, 3, 2}, {1, 1, 4}, {3, 4, 5}, {4, 5, 0}, {5, 4, 2}};
constexpr Connection bridged_15[] = {{0, 1, 3}, {0, 3, 2}, {1, 1, 4}, {3, 4, 2},
                                     {2, 1, 2}, {5, 3, 5}, {4, 5, 0}, {6, 5, 0}};
constexpr Connection bridged_16[] = {{0, 1, 3}, {0, 3, 2}, {1, 1, 2}, {2, 1, 2},
                                     {3, 1, 2}, {4, 3, 4}, {5, 4, 5}, {6, 5, 0}};
constexpr Connection coupled_three[] = {{0, 1, 3}, {1, 1, 2}, {2, 3, 0}, {3, 3, 0}, {4, 3, 2}};

constexpr BranchKind triplet(int id, std::string_view cells) {
    return {id, "", cells, Structure::network, false, drawing_triplet, {}, coupled_three};
}

}  // namespace

constexpr std::array<BranchKind, branch_kind_count> branch_kind_rows = {{
    {0, "r", "R", Structure::slot_element, true, plain_shunt, plain_series, {}},
    {1, "l", "L", Structure::slot_element, true, plain_shunt, plain_series, {}},
    {2, "c", "C", Structure::slot_element, true, plain_shunt, plain_series, {}},
    {3, "lc", "LC", Structure::slot_element, true, pair_shunt, pair_series, {}},
    {4, "", "LCCL", Structure::network, false, drawing_4, {}, star_4},
    {5, "", "CLLC", Structure::network, false, drawing_5, {}, star_4},
    {6, "", "CLCLC", Structure::network, false, drawing_6, {}, star_6},
    {7, "", "LCLCL", Structure::network, false, drawing_7, {}, star_7},
    {8, "", "LCCLCL", Structure::network, false, drawing_8, {}, stars_8},
    {9, "", "LCCLCCL", Structure::network, false, drawing_9, {}, stars_9},
    {unit_element_id, "ue", "Z", Structure::line, false, drawing_line, {}, {}},
    {11, "", "LCCLCC", Structure::lattice, false, drawing_lattice, {}, {}},
    {12, "", "LCLLCL", Structure::lattice, false, drawing_lattice, {}, {}},
    {13, "lcc", "LCC", Structure::slot_element, true, three_shunt, three_series, {}},
    {14, "lcl", "LCL", Structure::slot_element, true, three_shunt, three_series, {}},
    {15, "eqa", "RLRCLRC", Structure::network, false, drawing_15, {}, bridged_15},
    {16, "eqb", "RLRCLRC", Structure::network, false, drawing_16, {}, bridged_16},
    triplet(17, "LLLCL"),
    triplet(18, "LLLCC"),
    triplet(19, "CLLCL"),
    triplet(20, "CLLCC"),
    triplet(21, "CCLCC"),
    triplet(22, "LCLCC"),
    triplet(23, "CCLCL"),
    triplet(24, "LCLCL"),
    {quadruplet_id, "", "", Structure::quadruplet, false, drawing_quadruplet, {}, {}},
}};

namespace {

constexpr bool in_order() {
    for (int id = 0; id < branch_kind_count; ++id) {
        if (branch_kind_rows[static_cast<std::size_t>(id)].id != id) return false;
    }
    return true;
}
static_assert(in_order());

}  // namespace

std::span<const DrawingRow> drawing_of(const BranchKind& kind, int k) {
    return kind.series.empty() || k % 2 != 0 ? kind.shunt : kind.series;
}

bool element_present(const BranchKind& kind, int cell, double value) {
    if (kind.id < 17 || kind.id >= quadruplet_id) return true;
    const char letter = kind.cells[static_cast<std::size_t>(cell)];
    return letter == 'L' ? std::fabs(value) < absent_inductor : value != 0.0;
}

}  // namespace kavrel
