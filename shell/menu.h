// Menus and command words as data.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace kavrel {

struct Form;

// What an item does that no command of a Segment does.
enum class MenuAction : int {
    none = 0,
    view_text,
    close_text_view,
    recall_filter,
    choose_units,
    new_filter_design,
    recall_filter_design,
    new_delay_design,
    recall_delay_design,
    new_fir_design,
    recall_fir_design,
    new_analysis,
    recall_analysis,
    new_fir_analysis,
    recall_fir_analysis,
    new_design,  // of the kind of the last one
    save_as,
    play_macro,
    multiply_selected,
    copy,
    stop,
    help,
    help_on_help,
    about,
};

// A row of a menu table. The tree is in the paths: "&File > &Open" is in the submenu "&File"; an ampersand marks
// the access key. Rows of one submenu follow each other, in the order in which they are shown.
struct MenuItem {
    std::string_view path;
    std::string_view hint = {};            // shown while the item is selected
    std::string_view accelerator = {};     // "ctrl+O", "CTRL+F2", "F1", or blank
    int id = 0;                            // what `dispatch_event` is given
    std::string_view command = {};         // the word it leaves in its Segment's cell
    const Form* form = nullptr;            // the form that the command asks for first
    MenuAction action = MenuAction::none;  // goes before the command, where the Segment has it
};

// A button of the toolbar: it sends the event of a menu item.
struct ToolbarItem {
    int id = 0;
    std::string_view tip;  // shown while the pointer rests on it
};

// The labels of a path, its ampersands kept: "&File > &Open" has 2.
[[nodiscard]] int path_depth(std::string_view path);
[[nodiscard]] std::string_view path_label(std::string_view path, int level);  // level from 0

// A label as it reads: without ampersands.
[[nodiscard]] std::string plain_label(std::string_view label);

// Two texts alike but for case, ampersands, blanks at their ends and the length of runs of blanks.
[[nodiscard]] bool same_label(std::string_view a, std::string_view b);

// The item whose path has just these labels, or null. `opens_submenu`: whether labels lead only to a submenu.
[[nodiscard]] const MenuItem* find_item(std::span<const MenuItem> menu, std::span<const std::string> labels);
[[nodiscard]] const MenuItem* find_item(std::span<const MenuItem> menu, int id);
[[nodiscard]] bool opens_submenu(std::span<const MenuItem> menu, std::span<const std::string> labels);

// The item that a key belongs to ("ctrl+F2", in any case): of several items of one menu with the same accelerator the
// first keeps the key. Null when no item has it.
[[nodiscard]] const MenuItem* accelerator_owner(std::span<const MenuItem> menu, std::string_view accelerator);

}  // namespace kavrel
