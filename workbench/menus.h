// The menu trees, a table each, in the order in which they are shown.
#pragma once

#include <array>

#include "shell/menu.h"

namespace kavrel {

extern const std::array<MenuItem, 18> main_menu;
extern const std::array<MenuItem, 66> passive_menu;
extern const std::array<MenuItem, 37> active_menu;
extern const std::array<MenuItem, 44> iir_menu;
extern const std::array<MenuItem, 39> fir_menu;
extern const std::array<MenuItem, 9> ladder_menu;
extern const std::array<MenuItem, 15> lattice_menu;

// What their other windows send: the plot window its item "&Print", the text viewer its end.
extern const std::array<MenuItem, 1> main_window_items;
extern const std::array<MenuItem, 2> passive_window_items;
extern const std::array<MenuItem, 1> active_window_items;
extern const std::array<MenuItem, 1> iir_window_items;
extern const std::array<MenuItem, 1> fir_window_items;
extern const std::array<MenuItem, 1> lattice_window_items;

extern const std::array<ToolbarItem, 6> main_toolbar;

}  // namespace kavrel
