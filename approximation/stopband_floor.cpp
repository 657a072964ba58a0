#include "approximation/stopband_floor.h"

#include <algorithm>

#include "approximation/characteristic.h"
#include "approximation/decibel.h"
#include "approximation/frequency_variable.h"
#include "numeric/peak.h"

namespace kavrel {

namespace {

using Real = XPlane::Real;

Real least_between(const XPlane& xp, Real from, Real to);
bool is_zero(const XPlane& xp, Real x);
Real least_loss(const XPlane& xp, Real edge, Real end);

}  // namespace

StopbandFloor stopbandFloor(const XPlane& xp) {
    StopbandFloor floor;
    if (xp.lower_stop > 0) floor.lower = least_loss(xp, x_of_frequency(xp.lower_stop, xp.a), xp.a);
    if (xp.upper_stop > 1) floor.upper = least_loss(xp, x_of_frequency(xp.upper_stop, xp.a), 1);
    return floor;
}

namespace {

// The stopband reaches from x = edge to x = end, which is w = 0 or infinity.
Real least_loss(const XPlane& xp, Real edge, Real end) {
    const Real low = std::min(edge, end), high = std::max(edge, end);
    Table<Real, max_degree + 2> border;
    int count = 0;
    border(++count) = edge;
    border(++count) = end;
    for (int i = 1; i <= xp.zeroCount; ++i) {
        if (xp.ARI(i) == 0 && xp.ARR(i) > low && xp.ARR(i) < high) border(++count) = xp.ARR(i);
    }
    std::sort(border.begin(), border.begin() + count);

    Real least = squared_characteristic(xp, edge);
    if (!is_zero(xp, end)) least = std::min(least, squared_characteristic(xp, end));
    for (int i = 1; i < count; ++i) least = std::min(least, least_between(xp, border(i), border(i + 1)));
    return loss_of(least);
}

bool is_zero(const XPlane& xp, Real x) {
    for (int i = 1; i <= xp.QS.count; ++i) {
        if (xp.QS.re(i) == x && xp.QS.im(i) == 0) return true;
    }
    return false;
}

Real least_between(const XPlane& xp, Real from, Real to) {
    return -peak_between(from, to, 50, [&](Real x) { return -squared_characteristic(xp, x); }).value;
}

}  // namespace

}  // namespace kavrel
