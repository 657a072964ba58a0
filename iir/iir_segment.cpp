#include "iir/iir_segment.h"

#include "iir/command_tools.h"
#include "iir/edits.h"
#include "iir/file_commands.h"
#include "iir/form_commands.h"
#include "iir/frequency_commands.h"
#include "iir/iir_request_check.h"
#include "iir/limit_cycle_command.h"
#include "iir/program_command.h"
#include "iir/report_commands.h"
#include "iir/reverse_frequency.h"
#include "iir/scaling_commands.h"
#include "iir/time_commands.h"
#include "iir/truncation_command.h"
#include "segment/result_commands.h"

namespace kavrel {

namespace {

constexpr CommandKeyword read_word("read");

void read(IirDesk& desk) { read_iir_file(desk, false); }

constexpr CommandTable commands({
    Command<IirDesk>{"freq", analyse_frequency, needs_filter},
    {"time", analyse_time, needs_filter},
    {"asci", write_text_file, needs_filter},
    {"flat", edit<add_flat_loss>, needs_filter},
    {"add ", edit<add_factor>, needs_place_for_factor},
    {"del ", edit<delete_factor>, needs_factor},
    {"trun", truncate, needs_filter},
    {"read", read},
    {"show", show, needs_filter},
    {"perm", edit<permute_factors>, needs_factors_to_permute},
    {"ord ", order_sections, cannot_order},
    {"lim ", report_limit_cycles, needs_cascade},
    {"scal", scale_sections, needs_cascade},
    {"save", save_iir_file, needs_filter},
    {"equ "},
    {"sto ", store_filter},
    {"rcl ", recall_filter, [](const IirDesk& desk) { return cannot_recall(desk, iir_keeping.words); }},
    {"prog", write_program, needs_filter},
    {"par ", make_parallel_form, needs_filter},
    {"des ", draw_section, needs_filter},
    {"disp", display_design, needs_filter},
    {"lbl ", change_title},
    {"dir ", make_direct_form, cannot_make_direct},
    {"tabf", tabulate_frequency, needs_frequency_results},
    {"pz  ", write_pole_zero, needs_roots},
    {"undo", undo_edit, [](const IirDesk& desk) { return cannot_undo(desk.state.kept); }},
    {"lat ", make_lattice_form, cannot_make_lattice},
    {"swc ", write_switched_capacitor, needs_filter},
    {"allp", make_allpass_form, cannot_make_allpass},
    {"pltf", plot_frequency, needs_frequency_results},
    {"plpr", [](IirDesk& desk) { print_plot_window(desk); }},
    {"func", display_function, needs_roots},
    {"pltt", plot_time, needs_time_results},
    {"tabt", tabulate_time, needs_time_results},
    {"pri ", choose_print},
    {"fs  ", edit<resample>, needs_filter},
    {"redo", redo_edit, [](const IirDesk& desk) { return cannot_redo(desk.state.kept); }},
    {"conv", reverse_frequency, needs_filter},
});

void report_missed(IirDesk& desk);

}  // namespace

CommandWords iir_words() { return commands.words(); }

std::string_view iir_hindrance(const IirDesk& desk, const CommandKeyword& word) {
    return commands.hindrance(desk, word);
}

void iirSegment(IirDesk& desk) {
    int& entry = desk.session.entry(SegmentId::iir);
    CommandKeyword& cell = desk.session.word(SegmentId::iir);
    const bool name_given = entry == iir_entry::stored_filter;
    const Fingerprint before = fingerprint(desk.filter);
    const bool another = entry != iir_entry::ordinary_command || cell == read_word;
    entry = iir_entry::ordinary_command;
    if (name_given) forget_edits(desk.state.kept);
    if (name_given && cell == read_word) {
        read_iir_file(desk, true);
        cell = {};
    } else {
        commands.run(desk, cell);
    }
    desk.command.title = desk.session.TITLE;
    if (another || fingerprint(desk.filter) != before) report_missed(desk);
}

namespace {

void report_missed(IirDesk& desk) {
    WindowWatcher watcher(desk.window, check_work);
    report_lines(desk, missed_lines(check_iir(desk.filter, watcher)));
}

}  // namespace

}  // namespace kavrel
