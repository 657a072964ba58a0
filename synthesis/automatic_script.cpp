#include "synthesis/automatic_script.h"

#include <algorithm>

#include <fmt/format.h>

namespace kavrel {

namespace {

struct ZeroCounts {
    int low = 0;
    int high = 0;
};
struct ExtremeCounts {
    int zero = 0;
    int infinity = 0;
};

void append_quadruplets(const LadderProblem& problem, Script& script, int& next, int at_most);
[[nodiscard]] ZeroCounts finite_zeros(const LadderProblem& problem);
void append_finite_zeros(const LadderProblem& problem, Script& script, const PoleForms& forms, ZeroCounts left);
[[nodiscard]] ExtremeCounts extremes_before_lines(const LadderProblem& problem, const Selection& selection,
                                                  ExtremeSide hidden);
void append_extremes(const LadderProblem& problem, Script& script, PoleForms forms, ExtremeCounts left,
                     bool with_quadruplets, int& next);
[[nodiscard]] bool put_in_zeros(const LadderProblem& problem, Script& script, const LadderState& state);

}  // namespace

void append_step(Script& script, StepKind kind, int m, int n) {
    switch (kind) {
        case StepKind::impedance_zero: return script.append("imp s c z");
        case StepKind::admittance_zero: return script.append("adm s c z");
        case StepKind::impedance_infinity: return script.append("imp s c i");
        case StepKind::admittance_infinity: return script.append("adm s c i");
        case StepKind::impedance_shift_zero: return script.append(fmt::format("imp s p z {} adm s c {}", m, m));
        case StepKind::impedance_shift_infinity: return script.append(fmt::format("imp s p i {} adm s c {}", m, m));
        case StepKind::admittance_shift_zero: return script.append(fmt::format("adm s p z {} imp s c {}", m, m));
        case StepKind::admittance_shift_infinity: return script.append(fmt::format("adm s p i {} imp s c {}", m, m));
        case StepKind::impedance_double:
            return script.append(fmt::format("imp d p z i {} {} adm s c {} adm s c {}", m, n, m, n));
        case StepKind::admittance_double:
            return script.append(fmt::format("adm d p z i {} {} imp s c {} imp s c {}", m, n, m, n));
        case StepKind::impedance_quadruplet: return script.append(fmt::format("imp d c z {}", m));
        case StepKind::admittance_quadruplet: return script.append(fmt::format("adm d c i {}", m));
    }
}

Script automatic_script(const LadderProblem& problem, const Selection& selection, QuadrupletPlace place,
                        ExtremeSide hidden) {
    Script script;
    script.append(selection.output_side ? "out" : "in");
    script.append(word_of(selection.numerator));
    script.append(word_of(selection.denominator));

    const PoleForms forms = pole_forms(problem, selection);
    int next = 1;  // zero from which on quadruplets are left
    if (place == QuadrupletPlace::first) append_quadruplets(problem, script, next, finite_zero_limit);
    append_finite_zeros(problem, script, forms, finite_zeros(problem));
    append_extremes(problem, script, forms, extremes_before_lines(problem, selection, hidden),
                    place == QuadrupletPlace::behind_shunts, next);
    append_quadruplets(problem, script, next, finite_zero_limit);
    for (int i = 1; i <= problem.unit_elements; ++i) script.append("ue");
    script.append("fini");
    return script;
}

PoleForms pole_forms(const LadderProblem& problem, const Selection& selection) {
    WorkingFunction f;
    if (!formWorkingFunction(problem, selection, f)) return {};
    const int other = selection.form == impedance ? admittance : impedance;
    return {has_pole_at_zero(f) ? selection.form : other, has_pole_at_infinity(f) ? selection.form : other};
}

ScriptVerdict run_automatic(const LadderProblem& problem, Script& script, Watcher& watcher, LadderState& state) {
    for (;;) {
        const ScriptVerdict verdict = runScript(problem, script, watcher, state);
        if (verdict.fault != ScriptFault::no_acceptable_zero) return verdict;
        if (!put_in_zeros(problem, script, state)) return verdict;
    }
}

namespace {

// Beside the poles at zero where there is no zero of transmission above the band.
void append_quadruplets(const LadderProblem& problem, Script& script, int& next, int at_most) {
    const ZeroCounts finite = finite_zeros(problem);
    const bool low = problem.zeros_at_zero > 0 || finite.low > 0;
    const bool at_zero = low && problem.zeros_at_infinity == 0 && finite.high == 0;
    for (; next <= problem.zero_count && at_most > 0; ++next) {
        if (!problem.is_complex(next)) continue;
        append_step(script, at_zero ? StepKind::impedance_quadruplet : StepKind::admittance_quadruplet, next);
        --at_most;
    }
}

// On the frequency axis.
ZeroCounts finite_zeros(const LadderProblem& problem) {
    ZeroCounts counts;
    for (int i = 1; i <= problem.zero_count; ++i) {
        if (!problem.is_complex(i)) ++(problem.is_high(i) ? counts.high : counts.low);
    }
    return counts;
}

// Shifting takes from a pole that a zero of transmission will remove.
void append_finite_zeros(const LadderProblem& problem, Script& script, const PoleForms& forms, ZeroCounts left) {
    const StepKind from_zero =
        forms.zero == impedance ? StepKind::impedance_shift_zero : StepKind::admittance_shift_zero;
    const StepKind from_infinity =
        forms.infinity == impedance ? StepKind::impedance_shift_infinity : StepKind::admittance_shift_infinity;
    const StepKind low = problem.zeros_at_zero > 0 ? from_zero : from_infinity;
    const StepKind high = problem.zeros_at_infinity > 0 ? from_infinity : from_zero;
    if (forms.zero == forms.infinity && problem.zeros_at_zero > 0 && problem.zeros_at_infinity > 0) {
        const StepKind both = forms.zero == impedance ? StepKind::impedance_double : StepKind::admittance_double;
        for (; left.low > 0 && left.high > 0; --left.low, --left.high) append_step(script, both);
    }
    while (left.low > 0 || left.high > 0) {
        if (left.low > 0) append_step(script, low), --left.low;
        if (left.high > 0) append_step(script, high), --left.high;
    }
}

ExtremeCounts extremes_before_lines(const LadderProblem& problem, const Selection& selection, ExtremeSide hidden) {
    ExtremeCounts counts{problem.zeros_at_zero, problem.zeros_at_infinity};
    int& count = hidden == ExtremeSide::zero ? counts.zero : counts.infinity;
    if (problem.unit_elements > 0 && count > 0 && hides_branch(problem, selection)) --count;
    return counts;
}

void append_extremes(const LadderProblem& problem, Script& script, PoleForms forms, ExtremeCounts left,
                     bool with_quadruplets, int& next) {
    const auto remove = [&](int& form, StepKind on_impedance, StepKind on_admittance) {
        append_step(script, form == impedance ? on_impedance : on_admittance);
        if (with_quadruplets && form == admittance) append_quadruplets(problem, script, next, 1);
        form = form == impedance ? admittance : impedance;
    };
    while (left.zero > 0 || left.infinity > 0) {
        if (left.zero > 0) remove(forms.zero, StepKind::impedance_zero, StepKind::admittance_zero), --left.zero;
        if (left.infinity > 0) {
            remove(forms.infinity, StepKind::impedance_infinity, StepKind::admittance_infinity);
            --left.infinity;
        }
    }
}

// The refused sentence is "[imp/adm] s p z 0", "... i 0" or "... d p z i 0 0".
bool put_in_zeros(const LadderProblem& problem, Script& script, const LadderState& state) {
    int at = state.position;
    LadderState trial = state;
    const std::string_view form = script.JCONF(at).trimmed();
    if (form == "imp" || form == "adm") {
        ++at;
        if ((form == "imp" ? impedance : admittance) != trial.form) invert(trial.F);
    }
    const bool both = script.JCONF(at) == "d";
    const ExtremeSide side = script.JCONF(at + 2) == "z" ? ExtremeSide::zero : ExtremeSide::infinity;
    int best_m = 0, best_n = 0;
    WideReal smallest;
    const auto consider = [&](const WideReal& residue, int m, int n) {
        if (best_m != 0 && abs(residue) >= smallest) return;
        best_m = m, best_n = n;
        smallest = abs(residue);
    };
    for (int m = 1; m <= problem.zero_count; ++m) {
        if (state.IC(m) != 1 || problem.is_complex(m)) continue;
        WorkingFunction f = trial.F;
        if (!both) {
            WideReal value;
            if (extreme(f, RemovalMode::shifting, side, problem.zero_x(m), value) != RemovalFault::none) continue;
            consider(side == ExtremeSide::zero ? 1 / value : value, m, 0);
            continue;
        }
        for (int n = 1; n <= problem.zero_count; ++n) {
            if (state.IC(n) != 1 || problem.is_complex(n) || problem.is_high(m) || !problem.is_high(n)) continue;
            WideReal at_zero, at_infinity;
            f = trial.F;
            if (doubleSame(f, problem.zero_x(m), problem.zero_x(n), at_zero, at_infinity) != RemovalFault::none) {
                continue;
            }
            consider(abs(at_infinity) + abs(1 / at_zero), m, n);
        }
    }
    if (best_m == 0) return false;
    if (both) {
        script.JCONF(at + 4) = std::string_view{fmt::format("{}", best_m)};
        script.JCONF(at + 5) = std::string_view{fmt::format("{}", best_n)};
    } else {
        script.JCONF(at + 3) = std::string_view{fmt::format("{}", best_m)};
    }
    return true;
}

}  // namespace

}  // namespace kavrel
