#include "passive/macro_file.h"

#include <algorithm>

#include "passive/command_tools.h"
#include "passive/hindrances.h"
#include "shell/edit.h"
#include "shell/edited.h"
#include "shell/whole_file.h"

namespace kavrel {

namespace {

constexpr std::string_view extension = ".wbt";
constexpr std::string_view file_filter = "*.wbt";
constexpr std::string_view file_description = "Macro files";
constexpr std::string_view segment_window = "Kavrel - PASSIVE";
constexpr std::string_view form_window = "<New Passive";
constexpr std::string_view view_suppress = "View Suppress";
constexpr std::string_view view_show = "View Show";

std::string send_menus(std::string_view menu) { return "SendMenusTo (\"Kavrel\", \"" + std::string(menu) + "\")\n"; }

std::string display_lines(std::string_view keys);
void append(PassiveDesk& desk, std::string_view text);
void close_macro(PassiveDesk& desk);

}  // namespace

std::string macro_branch(int branch) {
    return edit_i(branch, std::max(2, static_cast<int>(std::to_string(branch).size())));
}
std::string macro_value_d(double value) { return edited<"(1P,D14.6)">(value); }
std::string macro_value_e(double value) { return edited<"(1P,E14.6)">(value); }

std::string macro_wait_line(std::string_view window) { return "WinWaitExist (\"" + std::string(window) + "\", 2)\n"; }
std::string macro_key_line(std::string_view keys) { return "SendKey (\"" + std::string(keys) + "\")\n"; }

std::string macro_lines(const MacroStep& step) {
    const auto written = [&](std::string line) {
        if (step.close) line.erase(line.find(" ("), 1);
        return line;
    };
    std::string lines = written(macro_wait_line(segment_window)) + written(send_menus(step.menu));
    if (!step.keys.empty()) lines += macro_wait_line(form_window) + written(macro_key_line(step.keys));
    return lines + step.further;
}

void record_macro(PassiveDesk& desk, const MacroStep& step) {
    if (desk.state.recording) append(desk, macro_lines(step));
}

void start_macro(PassiveDesk& desk) {
    const auto typed = ask_file(
        desk, {.caption = select_file, .description = file_description, .filter = file_filter, .to_write = true});
    if (!typed) return;
    const std::string name = std::string(file_stem(*typed)) + std::string(extension);
    if (!may_write(desk.session, desk.reporter, *typed, name)) return;
    if (desk.state.recording) close_macro(desk);
    const std::string head = display_lines("{UP} ~") + "IntControl (35, 100, 0, 0, 0)\n";
    desk.state.macro_file.assign(name);
    const auto mark = desk.state.macro_file.trimmed() == name ? write_whole(name, head) : std::nullopt;
    desk.state.recording = mark.has_value();
    mark ? note_written(desk.session, name, *mark) : refuse(desk, "File could not be opened");
}

void stop_macro(PassiveDesk& desk) {
    if (const auto why = cannot_stop_macro(desk); !why.empty()) return refuse(desk, why);
    close_macro(desk);
}

void play_macro(PassiveDesk& desk) {
    const auto name =
        ask_file(desk, {.caption = "Select a macro", .description = file_description, .filter = file_filter});
    if (name) desk.reporter.view_file(*name);
}

namespace {

// Chooses one of the two buttons of "View Suppress", whose form is there at once.
std::string display_lines(std::string_view keys) {
    return macro_wait_line(segment_window) + send_menus(view_suppress) + macro_key_line(keys);
}

void append(PassiveDesk& desk, std::string_view text) {
    const std::string name = desk.state.macro_file.text();
    if (append_to_file(name, text)) return note_written(desk.session, name, state_of_file(name).mark);
    desk.state.recording = false;
    refuse(desk, "File could not be written");
}

void close_macro(PassiveDesk& desk) {
    append(desk, display_lines("{DOWN} ~") + macro_wait_line(segment_window) + send_menus(view_show));
    desk.state.recording = false;
}

}  // namespace

}  // namespace kavrel
