#include "synthesis/ladder_problem.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kavrel {

namespace {

constexpr long double pi = std::numbers::pi_v<long double>;

void take_zeros(const XPlane& xp, const FilterSpec& spec, LadderProblem& problem);
[[nodiscard]] const ReactanceRoots& part_of(const LadderProblem& problem, Part part);
void turn_to_true_variable(WorkingFunction& f);

}  // namespace

bool ladder_problem(const XPlane& xp, const FilterSpec& spec, Watcher& watcher, LadderProblem& problem) {
    problem = {};
    problem.single_termination = spec.loadResistance == 0;
    const bool high = spec.filterType == high_pass;
    const bool complex_zeros =
        std::any_of(xp.ARI.begin(), xp.ARI.begin() + xp.zeroCount, [](long double im) { return im != 0; });
    problem.turned = high && (spec.medium == microwave || complex_zeros);
    problem.prototype = high && !problem.turned;
    problem.odd_q = spec.zerosAtZero % 2 == 1;
    problem.x0 = xp.a;
    problem.unit_point = xp.ueX;
    problem.zeros_at_zero = problem.turned ? spec.zerosAtInfinity : spec.zerosAtZero;
    problem.zeros_at_infinity = problem.turned ? spec.zerosAtZero : spec.zerosAtInfinity;
    problem.unit_elements = spec.unitElements;
    take_zeros(xp, spec, problem);

    problem.norm_frequency = static_cast<double>(xp.normFrequency);
    if (spec.medium == microwave) {
        problem.quarter_wave = spec.sampleFrequency;
        problem.norm_frequency = static_cast<double>(edge_tangent(xp, spec));
    }
    problem.own_resistance = spec.sourceResistance;
    problem.other_resistance = spec.loadResistance;
    return long_immittance(xp, problem.single_termination, watcher, problem.polynomials);
}

long double edge_tangent(const XPlane& xp, const FilterSpec& spec) {
    return std::tan(pi * xp.normFrequency / spec.sampleFrequency);
}

double hz_of(const XPlane& xp, const FilterSpec& spec, long double w) {
    if (spec.medium != microwave) return static_cast<double>(w * xp.normFrequency);
    return static_cast<double>(spec.sampleFrequency * std::atan(w * edge_tangent(xp, spec)) / pi);
}

// I = Ev/(s Od) for odd degree, Ev/(s (1 - x) Od) for even degree.
bool formWorkingFunction(const LadderProblem& problem, const Selection& selection, WorkingFunction& f) {
    WorkingFunction g;
    g.x0 = problem.x0;
    if (!copyFunction(part_of(problem, selection.numerator), g.ANUMR)) return false;
    if (!copyFunction(part_of(problem, selection.denominator), g.DENOMR)) return false;
    g.Fn = 0, g.Fd = 1;
    if (problem.polynomials.degree % 2 == 0) {
        if (!cancel_root(g.ANUMR, 1)) g.DENOMR.append(1);
        g.ANUMR.multiplier = -g.ANUMR.multiplier;
    }
    cancel_common_roots(g);
    if (problem.turned) turn_to_true_variable(g);
    f = g;
    return true;
}

namespace {

// The approximation holds a finite zero once for each pair of conjugates.
void take_zeros(const XPlane& xp, const FilterSpec& spec, LadderProblem& problem) {
    for (int i = 1; i <= xp.zeroCount && problem.zero_count < finite_zero_limit; ++i) {
        const int k = ++problem.zero_count;
        problem.zero_x(k) = problem.turned ? 1 - WideReal{xp.ARR(i)} : WideReal{xp.ARR(i)};
        problem.zero_x_im(k) = problem.turned ? -WideReal{xp.ARI(i)} : WideReal{xp.ARI(i)};

        // s^2 = (x - a)/(1 - x), inverted for a high-pass; s with positive real and imaginary part.
        long double re = xp.ARR(i) - xp.a;
        long double im = xp.ARI(i);
        const long double down = 1 - xp.ARR(i);
        const long double size = down * down + im * im;
        const long double s2_re = (re * down - im * im) / size;
        const long double s2_im = im * (down + re) / size;
        re = s2_re, im = s2_im;
        if (spec.filterType == high_pass) {
            const long double square = re * re + im * im;
            re = re / square, im = -im / square;
        }
        const long double radius = std::hypot(re, im);
        long double s_re = std::sqrt(std::fmax(0.0L, (radius + re) / 2));
        long double s_im = std::sqrt(std::fmax(0.0L, (radius - re) / 2));
        if (xp.ARI(i) == 0) (re < 0 ? s_re : s_im) = 0;
        problem.zero_hz_re(k) = static_cast<double>(s_re * xp.normFrequency);
        problem.zero_hz_im(k) = s_re == 0 ? hz_of(xp, spec, s_im) : static_cast<double>(s_im * xp.normFrequency);
    }
}

const ReactanceRoots& part_of(const LadderProblem& problem, Part part) {
    switch (part) {
        case Part::es: return problem.polynomials.es;
        case Part::os: return problem.polynomials.os;
        case Part::ed: return problem.polynomials.ed;
        case Part::od: break;
    }
    return problem.polynomials.od;
}

// s -> 1/s, x -> 1 - x; a = 0. Each factor x - r turns to -(x - (1 - r)).
void turn_to_true_variable(WorkingFunction& f) {
    complementRoots(f.ANUMR);
    complementRoots(f.DENOMR);
    if ((f.ANUMR.count - f.DENOMR.count) % 2 != 0) f.ANUMR.multiplier = -f.ANUMR.multiplier;
    std::swap(f.Fn, f.Fd);
}

}  // namespace

}  // namespace kavrel
