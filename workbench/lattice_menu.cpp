#include "workbench/menus.h"

namespace kavrel {

// A row a line.
// clang-format off
constexpr std::array<MenuItem, 15> lattice_menu = {{
    {.path = "&File > Te&xt file", .hint = "Store filter data in text file", .accelerator = "ctrl+X", .id = 879, .command = "text"},
    {.path = "&File > Tra&nsfer", .hint = "Generates a netlist to be transferred to another program", .accelerator = "ctrl+N", .id = 880, .command = "file"},
    {.path = "&File > &Copy", .hint = "Copy marked text to clipboard", .accelerator = "ctrl+C", .id = 914, .action = MenuAction::copy},
    {.path = "&File > E&xit", .hint = "Exit program", .id = 881, .action = MenuAction::stop},
    {.path = "&View > &Display", .hint = "Display design information", .accelerator = "ctrl+D", .id = 882, .command = "disp"},
    {.path = "&View > Sho&w", .hint = "Show filter implementation and coefficients", .accelerator = "ctrl+W", .id = 884, .command = "show"},
    {.path = "&View > Change t&itle", .hint = "Change the title", .accelerator = "ctrl+I", .id = 883, .command = "lbl "},
    {.path = "&View > &Print", .hint = "Copy windows output to printer", .accelerator = "ctrl+P", .id = 885, .command = "pri "},
    {.path = "&View > F&unction", .hint = "Display filter transfer function", .accelerator = "ctrl+U", .id = 886, .command = "func"},
    {.path = "&Analyze > &Frequency", .hint = "Frequency domain analysis", .accelerator = "ctrl+F", .id = 887, .command = "freq"},
    {.path = "&Analyze > &Plot", .hint = "Plot frequency analysis results", .accelerator = "CTRL+F2", .id = 898, .command = "plot"},
    {.path = "&Analyze > F&ile", .hint = "Save analysis data in file", .accelerator = "CTRL+F4", .id = 899, .command = "tab "},
    {.path = "&Help > &Help", .hint = "Help about Kavrel", .accelerator = "F1", .id = 894, .action = MenuAction::help},
    {.path = "&Help > H&elp on help", .hint = "Help about the operation of the help system", .id = 893, .action = MenuAction::help_on_help},
    {.path = "&Help > &About Kavrel", .id = 895, .action = MenuAction::about},
}};

constexpr std::array<MenuItem, 1> lattice_window_items = {{
    {.path = "&Print", .hint = "Print current filter plot", .id = 168, .command = "plpr"},
}};
// clang-format on

}  // namespace kavrel
