#include "synthesis/script.h"

#include <algorithm>
#include <charconv>

namespace kavrel {

namespace {

constexpr long double same_zero = 1e-12L;
constexpr int by_value = -1;  // instead of the zero that a partial removal prepares

// One sentence at a time, on a copy of the state that replaces it when nothing was refused.
class Interpreter {
public:
    Interpreter(const LadderProblem& problem, const Script& script, const LadderState& state)
        : problem_(problem), script_(script), now_(state) {}

    [[nodiscard]] ScriptFault sentence();
    [[nodiscard]] bool stage_ended() const { return stage_ended_; }
    [[nodiscard]] const LadderState& state() const { return now_; }

private:
    [[nodiscard]] ScriptFault select(std::string_view word);
    [[nodiscard]] ScriptFault single();
    [[nodiscard]] ScriptFault twofold();
    [[nodiscard]] ScriptFault complete_extreme(ExtremeSide side);
    [[nodiscard]] ScriptFault complete_finite(int zero);
    [[nodiscard]] ScriptFault partial_extreme(ExtremeSide side, int zero);
    [[nodiscard]] ScriptFault partial_finite(int pole, int zero);
    [[nodiscard]] ScriptFault partial_both_extremes(int zero1, int zero2);
    [[nodiscard]] ScriptFault partial_two();
    [[nodiscard]] ScriptFault complex_quadruplet();
    [[nodiscard]] RemovalFault take_section(int zero, QuadrupletSide side, QuadrupletValues& section);
    [[nodiscard]] ScriptFault unit();
    [[nodiscard]] ScriptFault finish();

    [[nodiscard]] std::string_view next();
    [[nodiscard]] std::string_view peek() const;
    [[nodiscard]] ScriptFault number(int& value);
    [[nodiscard]] ScriptFault check_zero(int zero) const;
    [[nodiscard]] int prepared_place(int zero) const;
    [[nodiscard]] int choose_zero(ExtremeSide side) const;
    [[nodiscard]] bool choose_pair(int& low, int& high) const;
    [[nodiscard]] bool has_room(int records, int zeros) const {
        return now_.record_count + records <= record_limit && now_.prepared_count + zeros <= prepared_limit;
    }
    // A pole without a zero of transmission, such as that of an open far end, is not a branch.
    [[nodiscard]] bool has_zero_at(ExtremeSide side) const {
        return (side == ExtremeSide::infinity ? now_.ni : now_.nz) > 0;
    }
    void set_form(int form);
    void prepare(int zero);
    void forget_prepared(int place);
    void record(const WideReal& proportional, const WideReal& inverse, double frequency, int simp);

