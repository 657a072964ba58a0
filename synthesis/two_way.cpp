#include "synthesis/two_way.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace kavrel {

namespace {

using Steps = std::vector<StepKind>;  // in the order of removal
using StepZeros = Table<int, 2>;      // numbers of the zeros of a step, 0: none

[[nodiscard]] bool is_complete(StepKind kind);
[[nodiscard]] bool is_double(StepKind kind);
[[nodiscard]] bool share_pole(StepKind p, StepKind q);

[[nodiscard]] bool ends_shifts(const Steps& steps, std::size_t j);
[[nodiscard]] Steps steps_from_input(const LadderProblem& problem, const Selection& input);
void share(const Steps& steps, Steps& forward, Steps& rest);
void append_steps(const Steps& steps, Script& script, int& count, Table<int, script_limit>& end);

void leave_out(const LadderProblem& problem, const LadderState& taken, LadderState& state);
[[nodiscard]] ScriptVerdict advance(const LadderProblem& problem, const Script& script, int to, Watcher& watcher,
                                    LadderState& state);
[[nodiscard]] StepZeros zeros_between(const LadderProblem& problem, const LadderState& before,
                                      const LadderState& after);
void cut_to_preparation(StepKind kind, Script& script);
void put_in_middle(const Table<StepZeros, 2>& last, TwoWayScripts& scripts, LadderState& forward);

void level_ratios(const LadderState& forward, const LadderState& reverse, bool output_open, bool input_open,
                  Join& join);
[[nodiscard]] WideReal remainder_impedance(const LadderState& state, const WideReal& s);
[[nodiscard]] WideReal branch_impedance(const LadderState& state, bool open, const WideReal& s);
void append_record(const LadderState& from, int k, const WideReal& level, LadderState& joined);

}  // namespace

bool two_way_scripts(const LadderProblem& problem, const Selection& input, const Selection& output,
                     TwoWayScripts& scripts) {
    scripts = {};
    for (int i = 1; i <= problem.zero_count; ++i) {
        if (problem.is_complex(i)) return false;
    }
    if (problem.unit_elements > 0 || problem.single_termination) return false;
    const Steps steps = steps_from_input(problem, input);
    Steps forward, rest;
    share(steps, forward, rest);
    if (forward.empty() || rest.empty()) return false;

    const auto begin = [](Script& script, const Selection& selection) {
        script.append(selection.output_side ? "out" : "in");
        script.append(word_of(selection.numerator));
        script.append(word_of(selection.denominator));
    };
    begin(scripts.JCONF, input);
    append_steps(forward, scripts.JCONF, scripts.forward_steps, scripts.forward_end);
    scripts.JCONF.append("prin end");
    scripts.prin = scripts.JCONF.count - 1;
    begin(scripts.JREV, output);
    append_steps({rest.rbegin(), rest.rend()}, scripts.JREV, scripts.reverse_steps, scripts.reverse_end);
    if (!is_complete(rest.front())) {
        scripts.middle(++scripts.middle_count) = rest.front();
        if (rest.size() > 1 && !is_complete(rest[1]) && !share_pole(rest[0], rest[1])) {
            scripts.middle(++scripts.middle_count) = rest[1];
            cut_to_preparation(rest.front(), scripts.JREV);
            scripts.reverse_end(scripts.reverse_steps) = scripts.JREV.count;
        }
    }
    scripts.JREV.append("end");
    return true;
}

ScriptVerdict run_two_way(const LadderProblem& problem, TwoWayScripts& scripts, Watcher& watcher, LadderState& forward,
                          LadderState& reverse) {
    Table<StepZeros, 2> last;  // of the reverse run, the last step first
    for (int i = 1; i <= scripts.forward_steps || i <= scripts.reverse_steps; ++i) {
        if (i <= scripts.forward_steps) {
            leave_out(problem, reverse, forward);
            const ScriptVerdict verdict = advance(problem, scripts.JCONF, scripts.forward_end(i), watcher, forward);
            if (!verdict.good()) return verdict;
        }
        if (i <= scripts.reverse_steps) {
            leave_out(problem, forward, reverse);
            const LadderState before = reverse;
            const ScriptVerdict verdict = advance(problem, scripts.JREV, scripts.reverse_end(i), watcher, reverse);
            if (!verdict.good()) return verdict;
            last(2) = last(1);
            last(1) = zeros_between(problem, before, reverse);
        }
    }
    put_in_middle(last, scripts, forward);
    const ScriptVerdict verdict = runScript(problem, scripts.JREV, watcher, reverse);
    return verdict.good() ? runScript(problem, scripts.JCONF, watcher, forward) : verdict;
}

