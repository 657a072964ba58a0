#include "console/runner.h"

#include <algorithm>

#include <fmt/format.h>

#include "console/form_verbs.h"
#include "shell/analysis_plot.h"
#include "shell/known_files.h"
#include "shell/number_text.h"
#include "shell/shown_text.h"
#include "shell/svg_surface.h"
#include "shell/whole_file.h"
#include "workbench/events.h"
#include "workbench/rooms.h"
#include "workbench/shown.h"
#include "workbench/state_json.h"

namespace kavrel {

namespace {

std::string joined(const std::vector<std::string>& labels) {
    std::string text;
    for (const auto& label : labels) text += (text.empty() ? "" : " > ") + label;
    return text;
}

bool is_answer_verb(std::string_view verb) { return is_form_verb(verb) || verb == "answer" || verb == "file"; }

}  // namespace

constexpr Runner::Verb Runner::verbs[] = {
    {"choose", &Runner::choose_line, true}, {"do", &Runner::do_line, true},
    {"dump", &Runner::dump_line, true},     {"table", &Runner::table_line, true},
    {"plot", &Runner::plot_line, true},     {"save-report", &Runner::save_report_line, true},
    {"expect", &Runner::expect_line, true}, {"echo", &Runner::echo_line, false},
    {"check", &Runner::check_line, false},  {"quit", &Runner::quit_line, false},
};

void Runner::run() {
    for (bool more = true; more && window_.settle() && !is_over();) {
        attempt([&] {
            const auto line = window_.take_line();
            more = line.has_value();
            if (line) perform(*line);
        });
    }
    window_.settle();
}

const Runner::Verb* Runner::find(std::string_view verb) {
    const auto found = std::ranges::find(verbs, verb, &Verb::name);
    return found == std::end(verbs) ? nullptr : found;
}

bool Runner::knows(std::string_view verb) { return verb == "include" || find(verb) != nullptr; }

void Runner::perform(const ScriptLine& line) {
    if (!line.wrong.empty()) return;
    const Verb* verb = find(line.verb());
    if (verb == nullptr) {
        window_.fail(Failure::script, is_answer_verb(line.verb())
                                          ? fmt::format("'{}' has nothing to answer", line.verb())
                                          : fmt::format("unknown verb '{}'", line.verb()));
    } else if (verb->has_words && line.words.size() < 2) {
        window_.fail(Failure::script, fmt::format("'{}' needs more words", line.verb()));
    } else {
        const int discontinued = bench_.discontinued_designs;
        const std::size_t boxes = bench_.journal.boxes.size();
        (this->*verb->perform)(line);
        const bool explained =
            std::any_of(bench_.journal.boxes.begin() + static_cast<std::ptrdiff_t>(boxes), bench_.journal.boxes.end(),
                        [](const auto& box) { return box.caption == "Error"; });
        if (bench_.discontinued_designs > discontinued && !explained)
            window_.fail(Failure::line, "design discontinued");
    }
}

void Runner::mark_journal() {
    first_line_ = bench_.journal.lines.size();
    first_box_ = bench_.journal.boxes.size();
}

void Runner::choose_line(const ScriptLine& line) {
    const std::string& first = line.words[1].text;
    if (!first.starts_with('#')) {
        choose(path_of(line));
        return;
    }
    const auto id = parse_integer(std::string_view(first).substr(1));
    if (!id || line.words.size() > 2) {
        window_.fail(Failure::script, fmt::format("'{}' is no item id", line.rest()));
        return;
    }
    mark_journal();
    dispatch_event(bench_, *id);
}

void Runner::choose(const std::vector<std::string>& labels) {
    const auto& own = room_of(bench_.session.segment).menu;
    const auto& main = room_of(SegmentId::main).menu;
    const MenuItem* item = find_item(own, labels);
    if (item == nullptr) item = find_item(main, labels);
    if (item != nullptr) {
        mark_journal();
        dispatch_event(bench_, item->id);
    } else if (opens_submenu(own, labels) || opens_submenu(main, labels)) {
        window_.fail(Failure::script, fmt::format("'{}' only opens a submenu", joined(labels)));
    } else {
        window_.fail(Failure::script, fmt::format("there is no menu item '{}' here", joined(labels)));
    }
}

void Runner::do_line(const ScriptLine& line) {
    const Room& room = room_of(bench_.session.segment);
    const CommandKeyword word(line.words[1].text);
    if (!room.commands().knows(word) || line.words.size() > 2 || line.words[1].text.size() > 4) {
        window_.fail(Failure::script, fmt::format("'{}' is no command of this Segment", line.rest()));
        return;
    }
    const auto sends_word = [&](const MenuItem& item) {
        return !item.command.empty() && CommandKeyword(item.command).padded() == word.padded();
    };
    const auto items = std::ranges::count_if(room.menu, sends_word);
    if (items > 1) {
        window_.fail(Failure::script, fmt::format("several items share the word '{}', use choose", word.trimmed()));
        return;
    }
    mark_journal();
    const auto item = std::ranges::find_if(room.menu, sends_word);
    send_command(bench_, room, word.padded(), items == 0 ? form_of_word(room, word) : item->form);
}

void Runner::write_file(const std::string& name, const std::string& text) {
    if (name == "-") {
        window_.transcript().out << text;
        return;
    }
    window_.transcript().flush();  // the name may be that of one of its streams
    if (!may_write(bench_.session, bench_.reporter, name, name)) return;
    if (const auto mark = write_whole(name, text)) {
        note_known(bench_.session, name, *mark);
    } else {
        window_.fail(Failure::file, fmt::format("'{}' could not be written", name));
    }
}

void Runner::dump(const std::string& file) {
    if (shown_check(bench_).stopped) return window_.fail(Failure::line, std::string(check_stopped));
    write_file(file, state_json(bench_));
}

void Runner::table_line(const ScriptLine& line) {
    const std::string table = table_of_results(bench_);
    if (table.empty()) {
        window_.fail(Failure::line, "No analysis results");
        return;
    }
    write_file(line.rest(), table);
}

void Runner::plot_line(const ScriptLine& line) {
    PlotWindow plot;
    PlotVerdict verdict;
    if (const PlotWindow* open = window_.plot()) {
        plot = *open;
    } else {
        verdict = plot_last_analysis(bench_.results, bench_.session.units, plot);
    }
    plot.earlier = is_earlier(bench_, plot.source);
    if (verdict.ok()) {
        write_file(line.rest(), plot_svg(plot));
    } else {
        window_.fail(Failure::line, std::string(verdict.text));
    }
}

void Runner::save_report_line(const ScriptLine& line) {
    std::string text;
    for (const auto& report_line : bench_.journal.lines) text += shown_text(report_line, ShownAs::lines) + '\n';
    write_file(line.rest(), text);
}

void Runner::expect_line(const ScriptLine& line) {
    if (line.words.size() == 2 && line.words[1].text == "met" && !line.words[1].quoted) return expect_met();
    const std::string wanted = line.rest();
    const auto holds = [&](const std::string& text) { return text.find(wanted) != std::string::npos; };
    const auto& [lines, boxes] = bench_.journal;
    const bool found = std::any_of(lines.begin() + static_cast<std::ptrdiff_t>(first_line_), lines.end(), holds) ||
                       std::any_of(boxes.begin() + static_cast<std::ptrdiff_t>(first_box_), boxes.end(),
                                   [&](const JournalBox& box) { return holds(box.text); });
    if (!found) window_.fail(Failure::line, fmt::format("'{}' was not told", wanted));
}

void Runner::expect_met() {
    const RequestCheck& check = shown_check(bench_);
    if (check.met()) return;
    std::string text = check_summary(check);
    for (const std::string& missed : missed_lines(check)) text += '\n' + missed;
    window_.fail(Failure::line, text);
}

void Runner::check_line(const ScriptLine&) {
    for (const std::string& row : check_table(shown_check(bench_))) window_.transcript().screen << row << '\n';
}

void Runner::echo_line(const ScriptLine& line) {
    window_.transcript().screen << shown_text(line.rest(), ShownAs::lines) << '\n';
}

}  // namespace kavrel
