#include "passive/command_tools.h"

#include <algorithm>

#include "circuit/drawing.h"
#include "circuit/performance_table.h"
#include "shell/utf8.h"

namespace kavrel {

namespace {

// A row of lines may tell a value, a resonance and an impedance of their equivalent, more than the report takes: then
// blanks give way, the widest gap behind the drawing first, so that no number loses its end. The label of the impedance
// stays whole.
std::string fitted(std::string_view row) {
    constexpr std::size_t drawing_width = 18;
    if (utf8_length(trim_right(row)) <= Reporter::line_limit) return std::string(row);
    std::string text(trim_right(row));
    const std::size_t from = utf8_head(text, drawing_width).size();
    while (utf8_length(text) > Reporter::line_limit) {
        std::size_t widest = 1, place = 0;
        for (std::size_t i = from; i < text.size();) {
            const std::size_t end = text.find_first_not_of(' ', i);
            if (end - i > widest && text[end] != 'z') {
                widest = end - i;
                place = i;
            }
            i = std::min(text.find(' ', end), text.size());
        }
        if (place == 0) break;
        text.erase(place, 1);
    }
    return text;
}

}  // namespace

void refuse(PassiveDesk& desk, std::string_view text) { desk.reporter.message(text, "Error"); }

void tell_done(PassiveDesk& desk) {
    if (desk.state.suppress) {
        desk.reporter.report_line(analysis_done);
    } else {
        desk.reporter.message(analysis_done, analysis_done_caption);
    }
}

void report_lines(PassiveDesk& desk, std::span<const std::string> lines) {
    for (const std::string& line : lines) desk.reporter.report_line(line);
}

void show_circuit(PassiveDesk& desk) {
    for (const std::string& row : showCircuit(desk.filter.circuit, desk.state.lastBranch, desk.session.units)) {
        desk.reporter.report_line(fitted(row));
    }
    desk.state.lastBranch = 1;
}

std::optional<std::string> ask_file(PassiveDesk& desk, const FileQuery& query) {
    std::string name = desk.window.choose_file(query);
    if (!name.empty()) return name;
    desk.reporter.message("CANCEL", "Warning");
    return std::nullopt;
}

void write_text(PassiveDesk& desk, const std::string& path, std::string_view text) {
    if (write_whole(path, text)) {
        tell_done(desk);
    } else {
        refuse(desk, "File could not be written");
    }
}

void write_lines(PassiveDesk& desk, std::span<const std::string> lines, ExtSlot slot) {
    const std::string filter = "*" + std::string(trim_right(EXT(static_cast<int>(slot))));
    const auto name =
        ask_file(desk, {.caption = select_file, .description = "Text files", .filter = filter, .to_write = true});
    if (name) write_text(desk, file_name(*name, slot), joined_lines(lines));
}

std::string joined_lines(std::span<const std::string> lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += line;
        text += '\n';
    }
    return text;
}

bool wishes_original(PassiveDesk& desk, std::string_view what) {
    if (desk.filter.mod == 0.0F) return true;
    const std::string text =
        std::string(what) + " is for the original filter, not the current (modified) one \nWish to continue?";
    return desk.reporter.message(text, "Question", Buttons::yes_no) == Answer::yes;
}

}  // namespace kavrel
