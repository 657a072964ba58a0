#include "approximation/predistortion.h"

#include <algorithm>

#include "approximation/factor_signs.h"

namespace kavrel {

void findMinimumQ(XPlane& x, double requested, bool high_pass) {
    long double nearest = depthOfFactor(x.eFactors, x.a, high_pass, 1);
    for (int i = 2; i <= x.eFactors.factors(); ++i) {
        nearest = std::max(nearest, depthOfFactor(x.eFactors, x.a, high_pass, i));
    }
    x.q1 = requested;
    x.qMin = 1 / (attainable_shift * -nearest);
}

bool qOutOfReach(const XPlane& x) { return x.q1 * q_tolerance <= x.qMin; }

void predistort(WidePseudoPolynomial& e, long double a, long double q, bool high_pass) {
    for (int i = 1; i <= e.pairs(); ++i) {
        const long double c = e.c(i);
        const long double d = e.d(i);
        const long double t = c + d;
        const long double g = high_pass ? 1 - 2 * q * c : 1 - 2 * q * t / (1 - a);
        const long double h = q - t * q * q / (1 - a);
        e.c(i) = high_pass ? c / g : (c - h) / g;
        e.d(i) = high_pass ? (d - q * (1 - q * c)) / g : (d + h) / g;
        e.multiplier *= g;
    }
    if (e.degree % 2 == 0) return;
    long double& c = e.c(e.factors());
    if (high_pass) {
        const long double g = 1 - q * c;
        c /= g;
        e.multiplier *= g;
    } else {
        c -= q;
    }
}

}  // namespace kavrel
