#include "fir/fir_forms.h"
#include "workbench/menus.h"

namespace kavrel {

// A row a line.
// clang-format off
constexpr std::array<MenuItem, 39> fir_menu = {{
    {.path = "&File > &Open", .hint = "Open a stored filter file", .accelerator = "ctrl+O", .id = 1128, .command = "read"},
    {.path = "&File > &New", .hint = "Restart or start a new design", .accelerator = "ctrl+B", .id = 1199, .action = MenuAction::new_fir_design},
    {.path = "&File > &Save", .hint = "Save the data in a file", .accelerator = "ctrl+S", .id = 1129, .command = "save"},
    {.path = "&File > Save &as", .hint = "Save a file with a different name", .accelerator = "ctrl+A", .id = 1130, .command = "save", .action = MenuAction::save_as},
    {.path = "&File > Stor&e", .hint = "Store data in temporary file", .accelerator = "ctrl+E", .id = 1131, .command = "sto "},
    {.path = "&File > &Recall", .hint = "Recall temporary file", .accelerator = "ctrl+R", .id = 1132, .command = "rcl "},
    {.path = "&File > Te&xt file", .hint = "Store filter data in text file", .accelerator = "ctrl+X", .id = 1133, .command = "file"},
    {.path = "&File > &Program", .hint = "Generates a Fortran program that implements filter in software", .accelerator = "shift+P", .id = 1134, .command = "prog", .form = &FIR_PROGRAM_DLG},
    {.path = "&File > &Factored", .hint = "Generates file containing factored data", .accelerator = "shift+Y", .id = 1135, .command = "ffac"},
    {.path = "&File > &Copy", .hint = "Copy marked text to clipboard", .accelerator = "ctrl+C", .id = 1194, .action = MenuAction::copy},
    {.path = "&File > E&xit", .hint = "Exit program", .id = 1136, .action = MenuAction::stop},
    {.path = "&View > &Display", .hint = "Display design information", .accelerator = "ctrl+D", .id = 1137, .command = "disp"},
    {.path = "&View > Sho&w", .hint = "Show FIR filter coefficients", .accelerator = "ctrl+W", .id = 1139, .command = "show", .form = &FIR_FUNCTION_DLG},
    {.path = "&View > &Factored", .hint = "Display factored form", .accelerator = "shift+Z", .id = 1141, .command = "prf "},
    {.path = "&View > Change t&itle", .hint = "Change the title", .accelerator = "ctrl+I", .id = 1138, .command = "lbl ", .form = &FIR_TITLE_DLG},
    {.path = "&View > &Print", .hint = "Copy windows output to printer", .accelerator = "ctrl+P", .id = 1140, .command = "pri ", .form = &FIR_PRINT_DLG},
    {.path = "&Analyze > &Frequency", .hint = "Frequency domain analysis", .accelerator = "ctrl+F", .id = 1142, .command = "freq", .form = &FIR_FREQUENCY_DLG},
    {.path = "&Analyze > &Time", .hint = "Time domain analysis", .accelerator = "ctrl+T", .id = 1148, .command = "time", .form = &FIR_FUNCTION_DLG},
    {.path = "&Analyze > &Plot > &Frequency", .hint = "Plot frequency domain analysis data", .accelerator = "CTRL+F2", .id = 1187, .command = "pltf", .form = &FIR_PLOT_FREQUENCY_DLG},
    {.path = "&Analyze > &Plot > &Time", .hint = "Plot time domain analysis data", .accelerator = "CTRL+F3", .id = 1188, .command = "pltt", .form = &FIR_PLOT_TIME_DLG},
    {.path = "&Analyze > F&ile > &Frequency", .hint = "Save frequency domain analysis data", .accelerator = "CTRL+F4", .id = 1189, .command = "tabf"},
    {.path = "&Analyze > F&ile > &Time", .hint = "Save time domain analysis data", .accelerator = "CTRL+F5", .id = 1190, .command = "tabt"},
    {.path = "&Modify > A&dd", .hint = "Add a quadratic factor to the filter", .accelerator = "shift+D", .id = 1155, .command = "add ", .form = &FIR_ADD_DLG},
    {.path = "&Modify > De&lete", .hint = "Delete a quadratic factor from the filter", .accelerator = "shift+L", .id = 1156, .command = "del ", .form = &FIR_DELETE_DLG},
    {.path = "&Modify > Cha&nge", .hint = "Change a quadratic factor", .accelerator = "shift+N", .id = 1157, .command = "ch  ", .form = &FIR_CHANGE_DLG},
    {.path = "&Modify > Fla&t gain", .hint = "Add a constant gain in dB", .accelerator = "shift+T", .id = 1197, .command = "flat", .form = &FIR_GAIN_DLG},
    {.path = "&Transform > T&runcate", .hint = "Truncate filter coefficients", .accelerator = "shift+R", .id = 1159, .command = "trun", .form = &FIR_TRUNCATE_DLG},
    {.path = "&Transform > &Factor", .hint = "Factor filter function", .accelerator = "shift+F", .id = 1158, .command = "fac ", .form = &FIR_FUNCTION_DLG},
    {.path = "&Transform > &Multiply > &All", .hint = "Multiply all factors", .accelerator = "shift+A", .id = 1149, .command = "mult"},
    {.path = "&Transform > &Multiply > S&elect", .hint = "Multiply selected factors", .accelerator = "shift+E", .id = 1150, .command = "mult", .form = &FIR_SERIAL_DLG, .action = MenuAction::multiply_selected},
    {.path = "&Transform > &Scale", .hint = "Scale impulse response to prevent overflow", .accelerator = "shift+S", .id = 1160, .command = "scal", .form = &FIR_FUNCTION_DLG},
    {.path = "&Transform > Fl&ip", .hint = "Flip zeros of quadratic factors inside unit circle", .accelerator = "shift+I", .id = 1162, .command = "flip"},
    {.path = "&Transform > Minimum &phase", .hint = "Convert filter to minimum phase", .accelerator = "shift+M", .id = 1198, .command = "min "},
    {.path = "&Transform > &Clear", .hint = "Delete all functions, except original", .accelerator = "shift+C", .id = 1151, .command = "clr "},
    {.path = "&Undo > &Undo", .hint = "Undo the last operation that changed the filter", .accelerator = "CTRL+F6", .id = 1166, .command = "undo"},
    {.path = "&Undo > &Redo", .hint = "Redo the last operation that was undone", .accelerator = "CTRL+F7", .id = 1195, .command = "redo"},
    {.path = "&Help > &Help", .hint = "Help about Kavrel", .accelerator = "F1", .id = 1153, .action = MenuAction::help},
    {.path = "&Help > H&elp on help", .hint = "Help about the operation of the help system", .id = 1152, .action = MenuAction::help_on_help},
    {.path = "&Help > A&bout Kavrel", .id = 1154, .action = MenuAction::about},
}};

constexpr std::array<MenuItem, 1> fir_window_items = {{
    {.path = "&Print", .hint = "Print current filter plot", .id = 162, .command = "plpr"},
}};
// clang-format on

}  // namespace kavrel