    const LadderProblem& problem_;
    const Script& script_;
    LadderState now_;
    bool stage_ended_ = false;
};

[[nodiscard]] ScriptFault fault_of(RemovalFault fault, bool twofold = false);
[[nodiscard]] bool is_number(std::string_view word) {
    return !word.empty() && word.find_first_not_of("0123456789") == std::string_view::npos;
}

}  // namespace

void Script::append(std::string_view words) {
    while (!words.empty()) {
        const auto begin = words.find_first_not_of(" ,");
        if (begin == std::string_view::npos) return;
        words.remove_prefix(begin);
        const auto length = std::min(words.find_first_of(" ,"), words.size());
        if (count < script_limit) JCONF(++count) = words.substr(0, length);
        words.remove_prefix(length);
    }
}

std::string_view messageOf(ScriptFault fault) {
    for (const ScriptMessage& message : script_messages) {
        if (message.fault == fault) return message.text;
    }
    return {};
}

LadderState start_state(const LadderProblem& problem, const Selection& selection) {
    LadderState state;
    state.selection = selection;
    state.form = selection.form;
    state.nz = problem.zeros_at_zero;
    state.ni = problem.zeros_at_infinity;
    state.ue = problem.unit_elements;
    for (int i = 1; i <= problem.zero_count; ++i) state.IC(i) = 1;
    return state;
}

bool LadderHistory::push(const LadderState& state) {
    ++sentences;
    if (count >= stage_limit) return false;
    int numerators = state.F.ANUMR.count;
    int denominators = state.F.DENOMR.count;
    for (int i = 1; i <= count; ++i) {
        numerators += stages(i).F.ANUMR.count;
        denominators += stages(i).F.DENOMR.count;
    }
    if (numerators > root_pool || denominators > root_pool) return false;
    stages(++count) = state;
    STAGE(count) = sentences;
    return true;
}

bool LadderHistory::restore(int back, LadderState& state) {
    if (back < 1 || back > sentences) return false;
    sentences -= back;
    while (count > 0 && STAGE(count) > sentences + 1) --count;
    if (count == 0 || STAGE(count) != sentences + 1) return false;
    state = stages(count--);
    return true;
}

ScriptVerdict runScript(const LadderProblem& problem, const Script& script, Watcher& watcher, LadderState& state,
                        LadderHistory* history) {
    ScriptVerdict verdict;
    while (state.position <= script.count && !state.finished) {
        if (script.JCONF(state.position).is_blank()) break;
        verdict.storage_low = verdict.storage_low || state.position > script_warning;
        Interpreter interpreter(problem, script, state);
        verdict.fault = watcher.go_on() ? interpreter.sentence() : ScriptFault::stopped;
        if (!verdict.good()) {
            verdict.position = state.position;
            return verdict;
        }
        if (history != nullptr && !history->push(state)) verdict.stage_lost = true;
        state = interpreter.state();
        if (interpreter.stage_ended()) break;
    }
    return verdict;
}

namespace {

ScriptFault Interpreter::sentence() {
    std::string_view word = next();
    if (word == "in" || word == "out") {
        now_.selection.output_side = word == "out";
        return ScriptFault::none;
    }
    if (word == "es" || word == "ed" || word == "os" || word == "od") return select(word);
    if (word == "prin") return ScriptFault::none;
    if (word == "end") {
        stage_ended_ = true;
        return ScriptFault::none;
    }
    if (word == "fini") return finish();
    if (!now_.formed) return ScriptFault::incorrect_configuration;
    if (word == "imp" || word == "adm") {
        set_form(word == "imp" ? impedance : admittance);
        word = next();
    }
    if (word == "s") return single();
    if (word == "d") return twofold();
    if (word == "ue") return unit();
    return ScriptFault::incorrect_configuration;
}

ScriptFault Interpreter::select(std::string_view word) {
    if (word == "es" || word == "ed") {
        now_.selection.numerator = word == "es" ? Part::es : Part::ed;
        return ScriptFault::none;
    }
    now_.selection.denominator = word == "os" ? Part::os : Part::od;
    if (!formWorkingFunction(problem_, now_.selection, now_.F)) return ScriptFault::function_missing;
    now_.form = now_.selection.form;
    now_.formed = true;
    return ScriptFault::none;
}

ScriptFault Interpreter::single() {
    const std::string_view kind = next();
    const std::string_view place = next();
    const bool extreme_point = place == "z" || place == "i";
    const ExtremeSide side = place == "z" ? ExtremeSide::zero : ExtremeSide::infinity;
    int first = 0;
    if (!extreme_point) {
        --now_.position;
        if (const ScriptFault fault = number(first); fault != ScriptFault::none) return fault;
    }
    if (kind == "c") return extreme_point ? complete_extreme(side) : complete_finite(first);
    if (kind != "p") return ScriptFault::incorrect_configuration;
    if (!extreme_point && !is_number(peek())) return partial_finite(first, by_value);
    int zero = 0;
    if (const ScriptFault fault = number(zero); fault != ScriptFault::none) return fault;
    return extreme_point ? partial_extreme(side, zero) : partial_finite(first, zero);
}

ScriptFault Interpreter::twofold() {
    const std::string_view kind = next();
    if (kind == "c") return complex_quadruplet();
    return kind == "p" ? partial_two() : ScriptFault::incorrect_configuration;
}

ScriptFault Interpreter::complete_extreme(ExtremeSide side) {
    if (!has_zero_at(side)) return ScriptFault::extreme_impossible;
    if (!has_room(1, 0)) return ScriptFault::records_full;
    WideReal value;
    const RemovalFault fault = extreme(now_.F, RemovalMode::complete, side, 0, value);
    if (fault != RemovalFault::none) return fault_of(fault);
    if (side == ExtremeSide::infinity) {
        record(value, 0, 0, 0);
        --now_.ni;
    } else {
        record(0, value, 0, 0);
        --now_.nz;
    }
    return ScriptFault::none;
}

ScriptFault Interpreter::complete_finite(int zero) {
    if (zero == 0) zero = now_.chosen_zero;
    if (const ScriptFault fault = check_zero(zero); fault != ScriptFault::none) return fault;
    if (now_.prepared_count == 0) return ScriptFault::zero_not_prepared;
    const int place = prepared_place(zero);
    if (place == 0) return ScriptFault::incorrect_zero;
    if (!has_room(1, 0)) return ScriptFault::records_full;
    WideReal e1, e2;
    const RemovalFault fault = finite(now_.F, RemovalMode::complete, now_.SGZI(place), 0, e1, e2);
    if (fault != RemovalFault::none) return fault_of(fault);
    record(e2, e1, problem_.zero_hz_im(zero), 0);
    now_.IC(zero) = 0;
    forget_prepared(place);
    now_.chosen_zero = now_.prepared_count > 0 ? now_.prepared_zero(1) : 0;
    return ScriptFault::none;
}

ScriptFault Interpreter::partial_extreme(ExtremeSide side, int zero) {
    if (zero == 0) {
        zero = choose_zero(side);
        if (zero == 0) return ScriptFault::no_acceptable_zero;
    }
    if (const ScriptFault fault = check_zero(zero); fault != ScriptFault::none) return fault;
    if (!has_room(1, 1)) return ScriptFault::records_full;
    WideReal value;
    const RemovalMode mode = has_zero_at(side) ? RemovalMode::shifting : RemovalMode::made;
    const RemovalFault fault = extreme(now_.F, mode, side, problem_.zero_x(zero), value);
    if (fault != RemovalFault::none) return fault_of(fault);
    if (mode == RemovalMode::made) ++(side == ExtremeSide::infinity ? now_.ni : now_.nz);
    if (side == ExtremeSide::infinity)
        record(value, 0, 0, 0);
    else
        record(0, value, 0, 0);
    prepare(zero);
    return ScriptFault::none;
}

ScriptFault Interpreter::partial_finite(int pole, int zero) {
    for (const int index : {pole, zero != by_value ? zero : pole}) {
        if (const ScriptFault fault = check_zero(index); fault != ScriptFault::none) return fault;
    }
    if (now_.prepared_count == 0) return ScriptFault::zero_not_prepared;
    const int place = prepared_place(pole);
    if (place == 0) return ScriptFault::incorrect_zero;
    if (!has_room(1, 1)) return ScriptFault::records_full;
    WideReal e1, e2;
    const RemovalMode mode = zero != by_value ? RemovalMode::shifting : RemovalMode::given;
    const WideReal target = zero != by_value ? problem_.zero_x(zero) : 0;
    const RemovalFault fault = finite(now_.F, mode, now_.SGZI(place), target, e1, e2);
    if (fault != RemovalFault::none) return fault_of(fault);
    record(e2, e1, problem_.zero_hz_im(pole), 0);
    prepare(zero);
    return ScriptFault::none;
}

ScriptFault Interpreter::partial_both_extremes(int zero1, int zero2) {
    if (zero1 == 0 && zero2 == 0) {
        if (!choose_pair(zero1, zero2)) return ScriptFault::no_acceptable_zero;
    }
    for (const int zero : {zero1, zero2}) {
        if (const ScriptFault fault = check_zero(zero); fault != ScriptFault::none) return fault;
    }
    if (!has_zero_at(ExtremeSide::zero) || !has_zero_at(ExtremeSide::infinity)) return ScriptFault::extreme_impossible;
    if (!has_room(2, 2)) return ScriptFault::records_full;
    WideReal at_zero, at_infinity;
    const RemovalFault fault = doubleSame(now_.F, problem_.zero_x(zero1), problem_.zero_x(zero2), at_zero, at_infinity);
    if (fault != RemovalFault::none) return fault_of(fault, true);
    // Of two zeros at one place the pole at zero alone makes the one.
    if (at_infinity != 0) record(at_infinity, 0, 0, 0);
    record(0, at_zero, 0, at_infinity != 0 ? -1 : 0);
    prepare(zero1);
    prepare(zero2);
    now_.chosen_zero = zero1;
    return ScriptFault::none;
}

// "d p" and two poles, two zeros.
ScriptFault Interpreter::partial_two() {
    ShiftPole poles[2];
    int pole_zero[2] = {0, 0};
    for (int i = 0; i < 2; ++i) {
        const std::string_view word = next();
        if (word == "z" || word == "i") {
            poles[i].place = word == "z" ? ShiftPole::Place::zero : ShiftPole::Place::infinity;
            continue;
        }
        --now_.position;
        if (const ScriptFault fault = number(pole_zero[i]); fault != ScriptFault::none) return fault;
    }
    int zeros[2] = {0, 0};
    for (int& zero : zeros) {
        if (const ScriptFault fault = number(zero); fault != ScriptFault::none) return fault;
    }
    if (poles[0].place == ShiftPole::Place::zero && poles[1].place == ShiftPole::Place::infinity) {
        return partial_both_extremes(zeros[0], zeros[1]);
    }
    for (int i = 0; i < 2; ++i) {
        if (poles[i].place != ShiftPole::Place::finite) continue;
        if (const ScriptFault fault = check_zero(pole_zero[i]); fault != ScriptFault::none) return fault;
        if (now_.prepared_count == 0) return ScriptFault::zero_not_prepared;
        const int place = prepared_place(pole_zero[i]);
        if (place == 0) return ScriptFault::incorrect_zero;
        poles[i].x = now_.SGZI(place);
    }
    for (const int zero : zeros) {
        if (const ScriptFault fault = check_zero(zero); fault != ScriptFault::none) return fault;
    }
    if (!has_room(2, 2)) return ScriptFault::records_full;
    ShiftValues out[2];
    const RemovalFault fault =
        doubleShift(now_.F, poles[0], poles[1], problem_.zero_x(zeros[0]), problem_.zero_x(zeros[1]), out[0], out[1]);
    if (fault != RemovalFault::none) return fault_of(fault, true);
    int simp = 0;
    for (int i = 0; i < 2; ++i) {
        if (!out[i].removed) continue;
        if (poles[i].place == ShiftPole::Place::infinity)
            record(out[i].value2, 0, 0, simp);
        else if (poles[i].place == ShiftPole::Place::zero)
            record(0, out[i].value2, 0, simp);
        else
            record(out[i].value2, out[i].value1, problem_.zero_hz_im(pole_zero[i]), simp);
        simp = -1;
    }
    for (const int zero : zeros) prepare(zero);
    return ScriptFault::none;
}

// "d c" and a side. A real zero is no quadruplet.
ScriptFault Interpreter::complex_quadruplet() {
    const std::string_view place = next();
    if (place != "z" && place != "i" && place != "e") return ScriptFault::incorrect_configuration;
    const QuadrupletSide side = place == "z"   ? QuadrupletSide::zero
                                : place == "i" ? QuadrupletSide::infinity
                                               : QuadrupletSide::either;
    int zero = 0;
    if (const ScriptFault fault = number(zero); fault != ScriptFault::none) return fault;
    const ScriptFault checked = check_zero(zero);
    if (checked == ScriptFault::none) return ScriptFault::complex_zero;
    if (checked != ScriptFault::complex_zero) return checked;
    if (!has_room(3, 0) || now_.quadruplet_count == quadruplet_limit) return ScriptFault::records_full;

    QuadrupletValues section;
    if (const RemovalFault fault = take_section(zero, side, section); fault != RemovalFault::none) {
        return fault_of(fault);
    }
    const auto beside = [&](const WideReal& value) {
        if (value == 0) return;
        if (section.at_zero)
            record(0, value, 0, -1);
        else
            record(value, 0, 0, -1);
    };
    beside(section.near_shunt);
    QuadrupletRecord& kept = now_.QUADS(++now_.quadruplet_count);
    kept.SVALUE = section.value;
    kept.value_count = section.count;
    kept.MSICON = section.id;
    kept.SFZR = problem_.zero_hz_re(zero);
    kept.SFZI = problem_.zero_hz_im(zero);
    record(now_.quadruplet_count, quadruplet_mark, kept.SFZI, 0);
    beside(section.far_shunt);
    now_.IC(zero) = 0;
    return ScriptFault::none;
}

// On an impedance the dual network is taken. Where that is no branch, the form is exchanged.
RemovalFault Interpreter::take_section(int zero, QuadrupletSide side, QuadrupletValues& section) {
    const Complex<WideReal> place{problem_.zero_x(zero), problem_.zero_x_im(zero)};
    WorkingFunction f = now_.F;
    RemovalFault fault = quadruplet(f, place, side, section);
    if (fault == RemovalFault::none && now_.form == impedance && !turn_to_dual(section)) {
        set_form(admittance);
        f = now_.F;
        fault = quadruplet(f, place, side, section);
    }
    if (fault != RemovalFault::none) return fault;
    now_.F = f;

    // A negative far element is taken from the pole behind it, as far as that is there.
    const ExtremeSide pole = section.at_zero ? ExtremeSide::zero : ExtremeSide::infinity;
    const auto residue = [&](const WideReal& value) { return section.at_zero ? 1 / value : value; };
    WideReal whole;
    if (section.far_shunt < 0 && has_zero_at(pole) &&
        extreme(f, RemovalMode::complete, pole, 0, whole, true) == RemovalFault::none &&
        residue(whole) > -residue(section.far_shunt)) {
        WideReal part = -section.far_shunt;
        if (extreme(f, RemovalMode::given, pole, 0, part) == RemovalFault::none) {
            now_.F = f;
            section.far_shunt = 0;
        }
    }
    return RemovalFault::none;
}

ScriptFault Interpreter::unit() {
    if (now_.ue < 1) return ScriptFault::no_unit_elements;
    if (!has_room(1, 0)) return ScriptFault::records_full;
    WideReal value;
    const RemovalFault fault = unitElement(now_.F, problem_.unit_point, value);
    if (fault != RemovalFault::none) return fault_of(fault);
    record(now_.form == impedance ? value : 1 / value, unit_element_mark, 0, 0);
    --now_.ue;
    return ScriptFault::none;
}

ScriptFault Interpreter::finish() {
    if (!now_.formed || !now_.F.vanished()) return ScriptFault::incomplete_circuit;
    now_.finished = true;
    return ScriptFault::none;
}

// "" behind the last word.
std::string_view Interpreter::next() {
    if (now_.position > script_.count) return {};
    return script_.JCONF(now_.position++).trimmed();
}

std::string_view Interpreter::peek() const {
    return now_.position > script_.count ? std::string_view{} : script_.JCONF(now_.position).trimmed();
}

ScriptFault Interpreter::number(int& value) {
    const std::string_view word = next();
    if (!is_number(word)) return ScriptFault::incorrect_configuration;
    std::from_chars(word.data(), word.data() + word.size(), value);
    return ScriptFault::none;
}

ScriptFault Interpreter::check_zero(int zero) const {
    if (zero < 1 || zero > problem_.zero_count) return ScriptFault::incorrect_configuration;
    if (now_.IC(zero) != 1) return ScriptFault::zero_not_available;
    if (problem_.is_complex(zero)) return ScriptFault::complex_zero;
    return ScriptFault::none;
}

int Interpreter::prepared_place(int zero) const {
    const WideReal x = problem_.zero_x(zero);
    for (int i = 1; i <= now_.prepared_count; ++i) {
        if (abs(x - now_.SGZI(i)) <= abs(now_.SGZI(i)) * same_zero) return i;
    }
    return 0;
}

// The smallest non-negative residue, of the zeros on the side's own side of the band; of all zeros when none lies
// there.
int Interpreter::choose_zero(ExtremeSide side) const {
    if (!has_zero_at(side)) return 0;
    int best = 0;
    WideReal smallest;
    for (const bool own_side : {true, false}) {
        for (int i = 1; i <= problem_.zero_count; ++i) {
            if (now_.IC(i) != 1 || problem_.is_complex(i)) continue;
            if (own_side && problem_.is_high(i) != (side == ExtremeSide::infinity)) continue;
            WorkingFunction f = now_.F;
            WideReal value;
            if (extreme(f, RemovalMode::shifting, side, problem_.zero_x(i), value, true) != RemovalFault::none)
                continue;
            const WideReal residue = side == ExtremeSide::infinity ? value : 1 / value;
            if (residue < 0 || (best != 0 && residue >= smallest)) continue;
            best = i;
            smallest = residue;
        }
        if (best != 0) break;
    }
    return best;
}

// The pair of a low and a high zero with the smallest sum of both residues, none negative.
bool Interpreter::choose_pair(int& low, int& high) const {
    bool found = false;
    WideReal smallest;
    for (int m = 1; m <= problem_.zero_count; ++m) {
        if (now_.IC(m) != 1 || problem_.is_complex(m) || problem_.is_high(m)) continue;
        for (int n = 1; n <= problem_.zero_count; ++n) {
            if (now_.IC(n) != 1 || problem_.is_complex(n) || !problem_.is_high(n)) continue;
            WorkingFunction f = now_.F;
            WideReal at_zero, at_infinity;
            const RemovalFault fault =
                doubleSame(f, problem_.zero_x(m), problem_.zero_x(n), at_zero, at_infinity, true);
            if (fault != RemovalFault::none || at_zero < 0 || at_infinity < 0) continue;
            const WideReal sum = at_infinity + 1 / at_zero;
            if (found && sum >= smallest) continue;
            found = true;
            smallest = sum;
            low = m;
            high = n;
        }
    }
    return found;
}

void Interpreter::set_form(int form) {
    if (form == now_.form) return;
    invert(now_.F);
    now_.form = form;
}

void Interpreter::prepare(int zero) {
    const int place = ++now_.prepared_count;
    now_.prepared_zero(place) = zero;
    now_.SGZI(place) = problem_.zero_x(zero);
    now_.chosen_zero = zero;
}

void Interpreter::forget_prepared(int place) {
    for (int i = place; i < now_.prepared_count; ++i) {
        now_.prepared_zero(i) = now_.prepared_zero(i + 1);
        now_.SGZI(i) = now_.SGZI(i + 1);
    }
    --now_.prepared_count;
}

void Interpreter::record(const WideReal& proportional, const WideReal& inverse, double frequency, int simp) {
    const int k = ++now_.record_count;
    now_.SVAL1(k) = proportional;
    now_.SVAL2(k) = inverse;
    now_.SFR(k) = frequency;
    now_.MIND(k) = now_.form == impedance ? 1 : 2;
    now_.SIMP(k) = simp;
}

ScriptFault fault_of(RemovalFault fault, bool twofold) {
    switch (fault) {
        case RemovalFault::none: return ScriptFault::none;
        case RemovalFault::extreme_impossible: return ScriptFault::extreme_impossible;
        case RemovalFault::extreme_zero_missing: return ScriptFault::extreme_zero_missing;
        case RemovalFault::pole_missing: return twofold ? ScriptFault::pole_missing_double : ScriptFault::pole_missing;
        case RemovalFault::value_missing: return ScriptFault::value_missing;
        case RemovalFault::zero_missing: return ScriptFault::zero_missing;
        case RemovalFault::roots_missing: return ScriptFault::roots_missing;
        case RemovalFault::double_roots_missing: return ScriptFault::double_roots_missing;
        case RemovalFault::unit_element: return ScriptFault::unit_element_error;
        case RemovalFault::quadruplet: return ScriptFault::quadruplet_error;
    }
    return ScriptFault::none;
}

}  // namespace

}  // namespace kavrel
