#include "workbench/segment_words.h"

namespace kavrel {

namespace {

// clang-format off
constexpr CommandKeyword active_table[] = {
    "time", "pltf", "show", "perm", "resc", "equ ", "freq", "fs  ", "add ", "del ", "read", "save",
    "des ", "mult", "bzt ", "sto ", "rcl ", "fq  ", "disp", "lbl ", "text", "undo", "tabf", "plpr",
    "file", "func", "pltt", "tabt", "pz  ", "pri ", "redo",
};
constexpr CommandKeyword lattice_table[] = {
    "file", "text", "disp", "show", "lbl ", "pri ", "plot", "freq", "tab ", "func", "plpr",
};
// clang-format on

}  // namespace

CommandWords active_words() { return {.words = active_table}; }
CommandWords lattice_words() { return {.words = lattice_table}; }

}  // namespace kavrel
