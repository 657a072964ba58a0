#include "workbench/menus.h"

namespace kavrel {

// A row a line.
// clang-format off
constexpr std::array<MenuItem, 18> main_menu = {{
    {.path = "&File > &Open", .hint = "Open a text file to view", .id = 129},
    {.path = "&File > &Recall", .hint = "Recall a saved filter file", .id = 130},
    {.path = "&File > Circuit", .hint = "Recall a saved filter transfer text file", .id = 195},
    {.path = "&File > &Global units", .hint = "Select preferred frequency & other units", .id = 143},
    {.path = "&File > E&xit", .hint = "Exit the program.", .id = 16385},
    {.path = "&Design > &Filter > &New", .hint = "Start a new design.", .id = 166},
    {.path = "&Design > &Filter > &Recall", .hint = "Recall a previous design data set.", .id = 167},
    {.path = "&Design > &Delayline/equ. > &New", .hint = "Start a new design.", .id = 135},
    {.path = "&Design > &Delayline/equ. > &Recall", .hint = "Recall a previous design data set.", .id = 136},
    {.path = "&Design > F&IR Filter > &New", .hint = "Start a new design.", .id = 1031},
    {.path = "&Design > F&IR Filter > &Recall", .hint = "Recall a previous design data set", .id = 1032},
    {.path = "&Analysis > &Filter > &New", .hint = "Start a new analysis.", .id = 149},
    {.path = "&Analysis > &Filter > &Recall", .hint = "Recall a previous analysis data set.", .id = 169},
    {.path = "&Analysis > F&IR filter > &New", .hint = "Start a new analysis.", .id = 152},
    {.path = "&Analysis > F&IR filter > &Recall", .hint = "Recall a previous analysis data set.", .id = 170},
    {.path = "&Help > &Help", .hint = "Help about Kavrel", .id = 159},
    {.path = "&Help > H&elp on help", .hint = "Help about the operation of the help system", .id = 141},
    {.path = "&Help > &About Kavrel", .hint = "What can you tell me about this program", .id = 142},
}};
// clang-format on

constexpr std::array<ToolbarItem, 6> main_toolbar = {{
    {.id = 129, .tip = "Open a text file to view"},
    {.id = 130, .tip = "Recall a saved filter file"},
    {.id = 142, .tip = "Kavrel for Windows V. 1.70"},
    {.id = 166, .tip = "Start a new design."},
    {.id = 143, .tip = "Select preferred frequency & other units"},
    {.id = 159, .tip = "Help about Kavrel"},
}};

}  // namespace kavrel
