// Recording of a macro: a script for an outside tool that chooses the same menu items again and types the same answers.
//
// Each command adds the lines
//
//     WinWaitExist ("Kavrel - PASSIVE", 2)
//     SendMenusTo ("Kavrel", "Branch Delete")
//     WinWaitExist ("<New Passive", 2)            only where a form has to be filled in:
//     SendKey (" 4 ~")                            "~" is the return key, "{TAB}" goes to the next field
//
// Keys are put together from fixed texts, branch numbers in I2 (100 as it is) and values as they were typed, in
// 1P,D14.6 or 1P,E14.6.
#pragma once

#include <string>
#include <string_view>

#include "passive/passive_desk.h"

namespace kavrel {

// What one command adds. Without keys no form is waited for.
struct MacroStep {
    std::string_view menu;  // path of the item: "Branch Delete"
    std::string keys = {};
    std::string further = {};  // lines behind these
    bool close = false;  // of Norton transformations: no blank before a parenthesis but where a form is waited for
};

[[nodiscard]] std::string macro_branch(int branch);
[[nodiscard]] std::string macro_value_d(double value);
[[nodiscard]] std::string macro_value_e(double value);
[[nodiscard]] std::string macro_wait_line(std::string_view window);
[[nodiscard]] std::string macro_key_line(std::string_view keys);
inline constexpr std::string_view macro_tab = " {TAB} ";
inline constexpr std::string_view macro_return = " ~";

[[nodiscard]] std::string macro_lines(const MacroStep& step);

// Adds a command's lines to the file while a macro is being recorded. A file that cannot be written ends the recording,
// with its message.
void record_macro(PassiveDesk& desk, const MacroStep& step);

// "writ": asks for a file's name and starts recording into it, display being suppressed first. A macro that is being
// recorded is closed before.
void start_macro(PassiveDesk& desk);

// "clos": display on again, a last show, and the end of the recording.
void stop_macro(PassiveDesk& desk);

// "Play": the program that plays macros is another one; the script is shown in the text viewer, from where it can be
// handed over.
void play_macro(PassiveDesk& desk);

}  // namespace kavrel
