#include "shell/reporter.h"

#include "shell/shown_text.h"
#include "shell/utf8.h"
#include "shell/whole_file.h"

namespace kavrel {

void Reporter::report_line(std::string_view text) {
    if (!print_.page.empty() && print_.print_mode == PrintMode::screen) send_page();
    while (true) {
        const auto end = text.find('\n');
        const auto piece = utf8_head(text.substr(0, end), line_limit);
        const std::string shown = shown_text(piece, ShownAs::lines);
        window_.show_line(shown);
        journal_.lines.emplace_back(piece);
        print_line(shown);
        if (end == std::string_view::npos) return;
        text.remove_prefix(end + 1);
    }
}

void Reporter::report_lines(std::span<const std::string> lines) {
    for (const std::string& line : lines) report_line(line);
}

Answer Reporter::message(std::string_view text, std::string_view caption, Buttons buttons) {
    return show_message(text, caption, buttons, {});
}

void Reporter::refuse(const Refusal& refusal) {
    show_message(refusal.text, refusal.caption, Buttons::ok, refusal.field);
}

Refusal Reporter::failure_of(const std::function<void()>& work) {
    struct Scope {  // also where the work ends with an exception
        Refusal*& current;
        Refusal* const former;
        ~Scope() { current = former; }
    };
    Refusal failure;
    const Scope scope{failure_, failure_};
    failure_ = &failure;
    work();
    return failure;
}

void Reporter::fail(std::string_view text) {
    if (failure_ != nullptr && failure_->empty()) *failure_ = text;
}

Answer Reporter::show_message(std::string_view text, std::string_view caption, Buttons buttons,
                              std::string_view field) {
    const std::string shown = shown_text(text, ShownAs::lines);
    Answer answer = Answer::ok;
    if (failure_ != nullptr && buttons == Buttons::ok && is_of_failure(caption)) {
        *failure_ = {std::string_view(shown), field};
        window_.refuse_form(shown, caption);
    } else {
        answer = window_.message(shown, caption, buttons);
    }
    journal_.boxes.push_back({std::string(caption), std::string(text),
                              answer == Answer::yes  ? "yes"
                              : answer == Answer::no ? "no"
                                                     : "ok"});
    return answer;
}

int Reporter::choose(const ChoiceBox& box) {
    const int chosen = window_.choose(box);
    journal_.boxes.push_back({std::string(box.caption), std::string(box.text),
                              chosen == 0 ? "cancel" : std::string(box.choices[static_cast<std::size_t>(chosen) - 1])});
    return chosen;
}

void Reporter::view_file(const std::string& name) {
    if (const WholeFile text = read_whole(name)) {
        window_.view_text(shown_text(name), shown_text(*text, ShownAs::lines));
    } else {
        message(complaint_of(text.fault, "File was not found"), "Error");
    }
}

void Reporter::set_print_mode(PrintMode mode, std::string_view file_name) {
    print_.print_mode = mode;
    print_.file_name = file_name;
}

void Reporter::print_line(std::string_view piece) {
    if (print_.print_mode == PrintMode::file) {
        if (append_to_file(print_.file_name, std::string(piece) + '\n')) return;
        print_.print_mode = PrintMode::screen;
        message("File could not be written", "Error");
    } else if (print_.print_mode == PrintMode::printer) {
        if (print_.page.size() == page_full) send_page();
        if (print_.print_mode == PrintMode::printer) print_.page.emplace_back(utf8_head(piece, page_width));
    }
}

void Reporter::send_page() {
    const std::vector<std::string> page = std::move(print_.page);
    print_.page.clear();
    const PrintOutcome outcome =
        window_.print_page({.job = "Printing", .quality = 1024, .font = "MS LineDraw", .lines = page});
    if (outcome == PrintOutcome::printed) return;
    print_.print_mode = PrintMode::screen;
    if (outcome == PrintOutcome::failed) message("Printer is not available", "Error");
}

}  // namespace kavrel
