#include "segment/desk.h"

#include "shell/shown_text.h"

namespace kavrel {

void refuse(Desk& desk, const Refusal& refusal) { desk.reporter.refuse(refusal); }

void report_done(Desk& desk) { desk.reporter.message(command_done, "Success"); }

void report_lines(Desk& desk, std::span<const std::string> lines) { desk.reporter.report_lines(lines); }

bool wishes_original(Desk& desk, std::string_view what) {
    const std::string text =
        std::string(what) + " is for the original filter, not the current (modified) one \nWish to continue?";
    return desk.reporter.message(text, "Question", Buttons::yes_no) == Answer::yes;
}

bool wants_table(Desk& desk) { return desk.reporter.message("Tabulate?", "Question", Buttons::yes_no) == Answer::yes; }

std::optional<std::string> ask_file(Desk& desk, const FileQuery& query) {
    std::string name = desk.window.choose_file(query);
    if (!name.empty()) return name;
    desk.reporter.message("CANCEL", "Warning");
    return std::nullopt;
}

bool write_text(Desk& desk, std::string_view typed, const std::string& name, std::string_view text,
                std::string_view failure) {
    const WriteVerdict verdict = write_known(desk.session, desk.reporter, typed, name, text);
    if (verdict == WriteVerdict::not_written) refuse(desk, failure);
    return verdict == WriteVerdict::written;
}

bool write_lines(Desk& desk, std::span<const std::string> lines, ExtSlot slot) {
    const std::string filter = "*" + std::string(trim_right(EXT(static_cast<int>(slot))));
    const auto name =
        ask_file(desk, {.caption = select_file, .description = "Text files", .filter = filter, .to_write = true});
    return name && write_text(desk, *name, file_name(*name, slot), joined_lines(lines));
}

std::string joined_lines(std::span<const std::string> lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += shown_text(line);
        text += '\n';
    }
    return text;
}

}  // namespace kavrel
