#include "approximation/scaling.h"

#include <cmath>

#include "approximation/power_loss.h"

namespace kavrel {

namespace {

long double ratio_for_loss(long double u);

}  // namespace

void scaleByMaximum(XPlane& x, bool band_pass) {
    const long double margin = 3 * std::pow(10.0L, static_cast<long double>(x.passes - 6));
    scaleE(x, (margin + 1) * largestTransmission(x));
    if (!band_pass && x.passes != no_ratio_pass) x.termRatioLimit = ratio_for_loss(lossRatioAtZero(x));
}

bool raiseForTerminations(XPlane& x, long double ratio) {
    const long double limit = x.termRatioLimit;
    if (ratio <= limit) return false;
    const long double g = std::sqrt(limit / ratio) * (1 + ratio) / (1 + limit);
    scaleE(x, g * g);
    x.termRatioLimit = ratio;
    return true;
}

long double terminationRatio(double R1, double R2) {
    if (R1 == 0 || R2 == 0) return 1;
    const long double ratio = static_cast<long double>(R2) / R1;
    return ratio < 1 ? 1 / ratio : ratio;
}

long double lossRatioAtZero(const XPlane& x) { return 1 / transmission(x, {-x.a, 1}); }

void scaleE(XPlane& x, long double power) {
    const long double root = std::sqrt(power);
    x.ES.multiplier *= power;
    x.eFactors.multiplier *= root;
    x.eEven.multiplier *= root;
    x.eOdd.multiplier *= root;
}

namespace {

// Ratio of terminations whose mismatch loses the power ratio u: u = (1 + L)^2/(4 L).
long double ratio_for_loss(long double u) {
    if (!(u > 1)) return 1;
    const long double root = std::sqrt(u) + std::sqrt(u - 1);
    return root * root;
}

}  // namespace

}  // namespace kavrel
