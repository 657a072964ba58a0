#include "synthesis/denormalise.h"

#include <cmath>
#include <numbers>
#include <span>
#include <string_view>

#include "circuit/branch_kinds.h"
#include "circuit/chain_analysis.h"
#include "shell/whole_part.h"
#include "synthesis/immittance_choice.h"

namespace kavrel {

namespace {

[[nodiscard]] bool rest_immittance(const LadderProblem& problem, const LadderState& state, double own,
                                   Complex<long double>& rest, long double& w);
void compound_values(const LadderState& state, int index, long double r, long double w, DenormalisedBranch& branch);
[[nodiscard]] bool driven_by_voltage(const LadderState& state);
[[nodiscard]] CircuitVerdict append(Circuit& circuit, const DenormalisedBranch& branch, bool open_end);

}  // namespace

DenormalisedBranch denormalised(const LadderProblem& problem, const LadderState& state, int k, double resistance) {
    DenormalisedBranch branch;
    branch.series = state.MIND(k) % 2 == 1;
    branch.merges = state.SIMP(k) != 0;
    const long double r = resistance;
    const long double w =
        problem.microwave() ? problem.norm_frequency : 2 * std::numbers::pi_v<long double> * problem.norm_frequency;
    const auto add = [&](long double value) { branch.values(++branch.count) = static_cast<double>(value); };
    const long double v1 = rounded(state.SVAL1(k));
    if (state.SVAL2(k) == WideReal{unit_element_mark}) {
        branch.id = BranchId::unit_element;
        add(v1 * r);
        return branch;
    }
    if (state.SVAL2(k) == WideReal{quadruplet_mark}) {
        compound_values(state, whole_part(v1), r, w, branch);
        return branch;
    }
    const long double v2 = rounded(state.SVAL2(k));
    // The immittance proportional to s is v1 s; the other one v2 s is that of the dual element.
    long double l = branch.series ? v1 : v2;
    long double c = branch.series ? v2 : v1;
    if (problem.prototype) {
        const long double old_l = l;
        l = c != 0 ? 1 / c : 0;
        c = old_l != 0 ? 1 / old_l : 0;
    }
    branch.id = c == 0 ? BranchId::inductor : l == 0 ? BranchId::capacitor : BranchId::lc;
    if (l != 0) add(l * r / w);
    if (c != 0) add(c / (r * w));
    return branch;
}

CircuitVerdict storeResult(const LadderProblem& problem, const LadderState& state, const Terminations& terminations,
                           Circuit& circuit) {
    const bool from_output = state.selection.output_side;
    const double first = from_output ? terminations.far : terminations.own;
    const double last = from_output ? terminations.own : terminations.far;
    clear_circuit(circuit);
    circuit.kind = problem.microwave() ? CircuitKind::microwave : CircuitKind::lumped;
    circuit.fs = problem.quarter_wave;
    circuit.R1 = first;
    circuit.R2 = last;
    circuit.termination_ratio = last / first;

    bool merged_before = false;
    int k = 1;
    if (const CircuitVerdict v = insertBranch(circuit, k, first, 0, BranchId::resistor); v != CircuitVerdict::done)
        return v;
    for (int i = 1; i <= state.record_count; ++i) {
        const int record = from_output ? state.record_count + 1 - i : i;
        DenormalisedBranch branch = denormalised(problem, state, record, terminations.own);
        // A part that merges does so with either neighbour.
        const bool after_part = merged_before;
        merged_before = branch.merges;
        branch.merges = branch.merges || after_part;
        const bool open_end = last == 0 && i == state.record_count;
        if (open_end && !branch_kinds[branch.id].slot_element()) branch.series = driven_by_voltage(state);
        if (const CircuitVerdict v = append(circuit, branch, open_end); v != CircuitVerdict::done) return v;
    }
    if (last == 0) return CircuitVerdict::done;
    k = circuit.klast + 1;
    return insertBranch(circuit, k, last, 0, BranchId::resistor);
}

bool record_hidden_branch(const LadderProblem& problem, LadderState& state) {
    bool finite_left = false;
    for (int i = 1; i <= problem.zero_count; ++i) finite_left = finite_left || state.IC(i) == 1;
    const bool one_left = state.nz + state.ni == 1 && state.ue == 0 && !finite_left;
    if (!one_left || !state.F.vanished() || state.record_count == record_limit) return false;

    // Short: a shunt branch is hidden; open: a series one.
    const bool zero = state.F.ANUMR.multiplier.sign() == 0;
    const int form = zero == (state.form == impedance) ? admittance : impedance;
    Complex<long double> rest;
    long double w = 0;
    if (!rest_immittance(problem, state, 1, rest, w)) return false;
    // Records of a prototype are in the s of the approximation, all others in the true one.
    if (problem.prototype) rest = conjugate(rest);
    if (problem.turned) w = 1 / w;
    if (form == admittance) rest = reciprocal(rest);
    const int k = ++state.record_count;
    state.SVAL1(k) = state.ni == 1 ? rest.im / w : 0;
    state.SVAL2(k) = state.nz == 1 ? -1 / (w * rest.im) : 0;
    state.SFR(k) = 0;
    state.MIND(k) = form == impedance ? 1 : 2;
    state.SIMP(k) = 0;
    state.nz = state.ni = 0;
    state.finished = true;
    return std::isfinite(rest.re) && rest.im != 0;
}

bool far_termination(const LadderProblem& problem, const LadderState& state, double own, double& far) {
    Complex<long double> rest;
    long double w = 0;
    if (!rest_immittance(problem, state, own, rest, w)) return false;
    far = static_cast<double>(rest.re);
    return true;
}

namespace {

// Seen from the load with R at the source, Z = (D R + B)/(C R + A): R = (Z A - B)/(D - Z C). From the source with R at
// the load, Z = (A R + B)/(C R + D): R = (Z D - B)/(A - Z C). R in ohm, at s = j w of the approximation.
bool rest_immittance(const LadderProblem& problem, const LadderState& state, double own, Complex<long double>& rest,
                     long double& w) {
    Circuit circuit;
    if (storeResult(problem, state, {own, own}, circuit) != CircuitVerdict::done) return false;
    circuit.fnorm = problem.norm_frequency;
    Chain chain;
    if (prepare_chain(circuit, {}, chain) != ChainVerdict::done) return false;
    const bool from_output = state.selection.output_side;
    constexpr long double two_pi = 2 * std::numbers::pi_v<long double>;
    const long double a = rounded(problem.x0);
    // x = (a - w^2)/(1 - w^2) below 0: in the pass band.
    for (const long double x : {-1.0L, -0.7L, -1.6L}) {
        w = std::sqrt((a - x) / (1 - x));
        const bool inverted = problem.prototype || problem.turned;
        const long double true_w = (inverted ? 1 / w : w) * problem.norm_frequency;
        const long double omega = problem.microwave() ? 2 * problem.quarter_wave * std::atan(true_w) : two_pi * true_w;
        ChainMatrix m;
        if (chain_matrix(chain, omega, m) != PointVerdict::computed) continue;
        Complex<long double> z = input_impedance(problem, state.selection, w);
        z = static_cast<long double>(own) * (inverted ? conjugate(z) : z);
        const Complex<long double> near = from_output ? m.D : m.A;
        const Complex<long double> opposite = from_output ? m.A : m.D;
        rest = (z * near - m.B) * reciprocal(opposite - z * m.C);
        if (std::isfinite(rest.re)) return true;
    }
    return false;
}

// Seen from the input.
void compound_values(const LadderState& state, int index, long double r, long double w, DenormalisedBranch& branch) {
    const QuadrupletRecord& record = state.QUADS(index);
    QuadrupletValues section;
    section.id = record.MSICON;
    section.count = record.value_count;
    section.value = record.SVALUE;
    if (state.selection.output_side) section = turned_around(section);
    branch.id = section.id;
    branch.count = section.count;
    const std::string_view cells = branch_kinds[section.id].cells;
    for (int i = 1; i <= section.count; ++i) {
        const long double scale = cells[static_cast<std::size_t>(i - 1)] == 'L' ? r / w : 1 / (r * w);
        branch.values(i) = static_cast<double>(rounded(section.value(i)) * scale);
    }
}

// Two capacitors across the rails at the same place add up, of two inductors the inverse values do.
bool merge_into_last(Circuit& circuit, const DenormalisedBranch& branch) {
    const Branch last = unpackBranch(circuit, circuit.klast);
    const bool in_place = last.id == branch.id && (circuit.klast % 2 == 0) == branch.series && circuit.klast > 1;
    const bool inductor = branch.id == BranchId::inductor;
    if (!in_place || branch.count != 1 || (!inductor && branch.id != BranchId::capacitor)) return false;
    double& value = circuit.VALUE(last.i1);
    const bool adds = inductor == branch.series;
    value = adds ? value + branch.values(1) : 1 / (1 / value + 1 / branch.values(1));
    return true;
}

// What is left behind the last branch: a short is a source of voltage at rest, an open end one of current.
bool driven_by_voltage(const LadderState& state) {
    const bool zero = state.F.ANUMR.multiplier.sign() == 0;
    return zero == (state.form == impedance);
}

// The number of a two-port means something at an open end alone: even, it is driven by a voltage, odd by a current.
CircuitVerdict append(Circuit& circuit, const DenormalisedBranch& branch, bool open_end) {
    if (branch.merges && merge_into_last(circuit, branch)) return CircuitVerdict::done;
    int k = circuit.klast + 1;
    if (branch_kinds[branch.id].slot_element() && (k % 2 == 0) != branch.series) ++k;
    const std::span<const double> values(branch.values.data(), static_cast<std::size_t>(branch.count));
    const CircuitVerdict verdict = insert_values(circuit, k, branch.id, values);
    if (verdict != CircuitVerdict::done || !open_end || (k % 2 == 0) == branch.series) return verdict;
    return shiftBranches(circuit, k, 1);
}

}  // namespace

}  // namespace kavrel
