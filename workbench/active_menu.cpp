#include "workbench/menus.h"

namespace kavrel {

// A row a line.
// clang-format off
constexpr std::array<MenuItem, 37> active_menu = {{
    {.path = "&File > &Open", .hint = "Open a stored filter file", .accelerator = "ctrl+O", .id = 728, .command = "read"},
    {.path = "&File > &New", .hint = "Restart or start a new design", .accelerator = "ctrl+B", .id = 841, .action = MenuAction::new_design},
    {.path = "&File > &Save", .hint = "Save the circuit in a file", .accelerator = "ctrl+S", .id = 729, .command = "save"},
    {.path = "&File > Save &as", .hint = "Save a file with a different name", .accelerator = "ctrl+A", .id = 730, .command = "save", .action = MenuAction::save_as},
    {.path = "&File > Stor&e", .hint = "Store data in temporary file", .accelerator = "ctrl+E", .id = 731, .command = "sto "},
    {.path = "&File > &Recall", .hint = "Recall temporary file", .accelerator = "ctrl+R", .id = 732, .command = "rcl "},
    {.path = "&File > Te&xt file", .hint = "Store filter data in text file", .accelerator = "ctrl+X", .id = 733, .command = "text"},
    {.path = "&File > Tra&nsfer", .hint = "Generates a netlist for another program", .accelerator = "ctrl+N", .id = 734, .command = "file"},
    {.path = "&File > Pole-&zero", .hint = "Generates file containing pole-zero data", .accelerator = "ctrl+Z", .id = 735, .command = "pz  "},
    {.path = "&File > &Copy", .hint = "Copy marked text to clipboard", .accelerator = "ctrl+C", .id = 837, .action = MenuAction::copy},
    {.path = "&File > E&xit", .hint = "Exit program", .id = 736, .action = MenuAction::stop},
    {.path = "&View > &Display", .hint = "Display design information", .accelerator = "ctrl+D", .id = 737, .command = "disp"},
    {.path = "&View > Sho&w", .hint = "Show filter implementation and coefficients", .accelerator = "ctrl+W", .id = 763, .command = "show"},
    {.path = "&View > Change t&itle", .hint = "Change the title", .accelerator = "ctrl+I", .id = 738, .command = "lbl "},
    {.path = "&View > D&esign", .hint = "Design the second order sections", .id = 739, .command = "des "},
    {.path = "&View > &Print", .hint = "Copy windows output to printer", .accelerator = "ctrl+P", .id = 741, .command = "pri "},
    {.path = "&View > F&unction", .hint = "Print transfer function data", .accelerator = "ctrl+U", .id = 742, .command = "func"},
    {.path = "&Analyze > &Frequency", .hint = "Frequency domain analysis", .accelerator = "ctrl+F", .id = 743, .command = "freq"},
    {.path = "&Analyze > &Time", .hint = "Time domain analysis", .accelerator = "ctrl+T", .id = 746, .command = "time"},
    {.path = "&Analyze > &Plot > &Frequency", .hint = "Plot frequency domain analysis results", .accelerator = "CTRL+F2", .id = 817, .command = "pltf"},
    {.path = "&Analyze > &Plot > &Time", .hint = "Plot time domain analysis results", .accelerator = "CTRL+F3", .id = 818, .command = "pltt"},
    {.path = "&Analyze > F&ile > &Frequency", .hint = "Save frequency domain analysis data", .accelerator = "CTRL+F4", .id = 819, .command = "tabf"},
    {.path = "&Analyze > F&ile > &Time", .hint = "Save time domain analysis data", .accelerator = "CTRL+F5", .id = 820, .command = "tabt"},
    {.path = "&Modify > &Add", .hint = "Add a second order section to the filter", .accelerator = "shift+A", .id = 752, .command = "add "},
    {.path = "&Modify > &Delete", .hint = "Delete a second order section from the filter", .accelerator = "shift+D", .id = 753, .command = "del "},
    {.path = "&Modify > &Permute", .hint = "Permute the sequence of second order sections", .accelerator = "shift+P", .id = 754, .command = "perm"},
    {.path = "&Modify > &Multiply", .hint = "Multiply a section by a constant", .accelerator = "shift+M", .id = 816, .command = "mult"},
    {.path = "&Transform > &Z transform", .hint = "Convert filter to switched-capacitor form", .accelerator = "shift+Z", .id = 755, .command = "bzt "},
    {.path = "&Transform > Finite &Q", .hint = "Introduce a specified finite Q into the biquads", .accelerator = "shift+Q", .id = 756, .command = "fq  "},
    {.path = "&Transform > &Scale", .hint = "Scale filter to a different frequency", .accelerator = "shift+S", .id = 757, .command = "fs  "},
    {.path = "&Transform > Ma&gnitude scale", .hint = "Scale magnitudes for opt. dynamic range", .accelerator = "shift+G", .id = 758, .command = "resc"},
    {.path = "&Transform > &Equalize", .hint = "Perform delay equalization", .accelerator = "shift+E", .id = 759, .command = "equ "},
    {.path = "&Undo > &Undo", .hint = "Undo the last operation that changed the filter", .accelerator = "CTRL+F6", .id = 764, .command = "undo"},
    {.path = "&Undo > &Redo", .hint = "Redo the last operation that was undone", .accelerator = "CTRL+F7", .id = 838, .command = "redo"},
    {.path = "&Help > &Help", .hint = "Help about Kavrel", .accelerator = "F1", .id = 750, .action = MenuAction::help},
    {.path = "&Help > H&elp on help", .hint = "Help about the operation of the help system", .id = 749, .action = MenuAction::help_on_help},
    {.path = "&Help > &About Kavrel", .id = 751, .action = MenuAction::about},
}};

constexpr std::array<MenuItem, 1> active_window_items = {{
    {.path = "&Print", .hint = "Print current filter plot", .id = 163, .command = "plpr"},
}};
// clang-format on

}  // namespace kavrel
