#include "synthesis/synthesis_report.h"

#include <cmath>
#include <numbers>

#include <fmt/format.h>

#include "circuit/branch_elements.h"
#include "circuit/branch_kinds.h"
#include "shell/edit.h"
#include "shell/edited.h"
#include "shell/watcher.h"
#include "shell/whole_part.h"

namespace kavrel {

namespace {

void report_polynomial(std::string_view name, const WideRootSet& set, const XPlane& xp, const FilterSpec& spec,
                       std::vector<std::string>& lines);
[[nodiscard]] std::string termination_line(double resistance, double unit);
void report_side(const SynthesisState& state, bool output, double resistance, int first, int last,
                 std::vector<std::string>& lines);
void report_record(const SynthesisState& state, int k, double r, std::vector<std::string>& lines);
[[nodiscard]] std::string in_small(std::string_view drawing, char letter);
[[nodiscard]] std::string loss_line(const SynthesisState& state);
[[nodiscard]] int missing_parity(const LadderState& ladder);
[[nodiscard]] std::vector<std::string> termination_lines(double input, double output, double requested,
                                                         double available);

}  // namespace

std::vector<std::string> polynomial_report(std::string_view title, const XPlane& xp, const FilterSpec& spec) {
    std::vector<std::string> lines = {"******* Immittance polynomials *******", std::string(title)};
    report_polynomial("Even sum", xp.es, xp, spec, lines);
    report_polynomial("Odd sum", xp.os, xp, spec, lines);
    report_polynomial("Even difference", xp.ed, xp, spec, lines);
    report_polynomial("Odd difference", xp.od, xp, spec, lines);
    return lines;
}

std::vector<std::string> result_report(std::string_view title, const SynthesisState& state) {
    std::vector<std::string> lines = {std::string(title)};
    const bool output = state.ladder.selection.output_side;
    const Terminations& ends = state.terminations;
    const int records = state.ladder.record_count;
    if (state.two_way) {
        report_side(state, false, ends.own, 1, state.join.forward_records, lines);
        report_side(state, true, ends.far, records, state.join.forward_records + 1, lines);
    } else {
        report_side(state, output, ends.own, 1, records, lines);
        if (ends.far != 0) lines.push_back(termination_line(ends.far, ends.own));
    }
    if (state.script_verdict.storage_low) lines.emplace_back(storage_warning);
    if (state.termination_is_extreme()) lines.emplace_back(extreme_termination_text);
    if (state.negative_elements > 0 && state.searched) {
        const bool none = state.search == SearchVerdict::none_exists;
        lines.emplace_back(none ? negative_elements_text : search_given_up_text);
    }
    if (state.loss_is_notable()) lines.push_back(loss_line(state));
    lines.emplace_back(" *** Done ***");
    return lines;
}

std::vector<std::string> termination_report(const SynthesisState& state) {
    const bool output = state.ladder.selection.output_side;
    const double input = output ? state.terminations.far : state.terminations.own;
    const double far = output ? state.terminations.own : state.terminations.far;
    return termination_lines(input, far, state.requested_ratio, state.available_ratio);
}

std::vector<std::string> termination_report(const Circuit& circuit, const FilterSpec& spec) {
    return termination_lines(circuit.R1, circuit.R2, spec.loadResistance / spec.sourceResistance,
                             circuit.R1 != 0 ? circuit.R2 / circuit.R1 : 0);
}

std::vector<std::string> failure_report(const SynthesisVerdict& verdict, const SynthesisState& state) {
    std::vector<std::string> lines;
    switch (verdict.fault) {
        case SynthesisFault::none: return lines;
        case SynthesisFault::not_realizable: lines.emplace_back(not_realizable_text); break;
        case SynthesisFault::real_zero: lines.emplace_back(real_zero_text); break;
        case SynthesisFault::too_many_quadruplets: lines.emplace_back(too_many_quadruplets_text); break;
        case SynthesisFault::immittance_missing: lines.emplace_back(immittance_not_found_text); break;
        case SynthesisFault::polynomials_missing: lines.emplace_back(polynomials_missing_text); break;
        case SynthesisFault::selection_missing: lines.emplace_back(selection_missing_text); break;
        case SynthesisFault::element_missing:
            lines.emplace_back(element_missing_text);
            lines.push_back(edited<"('parity =',I2)">(missing_parity(state.ladder)));
            break;
        case SynthesisFault::script_refused:
            lines.emplace_back(state.script_verdict.good() ? no_order_text : messageOf(state.script_verdict.fault));
            break;
        case SynthesisFault::no_two_way:
        case SynthesisFault::runs_differ: lines.emplace_back(element_missing_text); break;
        case SynthesisFault::storage_full: lines.emplace_back(message_of(CircuitVerdict::storage_full)); break;
        case SynthesisFault::loss_differs:
            lines.emplace_back(loss_differs_text);
            if (state.loss_is_notable() && std::isfinite(state.loss_error)) lines.push_back(loss_line(state));
            break;
        case SynthesisFault::stopped: lines.emplace_back(stopped_line); break;
    }
    lines.emplace_back(synthesis_failed_text);
    return lines;
}

namespace {

std::vector<std::string> termination_lines(double input, double output, double requested, double available) {
    const auto row = [](std::string_view label, double value) {
        return fmt::format(" {:36}=", label) + edited<"(1P,D15.7)">(value);
    };
    return {row("Input termination", input), row("Output termination", output),
            row("Requested termination ratio", requested), row("Nearest available termination ratio", available)};
}

std::string loss_line(const SynthesisState& state) {
    return edited<"(' Largest difference of loss =',1P,D13.5,' db')">(state.loss_error);
}

// Of the slot behind the last branch: 0 a series branch, 1 a shunt branch.
int missing_parity(const LadderState& ladder) {
    const int last = ladder.record_count;
    return last > 0 && ladder.MIND(last) % 2 == 1 ? 1 : 0;
}

// Hz of a root on the frequency axis; false when s is real there.
bool frequency_of(const XPlane& xp, const FilterSpec& spec, long double x, double& hz) {
    const long double w2 = (xp.a - x) / (1 - x);
    if (!(w2 >= 0) || (w2 == 0 && spec.filterType == high_pass)) return false;
    hz = hz_of(xp, spec, spec.filterType == high_pass ? 1 / std::sqrt(w2) : std::sqrt(w2));
    return std::isfinite(hz);
}

void report_polynomial(std::string_view name, const WideRootSet& set, const XPlane& xp, const FilterSpec& spec,
                       std::vector<std::string>& lines) {
    if (set.multiplier == 0) return;
    lines.push_back(edited<"(3X,'**** ',A,' ****  multiplier =',D16.8)">(name, static_cast<double>(set.multiplier)));
    lines.push_back(edited<"(8X,'real part',6X,'imaginary part',4X,'frequency in hz')">());
    for (int i = 1; i <= set.count; ++i) {
        const auto re = static_cast<double>(set.re(i));
        const auto im = static_cast<double>(set.im(i));
        double hz = 0;
        const bool on_axis = set.im(i) == 0 && frequency_of(xp, spec, set.re(i), hz);
        lines.push_back(on_axis ? edited<"(3D19.8)">(re, im, hz) : edited<"(2D19.8)">(re, im));
    }
}

std::string termination_line(double resistance, double unit) {
    return edited<"(1P,D15.7,2X,'├───r───┤',D15.7,2X,'termination')">(resistance / unit, resistance);
}

// Records `first` to `last` in the order of extraction from one side, normalised to its resistor.
void report_side(const SynthesisState& state, bool output, double resistance, int first, int last,
                 std::vector<std::string>& lines) {
    lines.push_back(edited<"(' Results of the synthesis from the ',A,'put side')">(output ? "out" : "in"));
    if (state.problem.microwave()) lines.emplace_back(all_values_impedances);
    lines.push_back(edited<"(5X,'normalized',20X,'denormalized')">());
    lines.push_back(termination_line(resistance, resistance));
    const int step = first <= last ? 1 : -1;
    for (int k = first; k != last + step; k += step) report_record(state, k, resistance, lines);
}

// The rows of a branch as it is drawn, in small letters: beside a letter its value, normalised at the left.
void report_record(const SynthesisState& state, int k, double r, std::vector<std::string>& lines) {
    const LadderState& ladder = state.ladder;
    const DenormalisedBranch branch = denormalised(state.problem, ladder, k, state.terminations.own);
    // Scales of L and C of this side: a normalised value is the denormalised one over its scale.
    const double w =
        state.problem.microwave() ? state.problem.norm_frequency : 2 * std::numbers::pi * state.problem.norm_frequency;
    const CircuitKind circuit_kind = state.problem.microwave() ? CircuitKind::microwave : CircuitKind::lumped;
    const BranchKind& kind = branch_kinds[branch.id];
    const int slot = branch.series ? 2 : 3;
    for (const DrawingRow& row : drawing_of(kind, slot)) {
        const bool valued = row.cell >= 0;
        const char letter = valued ? kind.cells[static_cast<std::size_t>(row.cell)] : ' ';
        const double scale = letter == 'L' ? r / w : letter == 'C' ? 1 / (r * w) : r;
        const double value = valued ? branch.values(row.cell + 1) : 0;
        const auto number = [&](double v) { return edited<"(1P,D15.7)">(shown_value(circuit_kind, letter, v)); };
        std::string text = edited<"(A15,2X,A)">(valued ? number(value / scale) : "", in_small(row.text, letter));
        if (valued) text += number(value);
        if (row.note == Note::resonance && ladder.SFR(k) != 0)
            text += edited<"(2X,'zero frequency',1P,D15.7)">(ladder.SFR(k));
        lines.push_back(text);
    }
    if (kind.structure != Structure::network) return;
    const QuadrupletRecord& section = ladder.QUADS(whole_part(rounded(ladder.SVAL1(k))));
    lines.push_back(edited<"(' zero frequency  real',1P,D15.7,'  imaginary',D15.7)">(section.SFZR, section.SFZI));
}

std::string in_small(std::string_view drawing, char letter) {
    std::string text(drawing);
    for (char& c : text) {
        if (c == 'X') c = letter;
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return text;
}

}  // namespace

}  // namespace kavrel
