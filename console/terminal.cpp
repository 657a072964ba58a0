#include "console/terminal.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <iostream>

#include <editline/readline.h>
#include <fmt/format.h>

#include "console/form_verbs.h"
#include "shell/fixed_text.h"
#include "shell/menu.h"
#include "shell/number_text.h"
#include "shell/shown_text.h"

namespace kavrel {

namespace {

std::string_view first_word(std::string_view text) {
    text = trim(text);
    return text.substr(0, text.find(' '));
}

}  // namespace

std::optional<std::string> Terminal::ask(const std::string& prompt) {
    clear_progress();
    transcript().screen.flush();
    transcript().report.flush();
    char* typed = nullptr;
    do {
        if (dismissed()) return std::nullopt;
        if (interrupted()) signals()->forget();
        errno = 0;
        typed = readline(prompt.c_str());
        if (typed == nullptr) std::cout << '\n';
        // Interrupted it gives no line either: by Ctrl-C, or by Ctrl-Z where no shell could stop the program.
    } while (typed == nullptr && errno == EINTR);
    if (typed == nullptr) return std::nullopt;
    last_breath_ = std::chrono::steady_clock::now();
    std::string line(typed);
    if (!trim(line).empty()) add_history(typed);
    std::free(typed);  // NOLINT: readline gives it with malloc
    return std::string(trim(line));
}

void Terminal::show_line(std::string_view line) {
    clear_progress();
    ConsoleWindow::show_line(line);
}

bool Terminal::dismissed() const { return interrupted() && signals()->caught() != SIGINT; }

void Terminal::clear_progress() {
    if (progress_shown_) transcript().screen << "\r\x1b[K";
    progress_shown_ = false;
}

bool Terminal::progress(std::string_view work, int done, int total) {
    constexpr std::chrono::milliseconds breath(100);
    const auto now = std::chrono::steady_clock::now();
    if (now - last_breath_ < breath) return !interrupted();
    last_breath_ = now;
    transcript().screen << fmt::format("\r{} {}{} (Ctrl-C stops)", work, done,
                                       total > 0 ? fmt::format(" of {}", total) : "")
                        << std::flush;
    progress_shown_ = true;
    return !interrupted();
}

void Terminal::set_menu(std::span<const MenuItem> menu, std::string_view title) {
    menu_ = menu;
    title_ = title;
    open_.clear();
}

Answer Terminal::message(std::string_view text, std::string_view caption, Buttons buttons) {
    if (scripted_) return ConsoleWindow::message(text, caption, buttons);
    clear_progress();
    transcript().screen << fmt::format("[{}] {}\n", caption, text);
    if (buttons == Buttons::ok) return Answer::ok;
    const Answer usual = caption == "Question" ? Answer::yes : Answer::no;
    while (true) {
        const auto typed = ask(usual == Answer::yes ? "yes or no [yes]: " : "yes or no [no]: ");
        if (!typed || typed->empty()) return usual;
        if (same_label(*typed, "yes") || same_label(*typed, "y")) return Answer::yes;
        if (same_label(*typed, "no") || same_label(*typed, "n")) return Answer::no;
    }
}

int Terminal::choose(const ChoiceBox& box) {
    if (scripted_) return ConsoleWindow::choose(box);
    transcript().screen << fmt::format("[{}] {}\n", box.caption, box.text);
    for (std::size_t i = 0; i < box.choices.size(); ++i) {
        transcript().screen << fmt::format("  {} {}\n", i + 1, box.choices[i]);
    }
    while (true) {
        const auto typed = ask("number or label [cancel]: ");
        if (!typed || typed->empty() || same_label(*typed, "cancel")) return 0;
        const auto number = parse_integer(*typed);
        for (std::size_t i = 0; i < box.choices.size(); ++i) {
            const int here = static_cast<int>(i) + 1;
            if (number ? *number == here : same_label(*typed, box.choices[i])) return here;
        }
    }
}

std::string Terminal::choose_file(const FileQuery& query) {
    if (scripted_) return ConsoleWindow::choose_file(query);
    return ask(fmt::format("{} ({}: {}), blank for none: ", query.caption, query.description, query.filter))
        .value_or("");
}

bool Terminal::edit_form(FormSheet& sheet) {
    if (scripted_ || sheet.work_failed()) return ConsoleWindow::edit_form(sheet);
    transcript().screen << fmt::format("-- {} --  blank keeps a value; ok, cancel, back; ? explains\n",
                                       sheet.form().title);
    for (std::size_t i = 0; i <= sheet.size();) {
        FieldStep step = FieldStep::next;
        if (i == sheet.size()) {
            step = ask_end(sheet);
            if (step == FieldStep::next) continue;
        } else if (sheet.field(i).kind == FieldKind::heading) {
            transcript().screen << "  " << sheet.field(i).label << '\n';
        } else if (sheet.is_on(i)) {
            step = ask_field(sheet, i);
        }
        if (step == FieldStep::cancel) return false;
        if (step == FieldStep::accept) return true;
        if (step == FieldStep::next) {
            ++i;
            continue;
        }
        do {
            i = i == 0 ? 0 : i - 1;
        } while (i > 0 && (!sheet.is_on(i) || sheet.field(i).kind == FieldKind::heading));
    }
    return true;
}

Terminal::FieldStep Terminal::ask_field(FormSheet& sheet, std::size_t i) {
    const Field& field = sheet.field(i);
    if (field.kind == FieldKind::list) return ask_rows(sheet, i);
    std::string hint = field.kind == FieldKind::button    ? "opens a form: yes or no"
                       : field.kind == FieldKind::flag    ? "yes or no"
                       : field.kind == FieldKind::integer ? fmt::format("{} to {}", field.low, field.high)
                                                          : choices_text(sheet, i);
    if (hint.size() > 60) hint = "? shows the choices";
    const std::string value = field.kind == FieldKind::button ? "no" : shown_text(sheet.shown(i));
    const std::string prompt =
        fmt::format("  {}{} [{}]: ", sheet.label(i), hint.empty() ? "" : fmt::format(" ({})", hint), value);
    while (true) {
        const auto typed = ask(prompt);
        if (!typed || *typed == "cancel") return FieldStep::cancel;
        if (typed->empty()) return FieldStep::next;
        if (*typed == "ok") return FieldStep::accept;
        if (*typed == "back") return FieldStep::back;
        if (*typed == "?" || *typed == "fields") {
            transcript().screen << form_text(sheet);
        } else if (field.kind == FieldKind::button) {
            if (!same_label(*typed, "no")) sheet.press(i);
            return FieldStep::next;
        } else {
            const std::string wrong = sheet.enter(i, *typed);
            if (wrong.empty()) return FieldStep::next;
            transcript().screen << "  " << wrong << '\n';
        }
    }
}

Terminal::FieldStep Terminal::ask_rows(FormSheet& sheet, std::size_t i) {
    FormFiller filler(sheet);
    transcript().screen << form_text(sheet) << "  rows are added; clear empties the list"
                        << (sheet.form().reads_file ? ", file reads it\n" : "\n");
    while (true) {
        const auto typed = ask(fmt::format("  row {}: ", *sheet.list(i).rows + 1));
        if (!typed || *typed == "cancel") return FieldStep::cancel;
        if (typed->empty()) return FieldStep::next;
        if (*typed == "ok") return FieldStep::accept;
        if (*typed == "back") return FieldStep::back;
        if (*typed == "file" && sheet.form().reads_file) {
            sheet.read_rows(i);
        } else if (*typed == "clear") {
            sheet.clear_rows(i);
        } else {
            const auto words = words_of_free_format(*typed);
            const std::vector<std::string> cells(words.begin(), words.end());
            const bool is_row =
                std::ranges::all_of(cells, [](const auto& cell) { return parse_quantity(cell, {}).has_value(); });
            const std::string wrong =
                is_row ? sheet.append_typed_row(i, cells) : fmt::format("'{}' is no row of numbers", *typed);
            if (!wrong.empty()) transcript().screen << "  " << wrong << '\n';
        }
    }
}

Terminal::FieldStep Terminal::ask_end(FormSheet& sheet) {
    const auto typed = ask("  ok, cancel, back, or a field to change [ok]: ");
    if (!typed || *typed == "cancel") return FieldStep::cancel;
    if (typed->empty() || *typed == "ok") return FieldStep::accept;
    if (*typed == "back") return FieldStep::back;
    if (*typed == "?" || *typed == "fields") {
        transcript().screen << form_text(sheet);
        return FieldStep::next;
    }
    const int found = find_field(sheet, *typed);
    if (found < 0) {
        transcript().screen << fmt::format("  there is no field '{}'\n", *typed);
        return FieldStep::next;
    }
    const FieldStep step = ask_field(sheet, static_cast<std::size_t>(found));
    return step == FieldStep::back ? FieldStep::next : step;
}

std::vector<std::string> Terminal::labels_here() const {
    std::vector<std::string> labels;
    const auto level = open_.size();
    for (const MenuItem& item : menu_) {
        const bool inside = std::ranges::all_of(open_, [&, at = 0](const std::string& label) mutable {
            return same_label(path_label(item.path, at++), label);
        });
        if (!inside || path_depth(item.path) <= static_cast<int>(level)) continue;
        const std::string label = plain_label(path_label(item.path, static_cast<int>(level)));
        if (std::ranges::find(labels, label) == labels.end()) labels.push_back(label);
    }
    return labels;
}

void Terminal::show_menu() {
    std::string head = title_;
    for (const auto& label : open_) head += " > " + label;
    transcript().screen << head << '\n';
    const auto labels = labels_here();
    for (std::size_t i = 0; i < labels.size(); ++i) {
        auto path = open_;
        path.push_back(labels[i]);
        const MenuItem* item = find_item(menu_, path);
        transcript().screen << fmt::format("  {:>2} {:<20} {}\n", i + 1, labels[i] + (item == nullptr ? " >" : ""),
                                           item == nullptr ? "" : item->hint);
    }
}

void Terminal::follow(const std::string& typed, Runner& runner) {
    const auto labels = labels_here();
    const auto number = parse_integer(typed);
    for (std::size_t i = 0; i < labels.size(); ++i) {
        if (number ? *number != static_cast<int>(i) + 1 : !same_label(typed, labels[i])) continue;
        auto path = open_;
        path.push_back(labels[i]);
        if (find_item(menu_, path) == nullptr) {
            open_ = path;
            show_menu();
        } else {
            open_.clear();
            runner.choose(path);
        }
        return;
    }
    transcript().screen << fmt::format("'{}' is neither a menu item nor a verb; a blank line shows the menu\n", typed);
}

void Terminal::perform_typed(const ScriptLine& line, Runner& runner) {
    set_current(line);
    if (line.verb() != "include") {
        runner.perform(line);
    } else if (include(line)) {
        scripted_ = true;
        runner.run();
        scripted_ = false;
    }
}

void Terminal::converse(Workbench& bench, Runner& runner) {
    transcript().screen << fmt::format(
        "Kavrel {}. A blank line shows the menu; a number or a label chooses; .. goes up;\n"
        "the verbs of scripts work, too; quit ends.\n",
        KAVREL_VERSION);
    show_menu();
    int number = 0;
    while (!runner.is_over()) {
        const auto typed = ask(fmt::format("{}> ", open_.empty() ? "kavrel" : open_.back()));
        if (!typed) return;
        runner.attempt([&] {
            if (typed->empty() || *typed == "menu" || *typed == "?") {
                show_menu();
            } else if (*typed == "..") {
                if (!open_.empty()) open_.pop_back();
                show_menu();
            } else if (Runner::knows(first_word(*typed))) {
                perform_typed(split_line("<terminal>", ++number, *typed), runner);
            } else {
                set_current(split_line("<terminal>", ++number, *typed));
                follow(*typed, runner);
            }
        });
        settle();
        resume();
        if (bench.session.stopped) return;
    }
}

}  // namespace kavrel
