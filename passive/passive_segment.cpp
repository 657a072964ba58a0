#include "passive/passive_segment.h"

#include <array>

#include "circuit/drawing.h"
#include "circuit/element_statistics.h"
#include "circuit/listing.h"

namespace kavrel {

namespace {

using Command = void (*)(PassiveDesk& desk);

struct WordRow {
    CommandKeyword word;
    Command perform;  // null until the command is built
};

constexpr int compact_from = 130;  // cells in use

void report(PassiveDesk& desk, const std::vector<std::string>& lines) {
    for (const std::string& line : lines) desk.reporter.report_line(line);
}

void show(PassiveDesk& desk) {
    report(desk, showCircuit(desk.filter.circuit, desk.state.lastBranch, desk.session.units));
    desk.state.lastBranch = 1;
}

void list(PassiveDesk& desk) { report(desk, listCircuit(desk.filter.circuit)); }

void spread(PassiveDesk& desk) {
    ElementStatistics statistics;
    if (elementStatistics(desk.filter.circuit, statistics)) {
        report(desk, statistics_lines(statistics, desk.filter.circuit.kind, desk.session.units));
    } else {
        desk.reporter.message(no_circuit_to_analyze, "Error");
    }
}

void print(PassiveDesk& desk) {
    choose_print_mode(static_cast<PrintTarget>(desk.command.printing_to), desk.reporter);
}

constexpr WordRow rows[] = {
    {"tp  ", nullptr}, {"ib  ", nullptr}, {"rs  ", nullptr}, {"fs  ", nullptr}, {"ins ", nullptr}, {"del ", nullptr},
    {"show", show},    {"tr  ", nullptr}, {"pri ", print},   {"    ", nullptr}, {"com ", nullptr}, {"pltf", nullptr},
    {"dual", nullptr}, {"be  ", nullptr}, {"save", nullptr}, {"freq", nullptr}, {"lat ", nullptr}, {"incl", nullptr},
    {"squ ", nullptr}, {"spl ", nullptr}, {"file", nullptr}, {"text", nullptr}, {"equ ", nullptr}, {"pz  ", nullptr},
    {"flip", nullptr}, {"lce ", nullptr}, {"sto ", nullptr}, {"rcl ", nullptr}, {"disp", nullptr}, {"ch  ", nullptr},
    {"lbl ", nullptr}, {"time", nullptr}, {"list", list},    {"plpr", nullptr}, {"sprd", spread},  {"res ", nullptr},
    {"pref", nullptr}, {"tabf", nullptr}, {"xr  ", nullptr}, {"undo", nullptr}, {"ecm ", nullptr}, {"copy", nullptr},
    {"read", nullptr}, {"prf ", nullptr}, {"wave", nullptr}, {"xch ", nullptr}, {"ct  ", nullptr}, {"cq  ", nullptr},
    {"mtr ", nullptr}, {"pltt", nullptr}, {"tabt", nullptr}, {"supp", nullptr}, {"redo", nullptr}, {"writ", nullptr},
    {"clos", nullptr}, {"non ", nullptr}, {"nonp", nullptr}, {"conv", nullptr}};

constexpr auto words = [] {
    std::array<CommandKeyword, std::size(rows)> table;
    for (std::size_t i = 0; i < table.size(); ++i) table[i] = rows[i].word;
    return table;
}();

constexpr Field print_fields[] = {print_field<&PassiveRequest::printing_to>};

// What a new circuit is met with: it is the designed one, and nothing can be undone.
void enter(PassiveDesk& desk) {
    if (desk.session.entry(SegmentId::passive) == passive_entry::synthesised) desk.filter.mod = 0.0F;
    desk.state = {.suppress = desk.state.suppress};
}

}  // namespace

constexpr Form PASSIVE_PRINT_DLG = form_of<PassiveRequest>("PRINT_DLG", "Printing to", print_fields);

std::span<const CommandKeyword> passive_words() { return words; }

bool passive_performs(const CommandKeyword& word) {
    const auto place = match_command(word, words);
    return place && rows[*place].perform != nullptr;
}

void passiveSegment(PassiveDesk& desk) {
    int& entry = desk.session.entry(SegmentId::passive);
    if (entry != passive_entry::ordinary_command) enter(desk);
    entry = passive_entry::ordinary_command;
    if (desk.filter.circuit.ilast >= compact_from) compactValues(desk.filter.circuit);
    CommandKeyword& cell = desk.session.word(SegmentId::passive);
    const auto place = match_command(cell, words);
    if (place && rows[*place].perform != nullptr) rows[*place].perform(desk);
    cell = {};
}

}  // namespace kavrel
