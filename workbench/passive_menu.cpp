#include "passive/analysis_commands.h"
#include "passive/passive_forms.h"
#include "workbench/menus.h"

namespace kavrel {

// A row a line.
// clang-format off
constexpr std::array<MenuItem, 66> passive_menu = {{
    {.path = "&File > &Open", .hint = "Open a stored filter text file", .accelerator = "ctrl+O", .id = 328, .command = "read"},
    {.path = "&File > &New", .hint = "Restart or start a new design", .accelerator = "ctrl+B", .id = 524, .action = MenuAction::new_design},
    {.path = "&File > &Save", .hint = "Save the circuit in a file (old SAVE command)", .accelerator = "ctrl+S", .id = 329, .command = "save"},
    {.path = "&File > Save &as", .hint = "Save a file with a different name", .accelerator = "ctrl+A", .id = 330, .command = "save", .action = MenuAction::save_as},
    {.path = "&File > Stor&e", .hint = "Store data in temporary file (old STO command)", .accelerator = "ctrl+E", .id = 331, .command = "sto "},
    {.path = "&File > &Recall", .hint = "Recall temporary file (old RCL command)", .accelerator = "ctrl+R", .id = 332, .command = "rcl "},
    {.path = "&File > Te&xt file", .hint = "Store filter data in text file", .accelerator = "ctrl+X", .id = 333, .command = "text"},
    {.path = "&File > Tra&nsfer", .hint = "Generates netlists to transfer filter to other programs (old FILE command)", .accelerator = "ctrl+N", .id = 334, .command = "file", .form = &PASSIVE_TRANSFER_DLG},
    {.path = "&File > Pole-&zero", .hint = "Generates file containing pole-zero data (old PZ command)", .accelerator = "ctrl+Z", .id = 499, .command = "pz  "},
    {.path = "&File > &Copy", .hint = "Copy marked text to clipboard", .accelerator = "ctrl+C", .id = 516, .action = MenuAction::copy},
    {.path = "&File > E&xit", .hint = "Exit program segment", .id = 335, .action = MenuAction::stop},
    {.path = "&View > &Display", .hint = "Display design information", .accelerator = "ctrl+D", .id = 336, .command = "disp"},
    {.path = "&View > Sho&w", .hint = "Show complete circuit (old PRI command)", .accelerator = "ctrl+W", .id = 337, .command = "show"},
    {.path = "&View > &List", .hint = "List circuit structure data (old LIST command)", .id = 338, .command = "list"},
    {.path = "&View > S&queeze", .hint = "Squeeze branch numbers (old SQU command)", .accelerator = "ctrl+Q", .id = 339, .command = "squ "},
    {.path = "&View > Change t&itle", .hint = "Change the title (old LBL command)", .accelerator = "ctrl+I", .id = 340, .command = "lbl ", .form = &PASSIVE_TITLE_DLG},
    {.path = "&View > &Print", .hint = "Copy windows output to printer or a file", .accelerator = "ctrl+P", .id = 341, .command = "pri ", .form = &PASSIVE_PRINT_DLG},
    {.path = "&View > F&unction", .hint = "Display filter transfer function", .accelerator = "ctrl+U", .id = 467, .command = "prf "},
    {.path = "&View > &Suppress", .hint = "Suppress display of intermediate results (old OFF-ON commands)", .id = 513, .command = "supp", .form = &PASSIVE_SUPPRESS_DLG},
    {.path = "&View > &Frequency", .hint = "Frequency domain analysis (old FREQ command)", .accelerator = "ctrl+F", .id = 343, .command = "freq", .form = &PASSIVE_FREQUENCY_DLG},
    {.path = "&View > &Time", .hint = "Time domain analysis (old TIME command)", .accelerator = "ctrl+T", .id = 346, .command = "time", .form = &PASSIVE_TIME_DLG},
    {.path = "&View > &Plot > &Frequency", .hint = "Plot frequency domain analysis results", .accelerator = "CTRL+F2", .id = 503, .command = "pltf", .form = &PASSIVE_PLOT_FREQUENCY_DLG},
    {.path = "&View > &Plot > &Time", .hint = "Plot time domain analysis results", .accelerator = "CTRL+F3", .id = 504, .command = "pltt", .form = &PASSIVE_PLOT_TIME_DLG},
    {.path = "&View > R&esonance", .hint = "Compute and display resonant frequency (old RES command)", .accelerator = "alt+E", .id = 349, .command = "res ", .form = &PASSIVE_RESONANCE_DLG},
    {.path = "&View > &Spread", .hint = "Display element value spread (old SPRD command)", .accelerator = "alt+S", .id = 350, .command = "sprd"},
    {.path = "&View > F&ile > &Frequency", .hint = "Save frequency domain analysis data", .accelerator = "CTRL+F4", .id = 505, .command = "tabf"},
    {.path = "&View > F&ile > &Time", .hint = "Save time domain analysis data", .accelerator = "CTRL+F5", .id = 506, .command = "tabt"},
    {.path = "&View > P&hase nonlinearity", .hint = "Display phase nonlinearity", .accelerator = "alt+H", .id = 522, .command = "non "},
    {.path = "&Branch > I&nsert", .hint = "Insert a branch or section (old INS command)", .accelerator = "alt+N", .id = 354, .command = "ins ", .form = &PASSIVE_INSERT_DLG},
    {.path = "&Branch > &Delete", .hint = "Delete a branch or section (old DEL command)", .accelerator = "alt+D", .id = 355, .command = "del ", .form = &PASSIVE_DELETE_DLG},
    {.path = "&Branch > Chan&ge", .hint = "Change the value of an element (old CH command)", .accelerator = "alt+G", .id = 356, .command = "ch  ", .form = &PASSIVE_CHANGE_DLG},
    {.path = "&Branch > C&ombine", .hint = "Combine two elements (old COM command)", .accelerator = "alt+O", .id = 357, .command = "com ", .form = &PASSIVE_COMBINE_DLG},
    {.path = "&Branch > Sp&lit", .hint = "Split a branch into two (old SPL command)", .accelerator = "alt+L", .id = 358, .command = "spl ", .form = &PASSIVE_SPLIT_DLG},
    {.path = "&Branch > &Interchange", .hint = "Interchange two branches (old IB command)", .accelerator = "alt+I", .id = 359, .command = "ib  ", .form = &PASSIVE_INTERCHANGE_DLG},
    {.path = "&Modify > Tee-&pi", .hint = "Tee <-> pi conversion (old TP command)", .accelerator = "shift+P", .id = 360, .command = "tp  ", .form = &PASSIVE_TEE_PI_DLG},
    {.path = "&Modify > E&xchange", .hint = "Exchange location of resonant branches (old XR command)", .accelerator = "shift+X", .id = 361, .command = "xr  ", .form = &PASSIVE_EXCHANGE_DLG},
    {.path = "&Modify > Con&vert", .hint = "Convert three-element branches (old XCH command)", .accelerator = "shift+V", .id = 362, .command = "xch ", .form = &PASSIVE_CONVERT_DLG},
    {.path = "&Modify > &Lattice", .hint = "Convert section into lattice form (old LAT command)", .id = 363, .command = "lat ", .form = &PASSIVE_LATTICE_DLG},
    {.path = "&Modify > &Include", .hint = "Include branches into lattice (old INCL command)", .id = 364, .command = "incl", .form = &PASSIVE_INCLUDE_DLG},
    {.path = "&Modify > &Triplet", .hint = "Convert section to coupled triplet (CT command)", .accelerator = "shift+T", .id = 365, .command = "ct  ", .form = &PASSIVE_TRIPLET_DLG},
    {.path = "&Modify > &Quadruplet", .hint = "Convert section to coupled quadruplet (CQ command)", .accelerator = "shift+Q", .id = 366, .command = "cq  ", .form = &PASSIVE_QUADRUPLET_DLG},
    {.path = "&Modify > &Norton > &Simple", .hint = "Simple Norton transformation", .accelerator = "shift+N", .id = 367, .command = "tr  ", .form = &PASSIVE_NORTON_SIMPLE_DLG},
    {.path = "&Modify > &Norton > &Matching", .hint = "Norton transformation to make two elements equal (old 'TR -i -j k l' command", .accelerator = "shift+M", .id = 368, .command = "tr  ", .form = &PASSIVE_NORTON_MATCHING_DLG},
    {.path = "&Modify > &Norton > C&omputed", .hint = "Using one of the computed transformation values (old 'TR -i j k' command)", .accelerator = "shift+O", .id = 478, .command = "tr  ", .form = &PASSIVE_NORTON_COMPUTED_DLG},
    {.path = "&Modify > &Norton > &All > &All", .hint = "Making all values equal (old LCE command)", .accelerator = "shift+A", .id = 369, .command = "lce ", .form = &PASSIVE_EQUAL_DLG},
    {.path = "&Modify > &Norton > &All > End values &halved", .hint = "Making all but end values equal (old ECM command)", .accelerator = "shift+H", .id = 370, .command = "ecm ", .form = &PASSIVE_INNER_EQUAL_DLG},
    {.path = "&Modify > &Norton > M&ultiple > Equal &L's", .hint = "All equal L's", .accelerator = "shift+L", .id = 371, .command = "mtr ", .form = &PASSIVE_MULTIPLE_L_DLG},
    {.path = "&Modify > &Norton > M&ultiple > Equal &C's", .hint = "All equal C's", .accelerator = "shift+C", .id = 372, .command = "mtr ", .form = &PASSIVE_MULTIPLE_C_DLG},
    {.path = "&Modify > &Norton > M&ultiple > &Specified values", .hint = "Specified transformation values", .id = 373, .command = "mtr ", .form = &PASSIVE_MULTIPLE_VALUES_DLG},
    {.path = "&Modify > D&ual", .hint = "Replace circuit by its dual (old DUAL command)", .accelerator = "shift+U", .id = 374, .command = "dual"},
    {.path = "&Modify > Fl&ip", .hint = "Turn circuit end-for-end (old FLIP command)", .accelerator = "shift+I", .id = 375, .command = "flip"},
    {.path = "&Modify > &Wave", .hint = "Convert microwave filter to wave-digital form (old WAVE command)", .accelerator = "shift+W", .id = 376, .command = "wave"},
    {.path = "&Modify > &R scaling", .hint = "Impedance scaling (old RS command)", .accelerator = "shift+R", .id = 377, .command = "rs  ", .form = &PASSIVE_R_SCALING_DLG},
    {.path = "&Modify > &F scaling", .hint = "Frequency scaling (old FS command)", .accelerator = "shift+F", .id = 378, .command = "fs  ", .form = &PASSIVE_F_SCALING_DLG},
    {.path = "&Modify > Preferre&d", .hint = "Preferred values (old PREF command)", .accelerator = "shift+D", .id = 379, .command = "pref", .form = &PASSIVE_PREFERRED_DLG},
    {.path = "&Modify > &Equalize", .hint = "Add delay equalization (old EQU command)", .accelerator = "shift+E", .id = 380, .command = "equ "},
    {.path = "&Modify > &Band-reject", .hint = "Convert lowpass to band-reject (old BE command)", .accelerator = "shift+B", .id = 381, .command = "be  ", .form = &PASSIVE_BAND_REJECT_DLG},
    {.path = "&Modify > Transfer", .hint = "Transfer microwave lowpass filter to highpass and vice versa", .id = 525, .command = "conv"},
    {.path = "Ma&cro > Sta&rt", .hint = "Start recording a macro", .accelerator = "alt+R", .id = 519, .command = "writ"},
    {.path = "Ma&cro > St&op", .hint = "Stop recording a macro", .accelerator = "alt+O", .id = 520, .command = "clos"},
    {.path = "Ma&cro > &Play", .hint = "Play a macro", .accelerator = "alt+P", .id = 521, .action = MenuAction::play_macro},
    {.path = "&Undo > &Undo", .hint = "Undo the last operation that changed the circuit", .accelerator = "CTRL+F6", .id = 477, .command = "undo"},
    {.path = "&Undo > &Redo", .hint = "Redo the last operation that was undone", .accelerator = "CTRL+F7", .id = 517, .command = "redo"},
    {.path = "&Help > &Help", .hint = "Help about Kavrel", .accelerator = "F1", .id = 352, .action = MenuAction::help},
    {.path = "&Help > H&elp on help", .hint = "Help on the operation of the help system", .id = 351, .action = MenuAction::help_on_help},
    {.path = "&Help > &About Kavrel", .id = 353, .action = MenuAction::about},
}};

constexpr std::array<MenuItem, 2> passive_window_items = {{
    {.path = "&Print", .hint = "Print current filter plot", .id = passive_plot::print_analysis, .command = "plpr"},
    {.path = "&Print", .hint = "Print current filter plot", .id = passive_plot::print_nonlinearity, .command = "nonp"},
}};
// clang-format on

}  // namespace kavrel
