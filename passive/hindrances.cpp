#include "passive/hindrances.h"

#include "approximation/time_response.h"
#include "circuit/chain_analysis.h"
#include "circuit/element_statistics.h"
#include "passive/phase_line.h"
#include "passive/stored_circuit.h"
#include "segment/result_commands.h"
#include "workshop/coupled_nodes.h"
#include "workshop/flip.h"
#include "workshop/lattice_section.h"
#include "workshop/preferred.h"
#include "workshop/stub_transfer.h"

namespace kavrel {

namespace {

std::string_view unless(bool can, std::string_view why) { return can ? std::string_view{} : why; }

bool is_low_pass(const FilterSpec& spec) {
    return spec.filterType == low_pass || spec.filterType == linear_phase_low_pass;
}

}  // namespace

std::string_view needs_coupled_section(const PassiveDesk& desk) {
    const Circuit& circuit = desk.filter.circuit;
    bool found = false;
    for (int k = circuit.klast; k != 0; k = unpackBranch(circuit, k).kp)
        found = found || is_coupled_section(circuit, k);
    return unless(found, no_coupled_section);
}

std::string_view cannot_turn_around(const PassiveDesk& desk) { return unless(can_flip(desk.filter.circuit), no_flip); }

std::string_view cannot_prefer(const PassiveDesk& desk) {
    if (desk.filter.circuit.kind != CircuitKind::lumped) return no_preferred_values;
    return needs_branches<no_circuit_to_analyze>(desk);
}

std::string_view cannot_reject_band(const PassiveDesk& desk) {
    const Circuit& circuit = desk.filter.circuit;
    const bool low = is_low_pass(desk.filter.spec) && circuit.fa == 0 && circuit.fnorm > 0 && circuit.klast > 0;
    return unless(low, "Not a lowpass, no band-reject transformation");
}

std::string_view cannot_make_lattice(const PassiveDesk& desk) {
    if (desk.filter.circuit.kind != CircuitKind::lumped) return no_lattice;
    return needs_branches<no_lattice_section>(desk);
}

// A transferred circuit is of another class than the one that it was made for.
std::string_view cannot_transfer(const PassiveDesk& desk) {
    const PassiveFilter& filter = desk.filter;
    const FilterSpec& request = filter.background.request;
    if (filter.circuit.kind != CircuitKind::microwave) return no_transfer;
    if (!is_low_pass(filter.spec) && filter.spec.filterType != high_pass)
        return "Works only for low- and high-pass filters";
    const bool done = request.medium == microwave && is_low_pass(request) != is_low_pass(filter.spec);
    return done ? "Transfer done already" : needs_branches<no_circuit_to_analyze>(desk);
}

std::string_view needs_circuit(const PassiveDesk& desk) {
    ElementStatistics statistics;
    return unless(elementStatistics(desk.filter.circuit, statistics), no_circuit_to_analyze);
}

std::string_view needs_design(const PassiveDesk& desk) { return unless(desk.filter.designed, data_unavailable); }

std::string_view needs_frequency_results(const PassiveDesk& desk) {
    return unless(desk.results.frequency_count > 0, no_analysis_results);
}

std::string_view needs_frequency_table(const PassiveDesk& desk) {
    return unless(desk.results.frequency_count > 0 && desk.results.has_immittance, no_analysis_results);
}

std::string_view needs_time_results(const PassiveDesk& desk) {
    return unless(desk.results.time_count > 0, no_analysis_results);
}

std::string_view needs_phase(const PassiveDesk& desk) { return unless(has_phase_line(desk.results), no_analysis_data); }

std::string_view cannot_analyse_frequency(const PassiveDesk& desk) {
    const Circuit& circuit = desk.filter.circuit;
    if (circuit.kind == CircuitKind::wave_digital) return message_of(ChainVerdict::wave_digital);
    return unless(circuit.klast >= 2, message_of(ChainVerdict::no_circuit));
}

std::string_view cannot_analyse_time(const PassiveDesk& desk) {
    const PassiveFilter& filter = desk.filter;
    if (filter.circuit.kind == CircuitKind::wave_digital) return "Time domain analysis to be done in digital segment";
    if (filter.circuit.kind == CircuitKind::microwave) return "Microwave filter, time domain analysis not possible";
    return unless(filter.designed, message_of(TimeVerdict::no_modes));
}

std::string_view cannot_stop_macro(const PassiveDesk& desk) {
    return unless(desk.state.recording, "No macro file to close");
}

std::string_view cannot_save_circuit(const PassiveDesk& desk) {
    return unless(!circuit_keeping.is_empty(desk.filter), data_unavailable);
}

}  // namespace kavrel
