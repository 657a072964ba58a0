#include "approximation/sloped_passband.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "approximation/characteristic.h"
#include "numeric/root_order.h"

namespace kavrel {

namespace {

using Real = XPlane::Real;

constexpr Real least_fraction = 0.01L;

SlopeVerdict solve_moved(const FilterSpec& spec, int m, XPlane& x, FrontNotes& notes, ExtractionWorkspace& ws);
void give_back(int m, Real a, WideRootSet& Q);

}  // namespace

long double slopeUnit(const FilterSpec& spec, const XPlane& x) {
    // tan theta_l/tan theta_u = sqrt a
    const Real octave_of_tangents = 20 * std::log10(Real{2});
    if (spec.medium == Medium::lumped || !(x.a > 0)) return octave_of_tangents;
    const Real theta_u = std::numbers::pi_v<Real> * x.normFrequency / static_cast<Real>(spec.sampleFrequency);
    const Real theta_l = std::atan(std::tan(theta_u) * std::sqrt(x.a));
    return -10 * std::log10(x.a) / std::log2(theta_u / theta_l);
}

SlopeSteps slopeSteps(long double slope, long double unit) {
    SlopeSteps steps;
    steps.m = static_cast<int>(slope / unit);
    steps.f = slope / unit - static_cast<Real>(steps.m);
    if (std::fabs(steps.f) < least_fraction) steps.f = 0;
    steps.m2 = steps.f == 0 ? steps.m : steps.m + (steps.f > 0 ? 1 : -1);
    return steps;
}

SlopeFault checkMultiplicities(const FilterSpec& spec, SlopeSteps steps) {
    if (spec.zerosAtZero + std::min(steps.m, steps.m2) < 0) return SlopeFault::zero_too_low;
    if (spec.zerosAtInfinity - std::max(steps.m, steps.m2) < 0) return SlopeFault::infinity_too_low;
    return SlopeFault::none;
}

SlopeVerdict slopedPassband(const FilterSpec& spec, XPlane& x, FrontNotes& notes, ExtractionWorkspace& ws) {
    const SlopeSteps steps = slopeSteps(static_cast<Real>(spec.stopbandLoss), slopeUnit(spec, x));
    if (const SlopeFault fault = checkMultiplicities(spec, steps); fault != SlopeFault::none) return {.fault = fault};

    if (const SlopeVerdict verdict = solve_moved(spec, steps.m, x, notes, ws); !verdict.good()) return verdict;
    if (steps.m2 != steps.m) {
        const WideRootSet E1 = x.ES;
        if (const SlopeVerdict verdict = solve_moved(spec, steps.m2, x, notes, ws); !verdict.good()) return verdict;
        const Real g = (1 - std::pow(x.a, std::fabs(steps.f))) / (1 - x.a);
        WideRootSet weighted_1 = E1;
        WideRootSet weighted_2 = x.ES;
        weighted_1.multiplier *= 1 - g;
        weighted_2.multiplier *= steps.f < 0 ? g * x.a : g;
        if (const SolveVerdict solve = solveSum(weighted_2, weighted_1, x.ES, ws.sum); !solve.good())
            return {.fault = SlopeFault::no_poles, .solve = solve};
    }
    give_back(steps.m2, x.a, x.QS);
    if (!toFactors(x.ES, x.a, x.eFactors).good()) return {.fault = SlopeFault::pole_on_axis};
    return {};
}

namespace {

SlopeVerdict solve_moved(const FilterSpec& spec, int m, XPlane& x, FrontNotes& notes, ExtractionWorkspace& ws) {
    FilterSpec moved = spec;
    moved.zerosAtZero += m;
    moved.zerosAtInfinity -= m;
    if (const FrontVerdict front = buildQ(moved, x, notes); !front.good())
        return {.fault = SlopeFault::no_function, .front = front};
    if (const SolveVerdict solve = feldtkeller(x, ws); !solve.good())
        return {.fault = SlopeFault::no_poles, .solve = solve};
    return {};
}

// m roots at a become roots at 1, or the other way round for m < 0.
void give_back(int m, Real a, WideRootSet& Q) {
    const Real from = m > 0 ? a : Real{1};
    const Real to = m > 0 ? Real{1} : a;
    int due = m > 0 ? m : -m;
    for (int i = 1; i <= Q.count && due > 0; ++i) {
        if (Q.re(i) == from && Q.im(i) == 0) Q.re(i) = to, --due;
    }
}

}  // namespace

}  // namespace kavrel
