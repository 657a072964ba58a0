#include "synthesis/synthesise.h"

#include <cmath>

#include "approximation/s_plane.h"

namespace kavrel {
namespace {

// One way to the ladder: the end to begin at, the dual, the place of the quadruplets.
struct Road {
    bool output_side = false;
    bool dual = false;
    QuadrupletPlace quadruplets = QuadrupletPlace::first;
    bool other = false;                          // of two immittances that hide a branch the second
    ExtremeSide hidden = ExtremeSide::infinity;  // with lines, the kind of the hidden branch
    bool searched = false;  // no fixed order of removals: one that leaves all elements positive is looked for
    bool two_way = false;   // from both ends; `other` is of the input then
    bool other_output = false;
};

constexpr double same_ratio = 1e-9;  // of terminations, as difference of logarithms

[[nodiscard]] bool begins_at_both_ends(const LadderProblem& problem, const SynthesisRequest& request);
[[nodiscard]] bool order_sets_level(const LadderProblem& problem);
[[nodiscard]] double distance_of_ratio(const SynthesisState& state);
[[nodiscard]] bool is_better(const SynthesisState& trial, const SynthesisState& former, bool nearest);
[[nodiscard]] SynthesisFault build_two_way(const XPlane& xp, const FilterSpec& spec, const SynthesisRequest& request,
                                           SynthesisState& state, Circuit& circuit);
[[nodiscard]] SynthesisFault build_one_way(const XPlane& xp, const FilterSpec& spec, const SynthesisRequest& request,
                                           SynthesisState& state, Circuit& circuit);

[[nodiscard]] SynthesisFault build(const XPlane& xp, const FilterSpec& spec, const SynthesisRequest& request, Road road,
                                   SynthesisState& state, Circuit& circuit);
[[nodiscard]] SynthesisFault build_with_hidden_branch(const XPlane& xp, const FilterSpec& spec,
                                                      const SynthesisRequest& request, Road road, SynthesisState& state,
                                                      Circuit& circuit);
[[nodiscard]] SynthesisFault extract(const SynthesisRequest& request, const Road& road, SynthesisState& state);
[[nodiscard]] SynthesisFault extract_two_way(const Road& road, SynthesisState& state);
[[nodiscard]] SynthesisFault choose(const LadderProblem& problem, const SynthesisRequest& request, const Road& road,
                                    Selection& selection);
void search_positive(const XPlane& xp, const FilterSpec& spec, const SynthesisRequest& request,
                     const SynthesisState& start, bool found, SynthesisState& state, Circuit& circuit);
[[nodiscard]] bool nearer_as_dual(const SynthesisState& state);
void settle_levels(SynthesisState& state);
[[nodiscard]] int negative_values(const Circuit& circuit);
void describe(const XPlane& xp, const FilterSpec& spec, Circuit& circuit);

}  // namespace

// The first road that needs no negative element is taken, that from both ends first; of these the one with the nearest
// terminations where both ends are begun at. Where none of the fixed ones does, an order of removals is looked for;
// without one, the road that needs least negative elements is taken.
SynthesisVerdict synthesise(const XPlane& xp, const FilterSpec& spec, const SynthesisRequest& request,
                            SynthesisState& state, Circuit& circuit) {
    state = {};
    if (!ladder_problem(xp, spec, state.problem)) return {SynthesisFault::polynomials_missing};
    const LadderProblem& problem = state.problem;
    for (int i = 1; i <= problem.zero_count; ++i) {
        if (problem.is_complex(i) && problem.zero_x_im(i).sign() == 0) return {SynthesisFault::real_zero};
    }

    SynthesisState both = state;
    Circuit joined = circuit;
    SynthesisFault fault = SynthesisFault::no_two_way;
    if (begins_at_both_ends(problem, request)) fault = build_two_way(xp, spec, request, both, joined);
    if (request.direction != Direction::two_way) {
        const bool two_way =
            fault == SynthesisFault::none && both.negative_elements == 0 && both.loss_error <= trusted_loss;
        if (!two_way || order_sets_level(problem)) {
            fault = build_one_way(xp, spec, request, state, circuit);
            const bool good =
                fault == SynthesisFault::none && state.negative_elements == 0 && state.loss_error <= trusted_loss;
            if (!two_way || (good && distance_of_ratio(state) < distance_of_ratio(both) - same_ratio)) return {fault};
        }
        fault = SynthesisFault::none;
    }
    state = both;
    if (fault == SynthesisFault::none) circuit = joined;
    return {fault};
}

namespace {

bool begins_at_both_ends(const LadderProblem& problem, const SynthesisRequest& request) {
    if (request.direction == Direction::two_way) return true;
    return request.direction == Direction::automatic && !request.manual_selection && !problem.single_termination &&
           problem.polynomials.degree >= two_way_degree;
}

// Where neither frequency zero nor infinity passes a signal, which would tell the ratio of the terminations, ladders
// with different orders of removals have different ones. Lines are a quarter wave long at infinity.
bool order_sets_level(const LadderProblem& problem) {
    return problem.zeros_at_zero > 0 && (problem.zeros_at_infinity > 0 || problem.unit_elements > 0);
}

double distance_of_ratio(const SynthesisState& state) {
    return std::fabs(std::log(std::fabs(state.available_ratio / state.requested_ratio)));
}

// Where each end hides a branch, which of its two immittances belong to one network shows in the circuit only.
SynthesisFault build_two_way(const XPlane& xp, const FilterSpec& spec, const SynthesisRequest& request,
                             SynthesisState& state, Circuit& circuit) {
    const SynthesisState start = state;
    SynthesisFault fault = SynthesisFault::none;
    for (const bool other_input : {false, true}) {
        for (const bool other_output : {false, true}) {
            const Road road{.dual = request.dual, .other = other_input, .two_way = true, .other_output = other_output};
            state = start;
            fault = build(xp, spec, request, road, state, circuit);
            if (fault == SynthesisFault::none || !hides_branch(state.problem, state.ladder.selection)) return fault;
        }
    }
    return fault;
}

SynthesisFault build_one_way(const XPlane& xp, const FilterSpec& spec, const SynthesisRequest& request,
                             SynthesisState& state, Circuit& circuit) {
    const SynthesisState start = state;
    bool complex_zeros = false;
    for (int i = 1; i <= state.problem.zero_count; ++i) {
        complex_zeros = complex_zeros || state.problem.is_complex(i);
    }
    SynthesisFault first_fault = SynthesisFault::none;
    bool found = false;
    Circuit best = circuit;
    const bool nearest = begins_at_both_ends(state.problem, request) && order_sets_level(state.problem);
    for (const bool output_side : {false, true}) {
        const bool asked = request.direction == Direction::reverse;
        if (request.direction != Direction::automatic && output_side != asked) continue;
        if (output_side && state.problem.single_termination && !asked) continue;
        bool positive = false;  // a ladder from this end
        for (const QuadrupletPlace place :
             {QuadrupletPlace::first, QuadrupletPlace::behind_shunts, QuadrupletPlace::last}) {
            if (place != QuadrupletPlace::first && !complex_zeros) continue;
            if (positive || (found && state.negative_elements == 0 && !nearest)) break;
            SynthesisState trial = start;
            Circuit made = circuit;
            const Road road{.output_side = output_side, .dual = request.dual, .quadruplets = place};
            const SynthesisFault fault = build_with_hidden_branch(xp, spec, request, road, trial, made);
            if (fault != SynthesisFault::none) {
                if (first_fault == SynthesisFault::none) {
                    first_fault = fault;
                    if (!found) state = trial;
                }
                continue;
            }
            positive = trial.negative_elements == 0;
            if (found && !is_better(trial, state, nearest)) continue;
            found = true;
            state = trial;
            best = made;
        }
    }
    const bool to_be_searched = found ? state.negative_elements > 0 : first_fault == SynthesisFault::script_refused;
    if (to_be_searched && state.problem.zero_count > 0) {
        search_positive(xp, spec, request, start, found, state, best);
        found = found || state.search == SearchVerdict::found;
    }
    if (!found) return first_fault;
    circuit = best;
    return SynthesisFault::none;
}

// Fewer negative elements, then, where `nearest` is asked for, terminations nearer to the request.
bool is_better(const SynthesisState& trial, const SynthesisState& former, bool nearest) {
    if (trial.negative_elements != former.negative_elements) {
        return trial.negative_elements < former.negative_elements;
    }
    return nearest && distance_of_ratio(trial) < distance_of_ratio(former) - same_ratio;
}

SynthesisFault build(const XPlane& xp, const FilterSpec& spec, const SynthesisRequest& request, Road road,
                     SynthesisState& state, Circuit& circuit) {
    if (const SynthesisFault fault = extract(request, road, state); fault != SynthesisFault::none) return fault;
    if (!request.manual_selection && nearer_as_dual(state)) {
        road.dual = !road.dual;
        if (const SynthesisFault fault = extract(request, road, state); fault != SynthesisFault::none) return fault;
    }
    settle_levels(state);
    if (storeResult(state.problem, state.ladder, state.terminations, circuit) != CircuitVerdict::done) {
        return SynthesisFault::storage_full;
    }
    describe(xp, spec, circuit);
    state.negative_elements = negative_values(circuit);
    state.loss = compare_loss(xp, spec, circuit);
    state.loss_error = state.loss.largest();
    return state.loss_error <= loss_failure_limit ? SynthesisFault::none : SynthesisFault::loss_differs;
}

// What kind of branch an immittance hides, if any, and which of two immittances to take, shows in the circuit only: of
// those that come near the loss, as both do in a narrow band, the nearest one is right.
SynthesisFault build_with_hidden_branch(const XPlane& xp, const FilterSpec& spec, const SynthesisRequest& request,
                                        Road road, SynthesisState& state, Circuit& circuit) {
    const SynthesisState start = state;
    SynthesisState first_failure, best;
    SynthesisFault first_fault = SynthesisFault::none;
    Circuit made = circuit;
    bool found = false;
    for (const ExtremeSide hidden : {ExtremeSide::infinity, ExtremeSide::zero}) {
        if (hidden == ExtremeSide::zero && start.problem.unit_elements == 0) break;
        for (const bool other : {false, true}) {
            road.hidden = hidden;
            road.other = other;
            state = start;
            const SynthesisFault fault = build(xp, spec, request, road, state, made);
            if (fault == SynthesisFault::none) {
                if (!found || state.loss_error < best.loss_error) {
                    found = true;
                    best = state;
                    circuit = made;
                }
                if (best.loss_error <= trusted_loss || !hides_branch(start.problem, state.ladder.selection)) break;
                continue;
            }
            if (first_fault == SynthesisFault::none) {
                first_fault = fault;
                first_failure = state;
            }
            const bool may_be_hidden = fault == SynthesisFault::loss_differs ||
                                       fault == SynthesisFault::element_missing ||
                                       (fault == SynthesisFault::script_refused && start.problem.unit_elements > 0);
            if (!may_be_hidden) break;
        }
        if (found && best.loss_error <= trusted_loss) break;
    }
    state = found ? best : first_failure;
    return found ? SynthesisFault::none : first_fault;
}

// From one end: every order from the other end is one from this end backwards. But where the work runs out, it may be
// met sooner from there. The dual network has the same losses; its terminations are the same when they are equal.
void search_positive(const XPlane& xp, const FilterSpec& spec, const SynthesisRequest& request,
                     const SynthesisState& start, bool found, SynthesisState& state, Circuit& circuit) {
    const bool either_end = request.direction == Direction::automatic && !start.problem.single_termination;
    const bool asked = request.direction == Direction::reverse;
    SearchVerdict verdict = SearchVerdict::none_exists;
    for (const bool turned : {false, true}) {
        if (turned && (request.manual_selection || spec.sourceResistance != spec.loadResistance)) break;
        bool given_up = false;
        for (const bool output_side : {asked, !asked}) {
            if (output_side != asked && !(either_end && given_up)) break;
            SynthesisState trial = start;
            Circuit made = circuit;
            const Road road{.output_side = output_side, .dual = request.dual != turned, .searched = true};
            const SynthesisFault fault = build(xp, spec, request, road, trial, made);
            if (fault == SynthesisFault::none && (!found || trial.negative_elements < state.negative_elements)) {
                state = trial;
                circuit = made;
                state.searched = true;
                state.search = SearchVerdict::found;
                return;
            }
            given_up = trial.search == SearchVerdict::given_up;
            if (given_up) verdict = trial.search;
        }
    }
    state.searched = true;
    state.search = verdict;
}

SynthesisFault choose(const LadderProblem& problem, const SynthesisRequest& request, const Road& road,
                      Selection& selection) {
    if (request.manual_selection) {
        selection = {request.numerator, request.denominator, request.form, road.output_side};
        WorkingFunction f;
        return formWorkingFunction(problem, selection, f) ? SynthesisFault::none : SynthesisFault::selection_missing;
    }
    switch (chooseImmittance(problem, road.output_side, road.dual, selection, road.other)) {
        case ChoiceFault::none: return SynthesisFault::none;
        case ChoiceFault::not_realizable: return SynthesisFault::not_realizable;
        case ChoiceFault::not_found: break;
    }
    return SynthesisFault::immittance_missing;
}

SynthesisFault extract(const SynthesisRequest& request, const Road& road, SynthesisState& state) {
    if (road.two_way) return extract_two_way(road, state);
    Selection selection;
    if (const SynthesisFault fault = choose(state.problem, request, road, selection); fault != SynthesisFault::none) {
        return fault;
    }
    if (road.searched) {
        state.search = positive_script(state.problem, selection, state.script, state.ladder);
        if (state.search != SearchVerdict::found) return SynthesisFault::script_refused;
        state.last_stage = state.script.count - state.problem.unit_elements;
    } else {
        state.script = automatic_script(state.problem, selection, state.last_stage, road.quadruplets, road.hidden);
        state.ladder = start_state(state.problem, selection);
        state.script_verdict = run_automatic(state.problem, state.script, state.ladder);
        if (!state.script_verdict.good()) {
            if (!state.ladder.F.vanished()) return SynthesisFault::script_refused;
            if (!record_hidden_branch(state.problem, state.ladder)) return SynthesisFault::element_missing;
            state.script_verdict = {};
        } else if (state.ladder.nz + state.ladder.ni > 0 && !record_hidden_branch(state.problem, state.ladder)) {
            return SynthesisFault::element_missing;
        }
    }

    const LadderProblem& problem = state.problem;
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
SynthesisFault extract_two_way(const Road& road, SynthesisState& state) {
    const LadderProblem& problem = state.problem;
    state.two_way = false;
    Selection input, output;
    if (chooseImmittance(problem, false, road.dual, input, road.other) != ChoiceFault::none ||
        chooseImmittance(problem, true, road.dual, output, road.other_output) != ChoiceFault::none) {
        return SynthesisFault::immittance_missing;
    }
    TwoWayScripts scripts;
    if (!two_way_scripts(problem, input, output, scripts)) return SynthesisFault::no_two_way;
    LadderState forward = start_state(problem, input);
    LadderState reverse = start_state(problem, output);
    state.script_verdict = run_two_way(problem, scripts, forward, reverse);
    state.script = scripts.JCONF;
    state.JREV = scripts.JREV;
    state.last_stage = scripts.prin;
    state.ladder = forward;
    if (!state.script_verdict.good()) return SynthesisFault::script_refused;
    if (!join_runs(forward, reverse, state.ladder, state.join)) return SynthesisFault::runs_differ;
    state.two_way = true;
    state.requested_ratio = problem.other_resistance / problem.own_resistance;
    state.available_ratio = static_cast<double>(state.join.RATIO(1).rounded());
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

void describe(const XPlane& xp, const FilterSpec& spec, Circuit& circuit) {
    circuit.fa = spec.filterType == low_pass || spec.filterType == linear_phase_low_pass ? 0 : spec.lowerPassEdge;
    circuit.fb = spec.filterType == high_pass ? 0 : spec.upperPassEdge;
    circuit.fnorm = static_cast<double>(xp.normFrequency);
    // Lines have no modes in s.
    circuit.mode_count = 0;
    if (spec.medium == microwave) return;
    const TransferFunction transfer = xToFrequencyPlane(spec, xp);
    for (int i = 1; i <= transfer.poleCount && i <= max_natural_modes; ++i) {
        circuit.MODE_RE(++circuit.mode_count) = transfer.POLES_RE(i) / transfer.normFrequency;
        circuit.MODE_IM(circuit.mode_count) = transfer.POLES_IM(i) / transfer.normFrequency;
    }
}

}  // namespace
}  // namespace kavrel
