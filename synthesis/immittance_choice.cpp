#include "synthesis/immittance_choice.h"

#include <array>
#include <cmath>

namespace kavrel {

namespace {

// How many branches an immittance hides, and whether it is the second of two.
struct Sight {
    int hidden = 0;
    bool other = false;
};

[[nodiscard]] std::array<Selection, 2> immittances_of(const LadderProblem& problem, bool port_b);
[[nodiscard]] bool choose_at(const LadderProblem& problem, bool port_b, const Sight& sight, bool output_side, bool dual,
                             Selection& selection);
[[nodiscard]] bool choose_of_port(const LadderProblem& problem, bool port_b, const Sight& sight, Selection& selection);
[[nodiscard]] bool shows_all_but(int hidden, const LadderProblem& problem, const Selection& selection);
[[nodiscard]] int first_shunt_form(const LadderProblem& problem, const Selection& selection);
[[nodiscard]] Selection turned(Selection selection);

}  // namespace

ChoiceFault chooseImmittance(const LadderProblem& problem, bool output_side, bool dual, Selection& selection,
                             bool other) {
    if (problem.zeros_at_zero + problem.zeros_at_infinity + problem.unit_elements < 1) {
        return ChoiceFault::not_realizable;
    }
    // The input is a port with an immittance of full degree; that of B with es and os comes first. Where neither port
    // has one, an immittance that hides a single branch will do.
    for (const int hidden : {0, 1}) {
        for (const bool port_b : {true, false}) {
            if (choose_at(problem, port_b, {hidden, other}, output_side, dual, selection)) return ChoiceFault::none;
            if (problem.single_termination) return ChoiceFault::not_found;
        }
    }
    return ChoiceFault::not_found;
}

bool hides_branch(const LadderProblem& problem, const Selection& selection) {
    WorkingFunction f;
    return formWorkingFunction(problem, selection, f) && reactance_degree(f) < problem.polynomials.degree;
}

// With Ev and Od of the selection and their partners Ev', Od': (Ev + Od')/(Ev' + Od), odd parts times s for odd degree
// and s (1 - x) for even degree.
Complex<long double> input_impedance(const LadderProblem& problem, const Selection& selection, long double w) {
    const WideReal s2 = WideReal{w} * -w;
    const WideReal x = (s2 + problem.x0) / (s2 + 1);
    const LongImmittance& p = problem.polynomials;
    const WideReal sum = value_of(p.es, x);
    const WideReal difference = p.even_f ? value_of(p.ed, x) : sum;
    const WideReal odd_sum = value_of(p.os, x);
    const WideReal odd_difference = p.odd_f ? value_of(p.od, x) : odd_sum;
    const bool es = selection.numerator == Part::es;
    const bool os = selection.denominator == Part::os;
    const WideReal even = es ? sum : difference;
    const WideReal even_partner = es ? difference : sum;
    const WideReal odd = os ? odd_sum : odd_difference;
    const WideReal odd_partner = os ? odd_difference : odd_sum;
    const WideReal s = problem.polynomials.degree % 2 == 0 ? w * (1 - x) : WideReal{w};
    // All over one of them: their common scale may be beyond the range of the rough type.
    const WideReal scale = 1 / (abs(even) + abs(s * odd));
    const auto rough = [&](const WideReal& re, const WideReal& im) {
        return Complex<long double>{rounded(re * scale), rounded(s * im * scale)};
    };
    Complex<long double> top = rough(even, odd_partner);
    Complex<long double> bottom = rough(even_partner, odd);
    if (selection.form == admittance) std::swap(top, bottom);
    return quotient(top, bottom);
}

namespace {

// Of one port, those that exist.
std::array<Selection, 2> immittances_of(const LadderProblem& problem, bool port_b) {
    const LongImmittance& p = problem.polynomials;
    const Part ed = p.even_f ? Part::ed : Part::es;
    const Part od = p.odd_f ? Part::od : Part::os;
    const int form_a = impedance;
    const int form_b = problem.odd_q ? impedance : admittance;
    const auto other = [](int form) { return form == impedance ? admittance : impedance; };
    if (port_b) return {Selection{Part::es, Part::os, form_b, false}, Selection{ed, od, other(form_b), false}};
    return {Selection{Part::es, od, form_a, false}, Selection{ed, Part::os, other(form_a), false}};
}

// With `port_b` as the input.
bool choose_at(const LadderProblem& problem, bool port_b, const Sight& sight, bool output_side, bool dual,
               Selection& selection) {
    Selection input, output;
    if (!choose_of_port(problem, port_b, sight, input)) return false;
    const bool turn = (input.form != first_shunt_form(problem, input)) != dual;
    if (output_side) {
        // The output may hide a branch of a network that its input shows whole.
        const Sight clouded{1, sight.other};
        if (problem.single_termination ||
            !(choose_of_port(problem, !port_b, sight, output) || choose_of_port(problem, !port_b, clouded, output))) {
            return false;
        }
        output.output_side = true;
    }
    selection = output_side ? output : input;
    if (turn) selection = turned(selection);
    return true;
}

bool choose_of_port(const LadderProblem& problem, bool port_b, const Sight& sight, Selection& selection) {
    int seen = 0;
    for (const Selection& candidate : immittances_of(problem, port_b)) {
        if (!shows_all_but(sight.hidden, problem, candidate)) continue;
        if (seen++ == 0 || (sight.hidden > 0 && sight.other)) selection = candidate;
    }
    return seen > 0;
}

bool shows_all_but(int hidden, const LadderProblem& problem, const Selection& selection) {
    WorkingFunction f;
    if (!formWorkingFunction(problem, selection, f)) return false;
    return reactance_degree(f) == problem.polynomials.degree - hidden;
}

// The form in which the first complete removal, at infinity or else at zero, or the first line, is a shunt branch.
int first_shunt_form(const LadderProblem& problem, const Selection& selection) {
    WorkingFunction f;
    if (!formWorkingFunction(problem, selection, f)) return selection.form;
    const bool pole = problem.zeros_at_infinity > 0 ? has_pole_at_infinity(f) : has_pole_at_zero(f);
    return pole ? admittance : impedance;
}

Selection turned(Selection selection) {
    selection.form = selection.form == impedance ? admittance : impedance;
    return selection;
}

}  // namespace

}  // namespace kavrel
