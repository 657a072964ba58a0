#include "passive/report_commands.h"

#include "approximation/filter_report.h"
#include "circuit/branch_kinds.h"
#include "circuit/element_formulas.h"
#include "circuit/element_statistics.h"
#include "circuit/listing.h"
#include "exchange/transfer_polynomials.h"
#include "passive/command_tools.h"
#include "passive/hindrances.h"
#include "shell/edited.h"
#include "synthesis/synthesis_report.h"

namespace kavrel {

namespace {

std::vector<double> resonances_of(const Circuit& circuit, int k);
std::vector<double> resonances_of(const Circuit& circuit, int k1, int k2);

}  // namespace

void show(PassiveDesk& desk) { show_circuit(desk); }

void list(PassiveDesk& desk) { report_lines(desk, listCircuit(desk.filter.circuit)); }

void spread(PassiveDesk& desk) {
    ElementStatistics statistics;
    if (!elementStatistics(desk.filter.circuit, statistics)) return refuse(desk, no_circuit_to_analyze);
    report_lines(desk, statistics_lines(statistics, desk.filter.circuit.kind, desk.session.units));
}

void resonance(PassiveDesk& desk) {
    const Circuit& circuit = desk.filter.circuit;
    const int k1 = desk.command.resonant_branch;
    const int k2 = desk.command.resonant_branch2;
    const auto resonances = k2 == 0 ? resonances_of(circuit, k1) : resonances_of(circuit, k1, k2);
    if (resonances.empty()) return refuse(desk, {no_resonance, "branch"});
    const std::string place = k2 == 0 ? edited<"(' Resonant frequency of branch ',I3)">(k1)
                                      : edited<"(' Resonant frequency of branches ',I3,' and ',I3)">(k1, k2);
    for (const double frequency : resonances) {
        const std::string value = unit_value_text(desk.session.units, frequency, hertz);
        desk.reporter.report_line(edited<"(A,' =',A)">(place, trim_right(value)));
    }
}

void display_design(PassiveDesk& desk) {
    if (const auto why = needs_design(desk); !why.empty()) return refuse(desk, why);
    const PassiveFilter& filter = desk.filter;
    report_lines(desk, kept_design_lines(filter.spec, filter.background, filter.transfer, desk.session.units));
    report_lines(desk, termination_report(filter.circuit, filter.spec));
}

void display_function(PassiveDesk& desk) {
    if (const auto why = needs_design(desk); !why.empty()) return refuse(desk, why);
    const Medium medium = desk.filter.spec.medium;
    report_lines(desk, transfer_function_lines(desk.filter.transfer, medium));
    desk.reporter.report_line("");
    report_lines(desk, polynomial_lines(transfer_polynomials(desk.filter.transfer, medium != lumped)));
}

// A stored file has the title, too: with another one it is no longer what is shown.
void change_title(PassiveDesk& desk) {
    if (desk.session.TITLE != desk.command.title) desk.state.kept.saved = 0;
    desk.session.TITLE = desk.command.title;
}

void choose_print(PassiveDesk& desk) {
    if (choose_print_mode(desk.command.printing_to, desk.reporter)) report_done(desk);
}

void suppress(PassiveDesk& desk) { desk.state.suppress = desk.command.display == DisplayChoice::off; }

namespace {

// Of the pairs whose resonance the branch's drawing shows, where there is one.
std::vector<double> resonances_of(const Circuit& circuit, int k) {
    std::vector<double> resonances;
    if (!branchExists(circuit, k)) return resonances;
    const Branch branch = unpackBranch(circuit, k);
    const auto values = branch_values(circuit, branch);
    for (const DrawingRow& row : drawing_of(branch_kinds[branch.id], k)) {
        if (row.note != Note::resonance) continue;
        const double frequency = resonant_frequency(circuit, values[static_cast<std::size_t>(row.l)],
                                                    values[static_cast<std::size_t>(row.c)]);
        if (frequency > 0) resonances.push_back(frequency);
    }
    return resonances;
}

// An inductor and a capacitor, in either order.
std::vector<double> resonances_of(const Circuit& circuit, int k1, int k2) {
    if (!branchExists(circuit, k1) || !branchExists(circuit, k2)) return {};
    Branch l = unpackBranch(circuit, k1);
    Branch c = unpackBranch(circuit, k2);
    if (l.id == BranchId::capacitor) std::swap(l, c);
    if (l.id != BranchId::inductor || c.id != BranchId::capacitor) return {};
    const double frequency = resonant_frequency(circuit, circuit.VALUE(l.i1), circuit.VALUE(c.i1));
    if (!(frequency > 0)) return {};
    return {frequency};
}

}  // namespace

}  // namespace kavrel
