#include "passive/passive_segment.h"

#include "circuit/element_statistics.h"
#include "passive/analysis_commands.h"
#include "passive/branch_edits.h"
#include "passive/circuit_edits.h"
#include "passive/circuit_request_check.h"
#include "passive/command_tools.h"
#include "passive/coupling_edits.h"
#include "passive/edits.h"
#include "passive/file_commands.h"
#include "passive/hindrances.h"
#include "passive/macro_file.h"
#include "passive/norton_edits.h"
#include "passive/report_commands.h"
#include "workshop/combine.h"
#include "workshop/coupled_sections.h"
#include "workshop/dual.h"
#include "workshop/lattice_section.h"
#include "workshop/norton.h"
#include "workshop/resonance_exchange.h"
#include "workshop/section.h"

namespace kavrel {

namespace {

constexpr int compact_from = 130;  // cells in use
constexpr CommandKeyword read_word("read");
constexpr CommandKeyword show_word("show");

// A blank cell is no command: it leaves the Segment.
void leave(PassiveDesk&) {}

void read(PassiveDesk& desk) { read_circuit_file(desk, false); }

constexpr CommandTable commands({
    Command<PassiveDesk>{"tp  ", edit<Promise::whole_two_port, exchange_tee_and_pi>,
                         needs_branches<no_branch_of_number>},
    {"ib  ", edit<Promise::whole_two_port, interchange_branches>, needs_branches<unfit_branches>},
    {"rs  ", edit<Promise::level, scale_impedance>, needs_branches<no_circuit_to_analyze>},
    {"fs  ", edit<Promise::nothing, scale_frequency>, needs_branches<no_circuit_to_analyze>},
    {"ins ", edit<Promise::nothing, insert_branch>},
    {"del ", edit<Promise::nothing, delete_branch>, needs_branches<no_branch_of_number>},
    {"show", show},
    {"tr  ", edit<Promise::level, norton_transformation>, needs_branches<no_norton_branch>},
    {"pri ", choose_print},
    {"    ", leave},
    {"com ", edit<Promise::whole_two_port, combine_branches>, needs_branches<nothing_to_combine>},
    {"pltf", plot_frequency, needs_frequency_results},
    {"dual", edit<Promise::loss, take_dual>, needs_branches<no_dual>},
    {"be  ", edit<Promise::nothing, make_band_reject>, cannot_reject_band},
    {"save", save_circuit_file, cannot_save_circuit},
    {"freq", analyse_frequency, cannot_analyse_frequency},
    {"lat ", edit<Promise::level, make_lattice>, cannot_make_lattice},
    {"incl", edit<Promise::whole_two_port, include_in_lattice>, needs_branches<no_such_section>},
    {"squ ", edit<Promise::whole_two_port, squeeze_branches>},
    {"spl ", edit<Promise::whole_two_port, split_branch>, needs_branches<no_branch>},
    {"file", write_transfer},
    {"text", write_text_file},
    {"equ "},
    {"pz  ", write_pole_zero, needs_design},
    {"flip", edit<Promise::loss, turn_around>, cannot_turn_around},
    {"lce ", equalise_all, needs_branches<no_listed_branch>},
    {"sto ", store_circuit},
    {"rcl ", recall_circuit, [](const PassiveDesk& desk) { return cannot_recall(desk); }},
    {"disp", display_design, needs_design},
    {"ch  ", edit<Promise::nothing, change_branch>, needs_branches<no_such_branch>},
    {"lbl ", change_title},
    {"time", analyse_time, cannot_analyse_time},
    {"list", list},
    {"plpr", [](PassiveDesk& desk) { print_plot_window(desk); }},
    {"sprd", spread, needs_circuit},
    {"res ", resonance, needs_branches<no_resonance>},
    {"pref", edit<Promise::nothing, prefer_values>, cannot_prefer},
    {"tabf", tabulate_frequency, needs_frequency_table},
    {"xr  ", edit<Promise::whole_two_port, exchange_resonances>, needs_branches<nothing_to_exchange>},
    {"undo", undo_edit, [](const PassiveDesk& desk) { return cannot_undo(desk.state.kept); }},
    {"ecm ", equalise_inner, needs_branches<no_listed_branch>},
    {"copy", edit<Promise::nothing, copy_branch>},
    {"read", read},
    {"prf ", display_function, needs_design},
    {"wave"},
    {"xch ", edit<Promise::whole_two_port, convert_three_elements>, needs_branches<no_branch>},
    {"ct  ", edit<Promise::whole_two_port, couple_three>, needs_branches<no_triplet>},
    {"cq  ", edit<Promise::whole_two_port, couple_four>, needs_branches<no_quadruplet>},
    {"mtr ", edit<Promise::level, transform_coupling>, needs_coupled_section},
    {"pltt", plot_time, needs_time_results},
    {"tabt", tabulate_time, needs_time_results},
    {"supp", suppress},
    {"redo", redo_edit, [](const PassiveDesk& desk) { return cannot_redo(desk.state.kept); }},
    {"writ", start_macro},
    {"clos", stop_macro, cannot_stop_macro},
    {"non ", phase_nonlinearity, needs_phase},
    {"nonp", print_phase_nonlinearity},
    {"conv", edit<Promise::nothing, transfer_stubs>, cannot_transfer},
});

void enter(PassiveDesk& desk, int entry);
void report_missed(PassiveDesk& desk);

}  // namespace

CommandWords passive_words() { return commands.words(); }

std::string_view passive_hindrance(const PassiveDesk& desk, const CommandKeyword& word) {
    return commands.hindrance(desk, word);
}

void passiveSegment(PassiveDesk& desk) {
    int& entry = desk.session.entry(SegmentId::passive);
    CommandKeyword& cell = desk.session.word(SegmentId::passive);
    // The circuit of a stored lattice is there when the Segment is entered; that of a stored circuit is to be read.
    if (entry == passive_entry::stored_lattice && cell == read_word) cell = show_word;
    const bool name_given = entry == passive_entry::stored_circuit;
    const bool another = entry != passive_entry::ordinary_command || cell == read_word;
    const Circuit before = desk.filter.circuit;
    if (entry != passive_entry::ordinary_command) enter(desk, entry);
    entry = passive_entry::ordinary_command;
    if (desk.filter.circuit.ilast >= compact_from) compactValues(desk.filter.circuit);

    if (name_given && cell == read_word) {
        read_circuit_file(desk, true);
        cell = {};
    } else {
        commands.run(desk, cell);
    }
    desk.command.title = desk.session.TITLE;
    if (another || !(desk.filter.circuit == before)) report_missed(desk);
}

namespace {

// A circuit that comes from elsewhere: its name is not known yet, and what was done to the former one is over, but that
// a design can be undone.
void enter(PassiveDesk& desk, int entry) {
    if (entry != passive_entry::synthesised) forget_edits(desk.state.kept);
    desk.state.lastBranch = 1;
    switch (entry) {
        case passive_entry::analysis: desk.session.filter_file = ""; break;
        case passive_entry::synthesised:
            desk.filter.mod = 0.0F;
            desk.session.filter_file = "";
            break;
        default: break;
    }
}

void report_missed(PassiveDesk& desk) {
    WindowWatcher watcher(desk.window, check_work);
    report_lines(desk, missed_request_lines(desk.filter, watcher));
}

}  // namespace

}  // namespace kavrel
