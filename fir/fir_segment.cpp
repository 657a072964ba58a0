#include "fir/fir_segment.h"

#include <utility>

#include "fir/command_tools.h"
#include "fir/factor_commands.h"
#include "fir/file_commands.h"
#include "fir/fir_rows.h"
#include "fir/frequency_commands.h"
#include "fir/level_edits.h"
#include "fir/program_command.h"
#include "fir/report_commands.h"
#include "fir/time_commands.h"
#include "fir/truncation_command.h"
#include "segment/result_commands.h"
#include "shell/edited.h"

namespace kavrel {

namespace {

constexpr CommandKeyword read_word("read"), show_word("show");

void read(FirDesk& desk) { read_fir_file(desk, false); }

constexpr CommandTable commands({
    Command<FirDesk>{"read", read},
    {"show", show_function, needs_function_to_show},
    {"time", analyse_time, needs_function_to_analyze},
    {"trun", truncate, needs_function_to_truncate},
    {"freq", analyse_frequency, needs_function_to_analyze},
    {"fac ", factor_function, needs_filter},
    {"flip", flip_factors, needs_factors},
    {"prf ", print_factors, needs_factors},
    {"sqr ", cascade_with_itself, needs_filter},
    {"mult", multiply_factors, needs_factors},
    {"scal", edit_function<scale_to_one>, needs_function},
    {"save", save_fir_file, needs_filter},
    {"pltf", plot_frequency, needs_frequency_results},
    {"add ", add_factor, needs_factors},
    {"del ", delete_factor, needs_factors},
    {"sto ", store_filter, needs_filter},
    {"rcl ", recall_filter, [](const FirDesk& desk) { return cannot_recall(desk); }},
    {"ch  ", change_factor, needs_factors},
    {"lbl ", change_title, needs_filter},
    {"file", write_text_report, needs_filter},
    {"prog", write_program, needs_function},
    {"ffac", write_factors, needs_factors},
    {"undo", undo_edit, [](const FirDesk& desk) { return cannot_undo(desk.state.kept); }},
    {"pri ", choose_print},
    {"pltt", plot_time, needs_time_results},
    {"tabf", tabulate_frequency, needs_frequency_results},
    {"tabt", tabulate_time, needs_time_results},
    {"plpr", [](FirDesk& desk) { print_plot_window(desk); }},
    {"clr ", clear_functions, needs_filter},
    {"disp", display_design, needs_filter},
    {"redo", redo_edit, [](const FirDesk& desk) { return cannot_redo(desk.state.kept); }},
    {"flat", edit_function<add_flat_gain>, needs_function},
    {"min ", make_minimum_phase, needs_factors},
    {"rset", return_to_first, needs_filter},
});

using Functions = std::vector<Fingerprint>;  // one a function
Functions functions_of(const FirFilter& filter);
void report_missed(FirDesk& desk, int n);

}  // namespace

CommandWords fir_words() { return commands.words(); }

std::string_view fir_hindrance(const FirDesk& desk, const CommandKeyword& word) {
    return commands.hindrance(desk, word);
}

void firSegment(FirDesk& desk) {
    int& entry = desk.session.entry(SegmentId::fir);
    CommandKeyword& cell = desk.session.word(SegmentId::fir);
    const bool name_given = entry == fir_entry::stored_filter;
    const Functions before = functions_of(desk.filter);
    const bool another = entry == fir_entry::first_call || cell == read_word, shows = cell == show_word;
    if (entry == fir_entry::first_call) desk.state.shown = desk.command.function_number = 1;
    entry = fir_entry::ordinary_command;
    if (name_given) forget_edits(desk.state.kept);
    if (name_given && cell == read_word) {
        read_fir_file(desk, true);
        cell = {};
    } else {
        commands.run(desk, cell);
    }
    desk.command.title = desk.session.TITLE;
    // Of the function that is shown, and of all that a command has made or changed.
    const int shown = shown_function(desk.filter, desk.state);
    const Functions after = functions_of(desk.filter);
    for (std::size_t i = 0; i < after.size(); ++i) {
        const int n = static_cast<int>(i) + 1;
        const bool appears = n == shown && (another || (shows && desk.command.function_number == n));
        const bool changed = !another && (i >= before.size() || after[i] != before[i]);
        if (appears || changed) report_missed(desk, n);
    }
}

namespace {

Functions functions_of(const FirFilter& filter) {
    Functions functions;
    for (int n = 1; n <= filter.functions; ++n) functions.push_back(fingerprint(filter, n));
    return functions;
}

void report_missed(FirDesk& desk, int n) {
    WindowWatcher watcher(desk.window, check_work);
    Lines lines = missed_lines(check_fir(desk.filter, n, watcher));
    if (lines.empty()) return;
    if (n != shown_function(desk.filter, desk.state)) lines.insert(lines.begin(), edited<"(' Function',I2,':')">(n));
    report_lines(desk, lines);
}

}  // namespace

}  // namespace kavrel
