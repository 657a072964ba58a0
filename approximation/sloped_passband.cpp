#include "approximation/sloped_passband.h"

#include <cmath>
#include <numbers>

#include "approximation/characteristic.h"
#include "approximation/decibel.h"
#include "approximation/slope_exchange.h"
#include "numeric/guarded.h"
#include "shell/whole_part.h"

namespace kavrel {

namespace {

using Real = XPlane::Real;

constexpr Real unit_of_octave = 20 * std::numbers::ln2_v<Real> / std::numbers::ln10_v<Real>;  // dB

bool is_whole(Real units);
bool has_zeros_for(const FilterSpec& spec, int m);
SlopeVerdict whole_slope(const FilterSpec& spec, int m, XPlane& x, FrontNotes& notes, ExtractionWorkspace& ws);
SlopeVerdict any_slope(FilterSpec& spec, Real units, XPlane& x, FrontNotes& notes);
bool has_zero_on_pass_band(const XPlane& x);
bool least_ripple(FilterSpec& spec, SlopeTask task, XPlane& x);
void give_back(int m, Real a, WideRootSet& Q);

}  // namespace

long double slopeUnit(const FilterSpec& spec, const XPlane& x) {
    // tan theta_l/tan theta_u = sqrt a
    if (spec.medium == Medium::lumped || !(x.a > 0)) return unit_of_octave;
    const Real theta_u = std::numbers::pi_v<Real> * x.normFrequency / static_cast<Real>(spec.sampleFrequency);
    const Real theta_l = std::atan(std::tan(theta_u) * std::sqrt(x.a));
    return -10 * std::log10(x.a) / std::log2(theta_u / theta_l);
}

SlopeVerdict slopedPassband(FilterSpec& spec, XPlane& x, FrontNotes& notes, ExtractionWorkspace& ws) {
    const Real units = static_cast<Real>(spec.stopbandLoss) / slopeUnit(spec, x);
    const int m = whole_part(std::round(units));
    const bool whole = spec.medium == Medium::lumped && is_whole(units) && has_zeros_for(spec, m);
    const SlopeVerdict verdict = whole ? whole_slope(spec, m, x, notes, ws) : any_slope(spec, units, x, notes);
    if (verdict.good() && !toFactors(x.ES, x.a, x.eFactors).good()) return {.fault = SlopeFault::pole_on_axis};
    return verdict;
}

namespace {

// As far as a slope of some units is typed with four decimals.
bool is_whole(Real units) {
    constexpr Real rounding = 1e-7L;
    return std::fabs(units - std::round(units)) < rounding;
}

bool has_zeros_for(const FilterSpec& spec, int m) { return spec.zerosAtZero + m >= 0 && spec.zerosAtInfinity - m >= 0; }

SlopeVerdict whole_slope(const FilterSpec& spec, int m, XPlane& x, FrontNotes& notes, ExtractionWorkspace& ws) {
    FilterSpec moved = spec;
    moved.zerosAtZero += m;
    moved.zerosAtInfinity -= m;
    if (const FrontVerdict front = buildQ(moved, x, notes); !front.good())
        return {.fault = SlopeFault::no_function, .front = front};
    if (const SolveVerdict solve = feldtkeller(x, ws); !solve.good())
        return {.fault = SlopeFault::no_poles, .solve = solve};
    give_back(m, x.a, x.QS);
    return {};
}

SlopeVerdict any_slope(FilterSpec& spec, Real units, XPlane& x, FrontNotes& notes) {
    const auto refused = [](FrontVerdict front) {
        return SlopeVerdict{.fault = SlopeFault::no_function, .front = front};
    };
    if (!(x.a > 0)) return refused(refuse(spec, FrontFault::cutoff_missing));
    FilterSpec without_f = spec;
    without_f.passbandType = functional_passband;
    if (const FrontVerdict front = buildQ(without_f, x, notes); !front.good()) return refused(front);
    if (has_zero_on_pass_band(x)) return refused(refuse(spec, FrontFault::ripple_roots_missing));

    const SlopeTask task{.Q = x.QS,
                         .a = x.a,
                         .xReal = x.xReal,
                         .eps2 = x.eps2,
                         .units = units,
                         .power = static_cast<Real>(spec.stopbandLoss) / unit_of_octave,
                         .tan_edge = x.warp * x.normFrequency};
    if (exchange_slope(task, x.ES) || least_ripple(spec, task, x)) return {};
    return {.fault = units < 0 ? SlopeFault::zero_too_low : SlopeFault::infinity_too_low};
}

// Its edges included, within the rounding of a frequency.
bool has_zero_on_pass_band(const XPlane& x) {
    constexpr Real rounding = 1e-14L;
    for (int i = 1; i <= x.QS.count; ++i) {
        const Real size = cabs(x.QS.root(i));
        if (1 - x.a < rounding * size || size * (1 - x.a) < rounding * x.a) return true;
        if (x.QS.im(i) == 0 && x.QS.re(i) < 0) return true;
    }
    return false;
}

// Bisection of the logarithm of the ripple in dB. With the least ripple itself a pole would be at zero or at infinity,
// and an element as large.
bool least_ripple(FilterSpec& spec, SlopeTask task, XPlane& x) {
    constexpr double highest = 6;  // dB
    constexpr double above_least = 1.01;
    constexpr int halvings = 20;
    const auto is_reached = [&](double ripple) {
        task.eps2 = x.eps2 = squared_of(ripple);
        return exchange_slope(task, x.ES);
    };
    double too_low = spec.bandEdgeLoss, enough = highest;
    if (too_low >= highest || !is_reached(highest)) return false;
    for (int halving = 1; halving <= halvings; ++halving) {
        const double middle = std::sqrt(too_low * enough);
        (is_reached(middle) ? enough : too_low) = middle;
    }
    spec.bandEdgeLoss = std::fmin(above_least * enough, highest);
    return is_reached(spec.bandEdgeLoss);
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
