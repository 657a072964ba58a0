#include "iir/iir_forms.h"
#include "workbench/menus.h"

namespace kavrel {

// A row a line.
// clang-format off
constexpr std::array<MenuItem, 44> iir_menu = {{
    {.path = "&File > &Open", .hint = "Open a stored filter file", .accelerator = "ctrl+O", .id = 528, .command = "read"},
    {.path = "&File > &New", .hint = "Restart or start a new design", .accelerator = "ctrl+B", .id = 651, .action = MenuAction::new_design},
    {.path = "&File > &Save", .hint = "Save the circuit in a file", .accelerator = "ctrl+S", .id = 529, .command = "save"},
    {.path = "&File > Save &as", .hint = "Save a file with a different name", .accelerator = "ctrl+A", .id = 530, .command = "save", .action = MenuAction::save_as},
    {.path = "&File > Stor&e", .hint = "Store data in temporary file", .accelerator = "ctrl+E", .id = 531, .command = "sto "},
    {.path = "&File > &Recall", .hint = "Recall temporary file", .accelerator = "ctrl+R", .id = 532, .command = "rcl "},
    {.path = "&File > Te&xt file", .hint = "Store filter data in text file", .accelerator = "ctrl+X", .id = 533, .command = "asci"},
    {.path = "&File > &Program", .hint = "Generates a Fortran program that implements filter in software", .accelerator = "shift+P", .id = 534, .command = "prog", .form = &IIR_PROGRAM_DLG},
    {.path = "&File > Pole-&zero", .hint = "Generates file containing pole-zero data", .accelerator = "ctrl+Z", .id = 535, .command = "pz  "},
    {.path = "&File > &Copy", .hint = "Copy marked text to clipboard", .accelerator = "ctrl+C", .id = 645, .action = MenuAction::copy},
    {.path = "&File > E&xit", .hint = "Exit program segment", .id = 536, .action = MenuAction::stop},
    {.path = "&View > &Display", .hint = "Display design information", .accelerator = "ctrl+D", .id = 537, .command = "disp"},
    {.path = "&View > Sho&w", .hint = "Show filter implementation and coefficients", .accelerator = "ctrl+W", .id = 565, .command = "show"},
    {.path = "&View > Change t&itle", .hint = "Change the title", .accelerator = "ctrl+I", .id = 538, .command = "lbl ", .form = &IIR_TITLE_DLG},
    {.path = "&View > Desi&gn", .hint = "Design the second order sections", .accelerator = "ctrl+G", .id = 539, .command = "des ", .form = &IIR_SECTION_DLG},
    {.path = "&View > &Switched-C", .hint = "Show a switched-capacitor implementation", .id = 540, .command = "swc "},
    {.path = "&View > &Print", .hint = "Copy windows output to printer", .accelerator = "ctrl+P", .id = 541, .command = "pri ", .form = &IIR_PRINT_DLG},
    {.path = "&View > F&unction", .hint = "Display filter transfer function", .accelerator = "ctrl+U", .id = 542, .command = "func"},
    {.path = "&Analyze > &Frequency", .hint = "Frequency domain analysis", .accelerator = "ctrl+F", .id = 543, .command = "freq", .form = &IIR_FREQUENCY_DLG},
    {.path = "&Analyze > &Time", .hint = "Time domain analysis", .accelerator = "ctrl+T", .id = 546, .command = "time", .form = &IIR_TIME_DLG},
    {.path = "&Analyze > &Plot > &Frequency", .hint = "Plot frequency domain analysis data", .accelerator = "CTRL+F2", .id = 634, .command = "pltf", .form = &IIR_PLOT_FREQUENCY_DLG},
    {.path = "&Analyze > &Plot > &Time", .hint = "Plot time domain analysis data", .accelerator = "CTRL+F3", .id = 635, .command = "pltt", .form = &IIR_PLOT_TIME_DLG},
    {.path = "&Analyze > &File > &Frequency", .hint = "Save frequency domain analysis data", .accelerator = "CTRL+F4", .id = 636, .command = "tabf"},
    {.path = "&Analyze > &File > &Time", .hint = "Save time domain analysis data", .accelerator = "CTRL+F5", .id = 637, .command = "tabt"},
    {.path = "&Analyze > &Limit cycle", .hint = "Display limit cycle information", .accelerator = "alt+L", .id = 591, .command = "lim "},
    {.path = "&Implement > &Direct", .hint = "Direct implementation of polynomial ratio", .accelerator = "alt+D", .id = 592, .command = "dir "},
    {.path = "&Implement > &Parallel", .hint = "Implementation with parallel biquadratic blocks", .accelerator = "alt+P", .id = 593, .command = "par "},
    {.path = "&Implement > La&ttice", .hint = "Gray-Markel lattice implementation", .accelerator = "alt+T", .id = 594, .command = "lat "},
    {.path = "&Implement > A&llpass", .hint = "Differential allpass implementation", .accelerator = "alt+L", .id = 595, .command = "allp"},
    {.path = "&Modify > &Add", .hint = "Add a second order section to the filter", .accelerator = "shift+A", .id = 552, .command = "add ", .form = &IIR_ADD_DLG},
    {.path = "&Modify > &Delete", .hint = "Delete a second order section from the filter", .accelerator = "shift+D", .id = 553, .command = "del ", .form = &IIR_DELETE_DLG},
    {.path = "&Modify > &Permute", .hint = "Permute the sequence of second order sections", .accelerator = "shift+P", .id = 554, .command = "perm", .form = &IIR_PERMUTE_DLG},
    {.path = "&Transform > &Flat", .hint = "Add flat loss to the filter", .accelerator = "shift+F", .id = 555, .command = "flat", .form = &IIR_FLAT_DLG},
    {.path = "&Transform > &Truncate", .hint = "Truncate filter coefficients to specified no. of bits", .accelerator = "shift+T", .id = 556, .command = "trun", .form = &IIR_TRUNCATE_DLG},
    {.path = "&Transform > &Scale", .hint = "Scale filter to optimize dynamic range", .accelerator = "shift+S", .id = 557, .command = "scal", .form = &IIR_SCALE_DLG},
    {.path = "&Transform > &Order", .hint = "Pairing and ordering filter poles and zeros", .accelerator = "shift+O", .id = 558, .command = "ord ", .form = &IIR_ORDER_DLG},
    {.path = "&Transform > &Resample", .hint = "Change sampling frequency", .accelerator = "shift+R", .id = 642, .command = "fs  ", .form = &IIR_RESAMPLE_DLG},
    {.path = "&Transform > &Equalize", .hint = "Perform delay equalization", .accelerator = "shift+E", .id = 559, .command = "equ "},
    {.path = "&Transform > &Convert", .hint = "Convert LP <-> HP", .accelerator = "shift+Q", .id = 652, .command = "conv"},
    {.path = "&Undo > &Undo", .hint = "Undo the last operation that changed the filter", .accelerator = "CTRL+F6", .id = 568, .command = "undo"},
    {.path = "&Undo > &Redo", .hint = "Redo the last operation that was undone", .accelerator = "CTRL+F7", .id = 646, .command = "redo"},
    {.path = "&Help > &Help", .hint = "Help about Kavrel", .accelerator = "F1", .id = 550, .action = MenuAction::help},
    {.path = "&Help > H&elp on help", .hint = "Help about the operation of the help system", .id = 549, .action = MenuAction::help_on_help},
    {.path = "&Help > &About Kavrel", .id = 551, .action = MenuAction::about},
}};

constexpr std::array<MenuItem, 1> iir_window_items = {{
    {.path = "&Print", .hint = "Print current filter plot", .id = 161, .command = "plpr"},
}};
// clang-format on

}  // namespace kavrel
