#include "synthesis/ladder_attempt.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "approximation/s_plane.h"

namespace kavrel {

namespace {

// What an immittance that hides a branch leaves open.
struct Guess {
    ExtremeSide hidden = ExtremeSide::infinity;  // with lines: the kind of the hidden branch
    bool other = false;                          // of two such immittances the second; from both ends: of the input
    bool other_output = false;
};

[[nodiscard]] std::span<const Guess> further_guesses(const LadderAttempt& attempt);
[[nodiscard]] bool is_settled(const LadderAttempt& attempt, const LadderOutcome& nearest);
[[nodiscard]] bool is_open(const Guess& guess, const LadderAttempt& attempt, const LadderOutcome& last);

[[nodiscard]] LadderOutcome build(const LadderTask& task, const LadderAttempt& attempt, const Guess& guess);
[[nodiscard]] SynthesisFault extract(const LadderTask& task, const LadderAttempt& attempt, const Guess& guess,
                                     bool dual, SynthesisState& state);
[[nodiscard]] SynthesisFault extract_two_way(const Guess& guess, bool dual, Watcher& watcher, SynthesisState& state);
[[nodiscard]] SynthesisFault choose(const LadderTask& task, const LadderAttempt& attempt, const Guess& guess, bool dual,
                                    Selection& selection);
[[nodiscard]] SynthesisFault search(const LadderTask& task, const LadderAttempt& attempt, const Selection& selection,
                                    SynthesisState& state);
[[nodiscard]] SynthesisFault run_fixed_order(const LadderAttempt& attempt, const Guess& guess,
                                             const Selection& selection, Watcher& watcher, SynthesisState& state);
[[nodiscard]] bool nearer_as_dual(const SynthesisState& state);
void settle_levels(SynthesisState& state);
[[nodiscard]] int negative_values(const Circuit& circuit);
void describe(const LadderTask& task, Circuit& circuit);

}  // namespace

// Which immittance belongs to the filter shows in the circuit only. In a narrow band the wrong one comes near the loss,
// too: the nearest one is right.
LadderOutcome run_attempt(const LadderTask& task, const LadderAttempt& attempt) {
    LadderOutcome nearest = build(task, attempt, {});
    LadderOutcome last = nearest;
    for (const Guess& guess : further_guesses(attempt)) {
        if (is_settled(attempt, nearest) || !is_open(guess, attempt, last)) continue;
        last = build(task, attempt, guess);
        if (!last.came_off()) continue;
        if (!nearest.came_off() || last.state.loss_error < nearest.state.loss_error) nearest = last;
    }
    return nearest;
}

namespace {

constexpr Guess one_way_guesses[] = {
    {.other = true}, {.hidden = ExtremeSide::zero}, {.hidden = ExtremeSide::zero, .other = true}};
constexpr Guess two_way_guesses[] = {{.other_output = true}, {.other = true}, {.other = true, .other_output = true}};

std::span<const Guess> further_guesses(const LadderAttempt& attempt) {
    if (attempt.searched) return std::span(one_way_guesses).first(1);
    if (attempt.direction == Direction::two_way) return two_way_guesses;
    return one_way_guesses;
}

// Halves that fit belong to one network.
bool is_settled(const LadderAttempt& attempt, const LadderOutcome& nearest) {
    return nearest.came_off() && (attempt.direction == Direction::two_way || nearest.is_trusted());
}

// From one end a removal is refused for the kind of the hidden branch where lines follow, else for another reason.
bool is_open(const Guess& guess, const LadderAttempt& attempt, const LadderOutcome& last) {
    const LadderProblem& problem = last.state.problem;
    const bool lines = problem.unit_elements > 0;
    if (!hides_branch(problem, last.state.ladder.selection)) return false;
    if (guess.hidden == ExtremeSide::zero && (!lines || !guess.other)) return lines;
    switch (last.fault) {
        case SynthesisFault::none:
        case SynthesisFault::element_missing:
        case SynthesisFault::runs_differ:
        case SynthesisFault::loss_differs: return true;
        case SynthesisFault::script_refused:
            return lines || attempt.searched || attempt.direction == Direction::two_way;
        default: return false;
    }
}

LadderOutcome build(const LadderTask& task, const LadderAttempt& attempt, const Guess& guess) {
    LadderOutcome out;
    out.circuit = task.former;
    SynthesisState& state = out.state;
    state.problem = task.problem;
    const bool dual = task.request.dual != attempt.dual;
    out.fault = extract(task, attempt, guess, dual, state);
    if (out.came_off() && !task.request.manual_selection && nearer_as_dual(state)) {
        out.fault = extract(task, attempt, guess, !dual, state);
    }
    if (!out.came_off()) {
        if (task.watcher.stopped()) out.fault = SynthesisFault::stopped;
        return out;
    }
    settle_levels(state);
    if (storeResult(state.problem, state.ladder, state.terminations, out.circuit) != CircuitVerdict::done) {
        out.fault = SynthesisFault::storage_full;
        return out;
    }
    describe(task, out.circuit);
    state.negative_elements = negative_values(out.circuit);
    state.loss = compare_loss(task.xp, task.spec, out.circuit);
    state.loss_error = state.loss.largest();
    if (!(state.loss_error <= loss_failure_limit) || !is_finite(out.circuit)) out.fault = SynthesisFault::loss_differs;
    return out;
}

SynthesisFault extract(const LadderTask& task, const LadderAttempt& attempt, const Guess& guess, bool dual,
                       SynthesisState& state) {
    if (attempt.direction == Direction::two_way) return extract_two_way(guess, dual, task.watcher, state);
    Selection selection;
    if (const SynthesisFault chosen = choose(task, attempt, guess, dual, selection); chosen != SynthesisFault::none) {
        return chosen;
    }
    const LadderProblem& problem = state.problem;
    const SynthesisFault fault = attempt.searched ? search(task, attempt, selection, state)
                                                  : run_fixed_order(attempt, guess, selection, task.watcher, state);
    if (fault != SynthesisFault::none) return fault;
    state.requested_ratio = problem.single_termination ? 0 : problem.other_resistance / problem.own_resistance;
    state.terminations = {problem.own_resistance, 0};
    Circuit whole;
    if (storeResult(problem, state.ladder, {problem.own_resistance, problem.own_resistance}, whole) !=
        CircuitVerdict::done) {
        return SynthesisFault::storage_full;
    }
    if (!problem.single_termination &&
        !far_termination(problem, state.ladder, state.terminations.own, state.terminations.far)) {
        return SynthesisFault::loss_differs;
    }
    const double out = state.terminations.far / state.terminations.own;
    state.available_ratio = selection.output_side ? 1 / out : out;
    return SynthesisFault::none;
}

// Both selections belong to one network. The level at which its halves fit is the ratio of its terminations.
SynthesisFault extract_two_way(const Guess& guess, bool dual, Watcher& watcher, SynthesisState& state) {
    const LadderProblem& problem = state.problem;
    state.two_way = false;
    Selection input, output;
    if (chooseImmittance(problem, false, dual, input, guess.other) != ChoiceFault::none ||
        chooseImmittance(problem, true, dual, output, guess.other_output) != ChoiceFault::none) {
        return SynthesisFault::immittance_missing;
    }
    TwoWayScripts scripts;
    if (!two_way_scripts(problem, input, output, scripts)) return SynthesisFault::no_two_way;
    LadderState forward = start_state(problem, input);
    LadderState reverse = start_state(problem, output);
    state.script_verdict = run_two_way(problem, scripts, watcher, forward, reverse);
    state.script = scripts.JCONF;
    state.JREV = scripts.JREV;
    state.ladder = forward;
    if (!state.script_verdict.good()) return SynthesisFault::script_refused;
    if (!join_runs(forward, reverse, state.ladder, state.join)) return SynthesisFault::runs_differ;
    state.two_way = true;
    state.requested_ratio = problem.other_resistance / problem.own_resistance;
    state.available_ratio = static_cast<double>(rounded(state.join.RATIO(1)));
    return SynthesisFault::none;
}

SynthesisFault choose(const LadderTask& task, const LadderAttempt& attempt, const Guess& guess, bool dual,
                      Selection& selection) {
    const SynthesisRequest& request = task.request;
    const bool output_side = attempt.direction == Direction::reverse;
    if (request.manual_selection) {
        if (output_side && task.problem.single_termination) return SynthesisFault::immittance_missing;
        selection = {request.numerator, request.denominator, request.form, output_side};
        WorkingFunction f;
        return formWorkingFunction(task.problem, selection, f) ? SynthesisFault::none
                                                               : SynthesisFault::selection_missing;
    }
    switch (chooseImmittance(task.problem, output_side, dual, selection, guess.other)) {
        case ChoiceFault::none: return SynthesisFault::none;
        case ChoiceFault::not_realizable: return SynthesisFault::not_realizable;
        case ChoiceFault::not_found: break;
    }
    return SynthesisFault::immittance_missing;
}

SynthesisFault search(const LadderTask& task, const LadderAttempt& attempt, const Selection& selection,
                      SynthesisState& state) {
    const LadderProblem& problem = state.problem;
    state.searched = true;
    state.ladder.selection = selection;
    state.search = search_order(problem, selection, attempt.bounds, task.watcher, state.script, state.ladder);
    if (state.search == SearchVerdict::stopped) return SynthesisFault::stopped;
    if (state.search != SearchVerdict::found) return SynthesisFault::script_refused;
    if (state.ladder.nz + state.ladder.ni == 0 || record_hidden_branch(problem, state.ladder)) {
        return SynthesisFault::none;
    }
    return SynthesisFault::element_missing;
}

// A branch that the immittance hides is left when the reactance is used up.
SynthesisFault run_fixed_order(const LadderAttempt& attempt, const Guess& guess, const Selection& selection,
                               Watcher& watcher, SynthesisState& state) {
    const LadderProblem& problem = state.problem;
    LadderState& ladder = state.ladder;
    state.script = automatic_script(problem, selection, attempt.quadruplets, guess.hidden);
    ladder = start_state(problem, selection);
    state.script_verdict = run_automatic(problem, state.script, watcher, ladder);
    const bool refused = !state.script_verdict.good();
    if (refused && !ladder.F.vanished()) return SynthesisFault::script_refused;
    if (!refused && ladder.nz + ladder.ni == 0) return SynthesisFault::none;
    if (!record_hidden_branch(problem, ladder)) return SynthesisFault::element_missing;
    if (refused) state.script_verdict = {};
    return SynthesisFault::none;
}

// The dual network has the inverse ratio of terminations.
bool nearer_as_dual(const SynthesisState& state) {
    if (state.problem.single_termination) return false;
    const double wanted = std::log(state.requested_ratio);
    const double found = std::log(std::fabs(state.available_ratio));
    return std::fabs(found + wanted) < std::fabs(found - wanted) - same_ratio;
}

// R1 is the one asked for, R2 follows.
void settle_levels(SynthesisState& state) {
    const double r1 = state.problem.own_resistance;
    const double r2 = state.problem.single_termination ? 0 : r1 * state.available_ratio;
    const bool output = state.ladder.selection.output_side;
    state.terminations = {output ? r2 : r1, output ? r1 : r2};
}

int negative_values(const Circuit& circuit) {
    int count = 0;
    for (int i = 1; i <= circuit.ilast; ++i) count += circuit.VALUE(i) < 0 ? 1 : 0;
    return count;
}

void describe(const LadderTask& task, Circuit& circuit) {
    const FilterSpec& spec = task.spec;
    circuit.fa = spec.filterType == low_pass || spec.filterType == linear_phase_low_pass ? 0 : spec.lowerPassEdge;
    circuit.fb = spec.filterType == high_pass ? 0 : spec.upperPassEdge;
    circuit.fnorm = static_cast<double>(task.xp.normFrequency);
    // Lines have no modes in s.
    circuit.mode_count = 0;
    if (spec.medium == microwave) return;
    const TransferFunction transfer = xToFrequencyPlane(spec, task.xp);
    for (int i = 1; i <= transfer.poleCount && i <= max_natural_modes; ++i) {
        circuit.MODE_RE(++circuit.mode_count) = transfer.POLES_RE(i) / transfer.normFrequency;
        circuit.MODE_IM(circuit.mode_count) = transfer.POLES_IM(i) / transfer.normFrequency;
    }
}

}  // namespace

}  // namespace kavrel
