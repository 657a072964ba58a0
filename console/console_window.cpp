#include "console/console_window.h"

#include <algorithm>
#include <ctime>

#include <fmt/chrono.h>
#include <fmt/format.h>

#include "console/form_verbs.h"
#include "shell/menu.h"
#include "shell/shown_text.h"
#include "shell/whole_file.h"

namespace kavrel {

namespace {

constexpr const char* print_file = "kavrel.prn";

}  // namespace

void ConsoleWindow::show_line(std::string_view line) { transcript_.report << line << '\n'; }

void ConsoleWindow::show_box(std::string_view text, std::string_view caption) {
    transcript_.screen << fmt::format("[{}] {}\n", caption, text);
}

Answer ConsoleWindow::message(std::string_view text, std::string_view caption, Buttons buttons) {
    show_box(text, caption);
    if (is_of_failure(caption)) {
        fail(Failure::line, fmt::format("{}: {}", caption, text));
    }
    const auto answer = take_answer("answer");
    if (!answer) {
        if (buttons == Buttons::ok) return Answer::ok;
        return caption == "Question" && !interrupted() ? Answer::yes : Answer::no;
    }
    const std::string word = answer->rest();
    if (buttons == Buttons::ok) {
        if (same_label(word, "ok")) return Answer::ok;
        // Not for a box with one button: the answer waits for the box it is meant for.
        script_.hand_back(*answer);
        return Answer::ok;
    }
    if (same_label(word, "yes")) return Answer::yes;
    if (!same_label(word, "no")) fail(Failure::script, fmt::format("'{}' is neither yes nor no", word));
    return Answer::no;
}

int ConsoleWindow::choose(const ChoiceBox& box) {
    show_box(box.text, box.caption);
    for (const auto choice : box.choices) transcript_.screen << "    " << choice << '\n';
    const auto answer = take_answer("answer");
    if (!answer || same_label(answer->rest(), "cancel")) return 0;
    const auto chosen =
        std::ranges::find_if(box.choices, [&](auto label) { return same_label(label, answer->rest()); });
    if (chosen != box.choices.end()) return static_cast<int>(chosen - box.choices.begin()) + 1;
    fail(Failure::script, fmt::format("'{}' is none of the choices", answer->rest()));
    return 0;
}

bool ConsoleWindow::edit_form(FormSheet& sheet) {
    if (sheet.work_failed()) return false;
    // The box of a refusal has failed its line only if the form is not corrected in the end.
    std::optional<LineFailure> refusal;
    const bool refused = sheet.refusals() > 0;
    if (refused && is_of_failure(sheet.form().caption) && !failures_.empty()) {
        refusal = std::move(failures_.back());
        failures_.pop_back();
    }
    FormFiller filler(sheet);
    const auto leave = [&] {
        if (refusal) {
            failures_.push_back(std::move(*refusal));
        } else if (refused) {
            fail(Failure::line, fmt::format("{} was refused", sheet.form().name));
        }
        return false;
    };
    while (settle()) {
        const auto line = next_line();
        if (!line || !is_form_verb(line->verb())) {
            if (line) script_.hand_back(*line);
            return refused || interrupted() ? leave() : true;
        }
        begin(*line);
        if (!line->wrong.empty()) continue;
        const FormStep step = filler.perform(*line, transcript_.screen);
        if (!step.wrong.empty()) fail(Failure::script, step.wrong);
        if (step.closed && step.wrong.empty()) return step.accepted ? true : leave();
    }
    return leave();
}

std::string ConsoleWindow::choose_file(const FileQuery& query) {
    transcript_.screen << fmt::format("[{}] {} ({})\n", query.caption, query.description, query.filter);
    const auto answer = take_answer("file");
    return answer ? answer->rest() : std::string{};
}

void ConsoleWindow::set_menu(std::span<const MenuItem>, std::string_view title) {
    if (!transcript_.options.quiet) transcript_.screen << "== " << title << '\n';
}

void ConsoleWindow::show_plot(const PlotWindow& plot) {
    plot_ = plot;
    has_plot_ = true;
}

PrintOutcome ConsoleWindow::print_page(const PrintPage& page) {
    std::string text;
    for (const auto& line : page.lines) text += line + '\n';
    text += '\f';
    transcript_.screen << fmt::format("[{}] a page of {} lines to {}\n", page.job, page.lines.size(), print_file);
    return append_to_file(print_file, text) ? PrintOutcome::printed : PrintOutcome::failed;
}

void ConsoleWindow::view_text(std::string_view name, std::string_view text) {
    transcript_.screen << "== " << name << '\n' << text;
    if (!text.empty() && text.back() != '\n') transcript_.screen << '\n';
}

bool ConsoleWindow::open_help(std::string_view page) {
    for (const auto& folder : manual_folders_) {
        const std::string name = fmt::format("{}/{}.md", folder, page);
        if (const WholeFile text = read_whole(name)) {
            view_text(name, *text);
            return true;
        }
    }
    return false;
}

std::string ConsoleWindow::date_and_time() {
    if (!transcript_.options.date.empty()) return transcript_.options.date;
    return fmt::format("{:%Y-%m-%d %H:%M:%S}", fmt::localtime(std::time(nullptr)));
}

bool ConsoleWindow::progress(std::string_view, int, int) { return !interrupted(); }

bool ConsoleWindow::own_event(int item_id) {
    if (item_id != close_window_event) return false;
    close();
    return true;
}

std::optional<ScriptLine> ConsoleWindow::next_line() {
    while (!ended_ && !interrupted()) {
        auto line = script_.next();
        if (!line || line->verb() != "include") return line;
        echo(*line);
        if (!include(*line)) settle();
    }
    return std::nullopt;
}

bool ConsoleWindow::include(const ScriptLine& line) {
    Included included;
    if (!line.wrong.empty()) {
        included = {line.failure, std::string(line.wrong)};
    } else if (line.words.size() < 2) {
        included = {Failure::script, "'include' needs more words"};
    } else {
        included = script_.include(line, line.rest());
    }
    if (included.failure != Failure::none) fail(included.failure, included.text);
    return included.failure == Failure::none;
}

void ConsoleWindow::echo(const ScriptLine& line) {
    current_ = line.where();
    if (!transcript_.options.quiet) transcript_.screen << shown_text("> " + line.text + '\n', ShownAs::lines);
}

void ConsoleWindow::begin(const ScriptLine& line) {
    echo(line);
    if (!line.wrong.empty()) fail(line.failure, std::string(line.wrong));
}

std::optional<ScriptLine> ConsoleWindow::take_line() {
    auto line = next_line();
    if (line) begin(*line);
    return line;
}

std::optional<ScriptLine> ConsoleWindow::take_answer(std::string_view verb) {
    auto line = next_line();
    if (line && line->verb() == verb) {
        begin(*line);
        return line;
    }
    if (line) script_.hand_back(std::move(*line));
    return std::nullopt;
}

void ConsoleWindow::fail(Failure failure, std::string text) {
    failures_.push_back({failure, current_, std::move(text)});
}

bool ConsoleWindow::settle() {
    for (const LineFailure& failed : failures_) {
        const std::string place = failed.where.empty() ? "" : failed.where + ": ";
        transcript_.errors << shown_text(place + failed.text + '\n', ShownAs::lines);
        if (first_failure_ == Failure::none) first_failure_ = failed.failure;
    }
    const bool unheard = !transcript_.report || !transcript_.screen;
    if (interrupted() || unheard || (!failures_.empty() && !transcript_.options.keep_going)) {
        ended_ = true;
        script_.end();
    }
    failures_.clear();
    return !ended_;
}

}  // namespace kavrel
