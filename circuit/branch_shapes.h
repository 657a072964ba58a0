// The shapes of branches: the rows of their drawings, and the connections of those that are networks.
#pragma once

#include <string_view>

namespace kavrel {

// What a drawing notes beside a row.
enum class Note { none, resonance, transmission_zero };

// A row of a drawing: fixed text, in which X is replaced by the letter of the row's cell.
struct DrawingRow {
    std::string_view text;
    int cell = -1;  // index of the value beside the row, from 0; -1 none
    Note note = Note::none;
    int l = -1, c = -1;           // cells of the pair whose resonance is noted
    int z = 0;                    // 1 to 3: impedance of the stub section that a microwave circuit notes here, 0 none
    std::string_view label = {};  // of that impedance
};

// An element of a network: nodes are 0 ground, 1 the port towards the load, 2 the port towards the source, from 3 on
// inner ones.
struct Connection {
    int cell;  // index of its value, from 0
    int from, to;
};
inline constexpr int max_network_nodes = 5;

namespace drawings {

inline constexpr DrawingRow plain_shunt[] = {{"├───X───┤", 0}};
inline constexpr DrawingRow plain_series[] = {{"│       X", 0}};
inline constexpr DrawingRow pair_shunt[] = {
    {"├──L─C──┤", 0, Note::resonance, 0, 1, 1, "   z1 ="},
    {"│       │", 1, Note::none, -1, -1, 2, "  z2 ="},
};
inline constexpr DrawingRow pair_series[] = {
    {"│     ┌─┴┐"},
    {"│     L  C", 0, Note::resonance, 0, 1, 1, "   z1 ="},
    {"│     └─┬┘", 1, Note::none, -1, -1, 2, "  z2 ="},
};
inline constexpr DrawingRow bridged_l[] = {
    {"│    ┌──┤"}, {"│    L  │", 0}, {"│    │  C", 1}, {"├─C──┤  │", 2}, {"│    L  │", 3}, {"│    └──┤"},
};
inline constexpr DrawingRow bridged_c[] = {
    {"│    ┌──┤"}, {"│    C  │", 0}, {"│    │  L", 1}, {"├─L──┤  │", 2}, {"│    C  │", 3}, {"│    └──┤"},
};
inline constexpr DrawingRow bridged_c_trap[] = {
    {"│    ┌──┤"},      {"│    C  │", 0}, {"│    │ ┌┴─┐"},  {"│    │ L  C", 1},
    {"│    │ └┬─┘", 2}, {"├─L──┤  │", 3}, {"│    C  │", 4}, {"│    └──┤"},
};
inline constexpr DrawingRow bridged_l_trap[] = {
    {"│    ┌──┤"},    {"│    L  │", 0}, {"│    │  C", 1}, {"├─L─C┤  │", 2},
    {"│    │  │", 3}, {"│    L  │", 4}, {"│    └──┤"},
};
inline constexpr DrawingRow twin_t[] = {
    {"│    ┌──┤"},    {"│    L  │", 0}, {"│    │  C", 1}, {"├─C──┤  │", 2}, {"│    │  │"},
    {"├─L──+──┤", 3}, {"│    │  C", 4}, {"│    L  │", 5}, {"│    └──┤"},
};
inline constexpr DrawingRow twin_t_trap[] = {
    {"│    ┌──┤"},    {"│    L  │", 0}, {"│    │  C", 1}, {"├─C──┤  │", 2}, {"│    │  │"},
    {"├─L─C+──┤", 3}, {"│    │  │", 4}, {"│    │  C", 5}, {"│    L  │", 6}, {"│    └──┤"},
};
inline constexpr DrawingRow line[] = {{"*       *"}, {"*  u e  *", 0}, {"*       *"}};
inline constexpr DrawingRow lattice[] = {
    {" ┌─L─C─┐ ", 0, Note::resonance, 0, 1}, {"─┤     ├─", 1}, {" └──X──┘ ", 2}, {"    X    "}, {"│       │"},
    {" ┌─L─C─┐ ", 3, Note::resonance, 3, 4}, {"─┤     ├─", 4}, {" └──X──┘ ", 5},
};
inline constexpr DrawingRow three_shunt[] = {
    {"├─L─┐   │", 0, Note::none, -1, -1, 1, "z1 ="},
    {"│   ├─X─┤", 2, Note::none, -1, -1, 2, "z2 ="},
    {"├─C─┘   │", 1, Note::resonance, 0, 1, 3, "   z3 ="},
};
inline constexpr DrawingRow three_series[] = {
    {"│     ┌─┴┐", -1, Note::resonance, 0, 1},
    {"│     │  L", 0, Note::none, -1, -1, 1, "z1 ="},
    {"│     X  │", 2, Note::none, -1, -1, 2, "z2 ="},
    {"│     │  C", 1, Note::none, -1, -1, 3, "  z3 ="},
    {"│     └─┬┘"},
};
inline constexpr DrawingRow equalizer_a[] = {
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
inline constexpr DrawingRow equalizer_b[] = {
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
inline constexpr DrawingRow triplet[] = {
    {"│       ├─┐   "},
    {"│       X │   ", 0},
    {"├───L───┤ │   ", 2, Note::transmission_zero},
    {"│       │ X   ", 1},
    {"├───C───┤ │   ", 3, Note::transmission_zero},
    {"│       X │   ", 4},
    {"│       ├─┘"},
};
// Cells are places of quadruplet_elements: couplings 12, 13, 14, 23, 24, 34, then L and C of nodes 2 and 3.
inline constexpr DrawingRow quadruplet[] = {
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

}  // namespace drawings

namespace networks {

inline constexpr Connection bridged_t[] = {{0, 1, 3}, {1, 1, 2}, {2, 3, 0}, {3, 3, 2}};
inline constexpr Connection bridged_c_trap[] = {{0, 1, 3}, {1, 1, 2}, {2, 1, 2}, {3, 3, 0}, {4, 3, 2}};
inline constexpr Connection bridged_l_trap[] = {{0, 1, 3}, {1, 1, 2}, {2, 3, 4}, {3, 4, 0}, {4, 3, 2}};
inline constexpr Connection twin_t[] = {{0, 1, 3}, {2, 3, 0}, {5, 3, 2}, {1, 1, 4}, {3, 4, 0}, {4, 4, 2}};
inline constexpr Connection twin_t_trap[] = {{0, 1, 3}, {2, 3, 0}, {6, 3, 2}, {1, 1, 4},
                                             {3, 4, 5}, {4, 5, 0}, {5, 4, 2}};
inline constexpr Connection equalizer_a[] = {{0, 1, 3}, {0, 3, 2}, {1, 1, 4}, {3, 4, 2},
                                             {2, 1, 2}, {5, 3, 5}, {4, 5, 0}, {6, 5, 0}};
inline constexpr Connection equalizer_b[] = {{0, 1, 3}, {0, 3, 2}, {1, 1, 2}, {2, 1, 2},
                                             {3, 1, 2}, {4, 3, 4}, {5, 4, 5}, {6, 5, 0}};
inline constexpr Connection coupled_three[] = {{0, 1, 3}, {1, 1, 2}, {2, 3, 0}, {3, 3, 0}, {4, 3, 2}};
// Nodes 1, 2, 3, 4 of a quadruplet are 1, 3, 4, 2 here.
inline constexpr Connection coupled_four[] = {{0, 1, 3}, {1, 1, 4}, {2, 1, 2}, {3, 3, 4}, {4, 3, 2},
                                              {5, 4, 2}, {6, 3, 0}, {7, 3, 0}, {8, 4, 0}, {9, 4, 0}};

}  // namespace networks

}  // namespace kavrel
