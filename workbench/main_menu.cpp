#include "shell/window_layer.h"
#include "workbench/events.h"
#include "workbench/menus.h"

namespace kavrel {

// A row a line.
// clang-format off
constexpr std::array<MenuItem, 18> main_menu = {{
    {.path = "&File > &Open", .hint = "Open a text file to view", .id = 129, .action = MenuAction::view_text},
    {.path = "&File > &Recall", .hint = "Recall a saved filter file", .id = recall_filter_event, .action = MenuAction::recall_filter},
    {.path = "&File > Circuit", .hint = "Recall a saved filter transfer text file", .id = 195},
    {.path = "&File > &Global units", .hint = "Select preferred frequency & other units", .id = 143, .action = MenuAction::choose_units},
    {.path = "&File > E&xit", .hint = "Exit the program.", .id = close_window_event},
    {.path = "&Design > &Filter > &New", .hint = "Start a new design.", .id = 166, .action = MenuAction::new_filter_design},
    {.path = "&Design > &Filter > &Recall", .hint = "Recall a previous design data set.", .id = 167, .action = MenuAction::recall_filter_design},
    {.path = "&Design > &Delayline/equ. > &New", .hint = "Start a new design.", .id = 135, .action = MenuAction::new_delay_design},
    {.path = "&Design > &Delayline/equ. > &Recall", .hint = "Recall a previous design data set.", .id = 136, .action = MenuAction::recall_delay_design},
    {.path = "&Design > F&IR Filter > &New", .hint = "Start a new design.", .id = 1031, .action = MenuAction::new_fir_design},
    {.path = "&Design > F&IR Filter > &Recall", .hint = "Recall a previous design data set", .id = 1032, .action = MenuAction::recall_fir_design},
    {.path = "&Analysis > &Filter > &New", .hint = "Start a new analysis.", .id = 149, .action = MenuAction::new_analysis},
    {.path = "&Analysis > &Filter > &Recall", .hint = "Recall a previous analysis data set.", .id = 169, .action = MenuAction::recall_analysis},
    {.path = "&Analysis > F&IR filter > &New", .hint = "Start a new analysis.", .id = 152, .action = MenuAction::new_fir_analysis},
    {.path = "&Analysis > F&IR filter > &Recall", .hint = "Recall a previous analysis data set.", .id = 170, .action = MenuAction::recall_fir_analysis},
    {.path = "&Help > &Help", .hint = "Help about Kavrel", .id = 159, .action = MenuAction::help},
    {.path = "&Help > H&elp on help", .hint = "Help about the operation of the help system", .id = 141, .action = MenuAction::help_on_help},
    {.path = "&Help > &About Kavrel", .hint = "What can you tell me about this program", .id = 142, .action = MenuAction::about},
}};

constexpr std::array<MenuItem, 1> main_window_items = {{
    {.path = "&Close", .hint = "Close the text viewer", .id = 131, .action = MenuAction::close_text_view},
}};
// clang-format on

constexpr std::array<ToolbarItem, 6> main_toolbar = {{
    {.id = 129, .tip = "Open a text file to view"},
    {.id = recall_filter_event, .tip = "Recall a saved filter file"},
    {.id = 142, .tip = "About Kavrel " KAVREL_VERSION},
    {.id = 166, .tip = "Start a new design."},
    {.id = 143, .tip = "Select preferred frequency & other units"},
    {.id = 159, .tip = "Help about Kavrel"},
}};

}  // namespace kavrel
