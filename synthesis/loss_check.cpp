#include "synthesis/loss_check.h"

#include <cmath>
#include <limits>
#include <numbers>

#include "circuit/chain_analysis.h"
#include "synthesis/ladder_problem.h"

namespace kavrel {

namespace {

using Real = long double;

constexpr int passband_points = 101;
constexpr int stopband_points = 60;
constexpr Real farthest = 10;  // times the edge

[[nodiscard]] Real omega_of(const XPlane& xp, const FilterSpec& spec, Real w);
[[nodiscard]] Real log_product(const WideRootSet& set, Real x);

}  // namespace

long double design_loss(const XPlane& xp, long double w) {
    constexpr Real decibel = 10 / std::numbers::ln10_v<Real>;
    if (w == 1 && xp.ES.count == xp.QS.count) {
        // x is infinite at the edge itself.
        return decibel * std::log(std::fabs(xp.ES.multiplier / xp.QS.multiplier));
    }
    const Real x = (xp.a - w * w) / (1 - w * w);
    return decibel * (log_product(xp.ES, x) - log_product(xp.QS, x));
}

LossDifference compare_loss(const XPlane& xp, const FilterSpec& spec, const Circuit& circuit) {
    LossDifference out;
    Chain chain;
    out.passband = std::numeric_limits<double>::infinity();
    if (prepare_chain(circuit, {}, chain) != ChainVerdict::done) return out;
    const Real lower = std::sqrt(xp.a);
    Real offset = 0;
    const auto difference = [&](Real w, Real& found, Real& loss) {
        loss = design_loss(xp, w);
        if (!(loss < deepest_loss)) return false;
        ChainPoint point;
        if (analyze_point(chain, omega_of(xp, spec, w), point) != PointVerdict::computed) return false;
        found = point.loss - loss - offset;
        return true;
    };
    Real found = 0;
    Real loss = 0;
    if (spec.loadResistance == 0) {
        const Real w = std::sqrt((1 + xp.a) / 2);
        if (!difference(w, found, loss)) return out;
        offset = found;
    }
    out.passband = 0;
    const auto note = [&](double& largest, Real value) {
        const auto size = static_cast<double>(std::fabs(value));
        if (!(size <= largest)) largest = size;
    };
    for (int i = 0; i <= passband_points; ++i) {
        const Real w =
            lower + (1 - lower) * (static_cast<Real>(i) + (i == 0 && lower == 0 ? 0.01L : 0)) / passband_points;
        if (!difference(w, found, loss)) continue;
        note(out.passband, found);
        ++out.points;
    }
    // A circuit with a value that is no number has no loss anywhere.
    if (out.points == 0) out.passband = std::numeric_limits<double>::infinity();
    for (int i = 1; i <= stopband_points; ++i) {
        const Real away = std::pow(farthest, static_cast<Real>(i) / stopband_points);
        for (const Real w : {away, lower / away}) {
            if (w == 0 || !difference(w, found, loss)) continue;
            note(out.stopband, found);
            note(out.stopband_relative, found / std::fmax(loss, 1.0L));
            ++out.points;
        }
    }
    return out;
}

namespace {

// rad/sec of the filter.
Real omega_of(const XPlane& xp, const FilterSpec& spec, Real w) {
    if (spec.filterType == high_pass) w = 1 / w;
    if (spec.medium != microwave) return 2 * std::numbers::pi_v<Real> * xp.normFrequency * w;
    return 2 * spec.sampleFrequency * std::atan(w * edge_tangent(xp, spec));
}

// ln |k product (x - root)|, each root taken with its distance.
Real log_product(const WideRootSet& set, Real x) {
    Real sum = std::log(std::fabs(set.multiplier));
    for (int i = 1; i <= set.count; ++i) sum += std::log(std::hypot(x - set.re(i), set.im(i)));
    return sum;
}

}  // namespace

}  // namespace kavrel
