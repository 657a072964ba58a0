#include "passive/circuit_edits.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "approximation/loss_rows.h"
#include "approximation/s_plane.h"
#include "circuit/element_statistics.h"
#include "passive/command_tools.h"
#include "passive/hindrances.h"
#include "shell/edited.h"
#include "workshop/band_reject.h"
#include "workshop/dual.h"
#include "workshop/flip.h"
#include "workshop/lattice_section.h"
#include "workshop/scaling.h"
#include "workshop/stub_transfer.h"

namespace kavrel {

namespace {

constexpr std::string_view zero_factor = "Zero is not an acceptable value";

// A request as it was made, and with what was found for it.
template <class Visit>
void for_each_request(PassiveFilter& filter, Visit visit) {
    visit(filter.spec);
    visit(filter.background.request);
}
void turn_request(PassiveFilter& filter);
std::vector<std::string> moved_zero_lines(const TransferFunction& transfer);

}  // namespace

bool scale_impedance(PassiveDesk& desk, EditStep& step) {
    if (const auto why = needs_branches<no_circuit_to_analyze>(desk); !why.empty()) return passes(desk, why);
    const double typed = desk.command.impedance_factor;
    if (typed == 0) return passes(desk, {zero_factor, "factor"});
    const double factor = typed > 0 ? typed : -typed / step.circuit().VALUE(unpackBranch(step.circuit(), 1).i1);
    scale(step.circuit(), factor, 1);
    for_each_request(step.filter, [factor](FilterSpec& spec) {
        spec.sourceResistance *= factor;
        spec.loadResistance *= factor;
    });
    step.macro = {"Transform R scaling", macro_value_d(typed) + std::string(macro_return), macro_key_line("~")};
    return true;
}

bool scale_frequency(PassiveDesk& desk, EditStep& step) {
    if (const auto why = needs_branches<no_circuit_to_analyze>(desk); !why.empty()) return passes(desk, why);
    const double factor = desk.command.frequency_factor;
    if (!(factor > 0)) return passes(desk, {factor == 0 ? zero_factor : "Values must be > 0.0", "factor"});
    Circuit& circuit = step.circuit();
    const bool lumped_circuit = circuit.kind == CircuitKind::lumped;
    if (lumped_circuit) scale(circuit, 1, factor);
    for (double* frequency : {&circuit.fnorm, &circuit.fa, &circuit.fb, &circuit.fs}) *frequency *= factor;
    for_each_request(step.filter, [factor](FilterSpec& spec) { spec = scaled_request(spec, factor); });
    step.filter.background.worked_lower_edge *= factor;
    step.filter.background.worked_upper_edge *= factor;
    if (step.filter.designed) scale_transfer(step.filter.spec.medium, factor, step.filter.transfer);
    if (!lumped_circuit)
        desk.reporter.report_line(edited<"(' New quarter-wave frequency = ',1P,D15.7,' Hz.')">(circuit.fs / 2));
    step.macro = {"Transform F scaling", macro_value_d(factor) + std::string(macro_return), macro_key_line("~")};
    return true;
}

bool take_dual(PassiveDesk& desk, EditStep& step) {
    step.macro = {"Transform Dual"};
    for_each_request(step.filter, [](FilterSpec& spec) {
        for (double* resistance : {&spec.sourceResistance, &spec.loadResistance})
            if (*resistance != 0) *resistance = 1 / *resistance;
    });
    return passes(desk, dual(step.circuit()));
}

bool turn_around(PassiveDesk& desk, EditStep& step) {
    step.macro = {"Transform Flip"};
    for_each_request(step.filter, [](FilterSpec& spec) { std::swap(spec.sourceResistance, spec.loadResistance); });
    return passes(desk, flip(step.circuit()));
}

bool prefer_values(PassiveDesk& desk, EditStep& step) {
    if (const auto why = cannot_prefer(desk); !why.empty()) return passes(desk, why);
    constexpr std::string_view down[] = {"", "{DOWN}", "{DOWN 2}", "{DOWN 3}"};
    const PercentClass percent_class = desk.command.percent_class;
    const Refusal wrong = preferred(step.circuit(), percent_class);
    if (wrong.text == already_preferred) {
        desk.reporter.message(wrong.text, "Advice");
        return false;
    }
    if (!passes(desk, wrong)) return false;
    const std::string_view choice = down[static_cast<std::size_t>(percent_class) - 1];
    step.macro = {"Transform Preferred", "{SP} " + std::string(choice) + std::string(macro_return)};
    return true;
}

bool make_band_reject(PassiveDesk& desk, EditStep& step) {
    if (const auto why = cannot_reject_band(desk); !why.empty()) return passes(desk, why);
    const BandEdges& edges = desk.command.rejected;
    const double hz = desk.session.units.frequency_multiplier;
    if (!passes(desk, bandReject(step.circuit(), edges.lower * hz, edges.upper * hz))) return false;
    FilterSpec& spec = step.filter.spec;
    spec.filterType = band_reject;
    spec.lowerPassEdge = step.circuit().fa;
    spec.upperPassEdge = step.circuit().fb;
    spec.lowerStopEdge = spec.upperStopEdge = 0;
    step.filter.designed = false;
    step.macro = {"Transform Band-reject", macro_value_d(edges.lower) + std::string(macro_tab) +
                                               macro_value_d(edges.upper) + std::string(macro_return)};
    return true;
}

bool make_lattice(PassiveDesk& desk, EditStep& step) {
    if (const auto why = cannot_make_lattice(desk); !why.empty()) return passes(desk, why);
    const auto [k1, k2] = desk.command.latticed;
    step.macro = {"Modify Lattice",
                  macro_branch(k1) + std::string(macro_tab) + macro_branch(k2) + std::string(macro_return)};
    return passes(desk, toLattice(step.circuit(), k1, k2, step.changed));
}

bool include_in_lattice(PassiveDesk& desk, EditStep& step) {
    const int k = desk.command.included_in;
    step.changed = k - 1;
    step.macro = {"Modify Include", macro_branch(k) + std::string(macro_return)};
    return passes(desk, includeIntoLattice(step.circuit(), k));
}

// What it was is kept as the request of a circuit that has none any more: so a second transfer is known.
bool transfer_stubs(PassiveDesk& desk, EditStep& step) {
    if (const auto why = cannot_transfer(desk); !why.empty()) return passes(desk, why);
    if (!passes(desk, transfer(step.circuit()))) return false;
    if (step.filter.designed) report_lines(desk, moved_zero_lines(step.filter.transfer));
    turn_request(step.filter);
    step.macro = {"Transform Transfer"};
    return true;
}

namespace {

// Roots of microwave functions are tangents.
void turn_request(PassiveFilter& filter) {
    FilterSpec& spec = filter.spec;
    if (!filter.designed) filter.background.request = spec;
    filter.designed = false;
    const auto turned = [&](double f) { return f > 0 ? filter.circuit.fs / 2 - f : 0; };
    spec.filterType = spec.filterType == high_pass ? low_pass : high_pass;
    spec.lowerPassEdge = turned(std::exchange(spec.upperPassEdge, turned(spec.lowerPassEdge)));
    spec.lowerStopEdge = turned(std::exchange(spec.upperStopEdge, turned(spec.lowerStopEdge)));
    for (int i = 1; i <= spec.zeroCount; ++i) spec.FZI(i) = turned(spec.FZI(i));
}

// In units of the edge, which is inverted, too; those at the quarter wave come to 0, those at 0 to the quarter wave.
std::vector<std::string> moved_zero_lines(const TransferFunction& transfer) {
    std::vector<std::string> lines{"Transmission zeros", edited<"(5X,'real part',6X,'imaginary part')">()};
    const auto add = [&](double re, double im) { lines.push_back(edited<"(1P,E18.9,E20.9)">(re, im)); };
    for (int i = transfer.zeroCount; i < transfer.poleCount; ++i) add(0, 0);
    for (int i = 1; i <= transfer.zeroCount; ++i) {
        const double re = transfer.ZEROS_RE(i), im = transfer.ZEROS_IM(i), square = re * re + im * im;
        if (square != 0) add(re / square, (im == 0 ? im : -im) / square);
    }
    return lines;
}

}  // namespace

}  // namespace kavrel
