#include "approximation/stopband_floor.h"

#include <algorithm>
#include <cmath>

#include "approximation/characteristic.h"
#include "approximation/decibel.h"
#include "approximation/frequency_variable.h"
#include "numeric/peak.h"

namespace kavrel {

namespace {

using Real = XPlane::Real;

struct LeastQuotients {
    Real lower = 0;
    Real upper = 0;  // 0 where there is no such stopband
};
LeastQuotients least_quotients(const XPlane& xp, const WideRootSet& numerator);

}  // namespace

StopbandFloor stopbandFloor(const XPlane& xp) {
    const LeastQuotients least = least_quotients(xp, xp.FS);
    return {loss_of(least.lower), loss_of(least.upper)};
}

StopbandFloor stopbandFloorOfE(const XPlane& xp) {
    const LeastQuotients least = least_quotients(xp, xp.ES);
    const auto loss = [](Real quotient) { return quotient > 0 ? 10 * std::log10(quotient) : 0; };
    return {loss(least.lower), loss(least.upper)};
}

namespace {

bool is_zero(const XPlane& xp, Real x) {
    for (int i = 1; i <= xp.QS.count; ++i) {
        if (xp.QS.re(i) == x && xp.QS.im(i) == 0) return true;
    }
    return false;
}

// The stopband reaches from x = edge to x = end, which is w = 0 or infinity.
Real least_between(const XPlane& xp, const WideRootSet& numerator, Real edge, Real end) {
    const Real low = std::min(edge, end), high = std::max(edge, end);
    Table<Real, max_degree + 2> border;
    int count = 0;
    border(++count) = edge;
    border(++count) = end;
    for (int i = 1; i <= xp.zeroCount; ++i) {
        if (xp.ARI(i) == 0 && xp.ARR(i) > low && xp.ARR(i) < high) border(++count) = xp.ARR(i);
    }
    std::sort(border.begin(), border.begin() + count);

    const auto value = [&](Real x) { return quotient(numerator, xp.QS, {x, 0}).re; };
    Real least = value(edge);
    if (!is_zero(xp, end)) least = std::min(least, value(end));
    for (int i = 1; i < count; ++i) {
        const auto depth = [&](Real x) { return -value(x); };
        least = std::min(least, -peak_between(border(i), border(i + 1), 50, depth).value);
    }
    return least;
}

LeastQuotients least_quotients(const XPlane& xp, const WideRootSet& numerator) {
    const auto least = [&](Real w, Real end) { return least_between(xp, numerator, x_of_frequency(w, xp.a), end); };
    return {xp.lower_stop > 0 ? least(xp.lower_stop, xp.a) : 0, xp.upper_stop > 1 ? least(xp.upper_stop, 1) : 0};
}

}  // namespace

}  // namespace kavrel