bool join_runs(const LadderState& forward, const LadderState& reverse, LadderState& joined, Join& join) {
    join = {};
    if (forward.quadruplet_count > 0 || reverse.quadruplet_count > 0) return false;
    if (forward.record_count + reverse.record_count > record_limit) return false;
    // Either far end is open or short: as all points agree best.
    bool found = false;
    for (const bool output_open : {true, false}) {
        for (const bool input_open : {true, false}) {
            Join trial;
            level_ratios(forward, reverse, output_open, input_open, trial);
            if (!(trial.difference <= same_level) || (found && trial.difference >= join.difference)) continue;
            found = true;
            join = trial;
        }
    }
    if (!found || !(join.RATIO(1) > 0)) return false;
    joined = forward;
    for (int k = reverse.record_count; k >= 1; --k) append_record(reverse, k, join.RATIO(1), joined);
    join.forward_records = forward.record_count;
    joined.nz = joined.ni = joined.ue = 0;
    joined.IC.fill(0);
    joined.finished = true;
    return true;
}

namespace {

bool is_complete(StepKind kind) { return kind <= StepKind::admittance_infinity; }
[[nodiscard]] bool uses_zero(StepKind kind) {
    switch (kind) {
        case StepKind::impedance_zero:
        case StepKind::admittance_zero:
        case StepKind::impedance_shift_zero:
        case StepKind::admittance_shift_zero:
        case StepKind::impedance_double:
        case StepKind::admittance_double: return true;
        default: return false;
    }
}
bool is_double(StepKind kind) { return kind == StepKind::impedance_double || kind == StepKind::admittance_double; }
[[nodiscard]] bool uses_infinity(StepKind kind) { return is_double(kind) || !uses_zero(kind); }
bool share_pole(StepKind p, StepKind q) {
    return (uses_zero(p) && uses_zero(q)) || (uses_infinity(p) && uses_infinity(q));
}
[[nodiscard]] int degree_of(StepKind kind) { return is_complete(kind) ? 1 : is_double(kind) ? 4 : 2; }

// Finite zeros by shifting from the pole of their own side, then what is left of the poles. Where both poles are in one
// form a low and a high zero go together, where they are in different forms by turns.
Steps steps_from_input(const LadderProblem& problem, const Selection& input) {
    PoleForms forms = pole_forms(problem, input);
    int low = 0;   // to be shifted from zero
    int high = 0;  // from infinity
    for (int i = 1; i <= problem.zero_count; ++i) {
        const bool from_infinity = problem.is_high(i) ? problem.zeros_at_infinity > 0 : problem.zeros_at_zero == 0;
        ++(from_infinity ? high : low);
    }
    Steps steps;
    const auto add = [&](int form, StepKind on_impedance, StepKind on_admittance) {
        steps.push_back(form == impedance ? on_impedance : on_admittance);
    };
    const auto turn = [](int& form) { form = form == impedance ? admittance : impedance; };
    for (; low > 0 && high > 0 && forms.zero == forms.infinity; --low, --high) {
        add(forms.zero, StepKind::impedance_double, StepKind::admittance_double);
    }
    while (low > 0 || high > 0) {
        if (low-- > 0) add(forms.zero, StepKind::impedance_shift_zero, StepKind::admittance_shift_zero);
        if (high-- > 0) add(forms.infinity, StepKind::impedance_shift_infinity, StepKind::admittance_shift_infinity);
    }
    for (int i = 1; i <= std::max(problem.zeros_at_zero, problem.zeros_at_infinity); ++i) {
        if (i <= problem.zeros_at_zero) add(forms.zero, StepKind::impedance_zero, StepKind::admittance_zero);
        turn(forms.zero);
        if (i <= problem.zeros_at_infinity) {
            add(forms.infinity, StepKind::impedance_infinity, StepKind::admittance_infinity);
        }
        turn(forms.infinity);
    }
    return steps;
}

// Whether step j is the first complete removal of a pole that steps before have shifted from.
bool ends_shifts(const Steps& steps, std::size_t j) {
    bool shifted = false;
    for (std::size_t i = 0; i < j; ++i) {
        if (!share_pole(steps[i], steps[j])) continue;
        if (is_complete(steps[i])) return false;
        shifted = true;
    }
    return shifted && is_complete(steps[j]);
}

// At half of the degree. The removal that ends the shifts of a pole is no complete one from the output: it is the
// forward run's when the reverse run does not shift from that pole; otherwise it is a middle branch.
void share(const Steps& steps, Steps& forward, Steps& rest) {
    int total = 0;
    for (std::size_t j = 0; j < steps.size(); ++j) {
        if (!ends_shifts(steps, j)) total += degree_of(steps[j]);
    }
    std::size_t mid = 0;
    for (int done = 0; mid < steps.size() && 2 * done + degree_of(steps[mid]) <= total; ++mid) {
        done += degree_of(steps[mid]);
    }
    forward.assign(steps.begin(), steps.begin() + static_cast<Steps::difference_type>(mid));
    for (std::size_t j = mid; j < steps.size(); ++j) {
        if (!ends_shifts(steps, j))
            rest.push_back(steps[j]);
        else if (std::none_of(rest.begin(), rest.end(), [&](StepKind kind) { return share_pole(kind, steps[j]); }))
            forward.push_back(steps[j]);
    }
}

void append_steps(const Steps& steps, Script& script, int& count, Table<int, script_limit>& end) {
    for (const StepKind kind : steps) {
        append_step(script, kind);
        end(++count) = script.count;
    }
}

// A zero that one run has taken is none of the other's.
void leave_out(const LadderProblem& problem, const LadderState& taken, LadderState& state) {
    for (int i = 1; i <= problem.zero_count; ++i) state.IC(i) = std::min(state.IC(i), taken.IC(i));
}

ScriptVerdict advance(const LadderProblem& problem, const Script& script, int to, Watcher& watcher,
                      LadderState& state) {
    Script part = script;
    part.count = to;
    return runScript(problem, part, watcher, state);
}

// Zeros that a step has taken, or prepared.
StepZeros zeros_between(const LadderProblem& problem, const LadderState& before, const LadderState& after) {
    StepZeros zeros;
    int count = 0;
    for (int i = 1; i <= problem.zero_count && count < 2; ++i) {
        const bool prepared = after.prepared_count > 0 && after.prepared_zero(1) == i;
        if (prepared || before.IC(i) != after.IC(i)) zeros(++count) = i;
    }
    return zeros;
}

// "imp s p z 1" of "imp s p z 1 adm s c 1".
void cut_to_preparation(StepKind kind, Script& script) { script.count -= is_double(kind) ? 8 : 4; }

void put_in_middle(const Table<StepZeros, 2>& last, TwoWayScripts& scripts, LadderState& forward) {
    scripts.JCONF.count = scripts.prin;
    for (int i = 1; i <= scripts.middle_count; ++i) {
        append_step(scripts.JCONF, scripts.middle(i), last(i)(1), last(i)(2));
        if (i == scripts.middle_count) cut_to_preparation(scripts.middle(i), scripts.JCONF);
        for (const int zero : last(i)) {
            if (zero > 0) forward.IC(zero) = 1;
        }
    }
    scripts.JCONF.append("end");
}

// What a run leaves is the other run's ladder seen from the join.
void level_ratios(const LadderState& forward, const LadderState& reverse, bool output_open, bool input_open,
                  Join& join) {
    for (const long double s : {0.5L, 2.0L}) {
        join.RATIO(++join.ratio_count) = remainder_impedance(forward, s) / branch_impedance(reverse, output_open, s);
        join.RATIO(++join.ratio_count) = branch_impedance(forward, input_open, s) / remainder_impedance(reverse, s);
    }
    for (int i = 2; i <= join.ratio_count; ++i) {
        const auto off = static_cast<double>(rounded(abs(join.RATIO(i) / join.RATIO(1) - 1)));
        join.difference =
            std::fmax(join.difference, std::isfinite(off) ? off : std::numeric_limits<double>::infinity());
    }
}

// In units of the run's own resistor.
WideReal remainder_impedance(const LadderState& state, const WideReal& s) {
    const WideReal x = (s * s + state.F.x0) / (s * s + 1);
    const WideReal value = s * quotient_at(state.F, x);
    return state.form == impedance ? value : 1 / value;
}

// Of the branches alone, from the port that the run began at.
WideReal branch_impedance(const LadderState& state, bool open, const WideReal& s) {
    WideReal value = 0;
    int form = open ? admittance : impedance;
    for (int k = 1; k <= state.record_count; ++k) {
        const WideReal v1 = state.SVAL1(k);
        const WideReal v2 = state.SVAL2(k);
        const int of_branch = state.MIND(k) % 2 == 1 ? impedance : admittance;
        if (of_branch != form) {
            if (value.sign() == 0) continue;  // in series with an open end, across a short
            value = 1 / value;
            form = of_branch;
        }
        if (v2.sign() == 0)
            value += s * v1;
        else if (v1.sign() == 0)
            value += 1 / (s * v2);
        else
            value += 1 / (1 / (s * v1) + s * v2);
    }
    return form == impedance ? value : 1 / value;
}

// Normalised to R2 there, to R1 here.
void append_record(const LadderState& from, int k, const WideReal& level, LadderState& joined) {
    const int to = ++joined.record_count;
    const bool series = from.MIND(k) % 2 == 1;
    joined.SVAL1(to) = series ? from.SVAL1(k) * level : from.SVAL1(k) / level;
    joined.SVAL2(to) = series ? from.SVAL2(k) / level : from.SVAL2(k) * level;
    joined.SFR(to) = from.SFR(k);
    joined.MIND(to) = from.MIND(k);
    joined.SIMP(to) = from.SIMP(k);
}

}  // namespace

}  // namespace kavrel
