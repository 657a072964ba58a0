#include "workbench/menus.h"

namespace kavrel {

// A row a line.
// clang-format off
constexpr std::array<MenuItem, 9> ladder_menu = {{
    {.path = "&View > Sho&w", .hint = "Show the circuit designed so far", .accelerator = "ctrl+W", .id = 928, .command = "pri "},
    {.path = "&View > &Print", .hint = "Turn printer on or off", .accelerator = "ctrl+P", .id = 953, .command = "print"},
    {.path = "&Select > &Next", .hint = "Specify the next branch to synthesize", .accelerator = "ctrl+N", .id = 931, .command = "next"},
    {.path = "&Select > &Delete", .hint = "Delete the last section", .accelerator = "ctrl+D", .id = 929, .command = "del"},
    {.path = "&Select > &Restart", .hint = "Restart the synthesis", .accelerator = "ctrl+R", .id = 954, .command = "rest"},
    {.path = "&Select > &End", .hint = "Synthesis is done", .accelerator = "ctrl+E", .id = 930, .command = "fini"},
    {.path = "&Help > &Help", .hint = "Help about Kavrel", .accelerator = "F1", .id = 934, .action = MenuAction::help},
    {.path = "&Help > H&elp on help", .hint = "Help about the operation of the help system", .id = 933, .action = MenuAction::help_on_help},
    {.path = "&Help > &About Kavrel", .id = 935, .action = MenuAction::about},
}};
// clang-format on

}  // namespace kavrel
