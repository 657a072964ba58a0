#include "approximation/elliptic.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace kavrel {

namespace {

using Real = XPlane::Real;

constexpr Real pi = std::numbers::pi_v<Real>;
constexpr Real round_off = 8 * std::numeric_limits<Real>::epsilon();

}  // namespace

Real arithmetic_geometric_mean(Real a, Real b) {
    while (std::fabs(a - b) > round_off * a) {
        const Real mean = (a + b) / 2;
        b = std::sqrt(a * b);
        a = mean;
    }
    return (a + b) / 2;
}

// Each turn brings the arguments nearer to each other by a factor of 4; the series of the rest leaves its 8th power.
Real carlson_rf(Real x, Real y, Real z) {
    constexpr Real near = 3e-3L;
    Real mean = 0, X = 0, Y = 0, Z = 0;
    for (;;) {
        mean = (x + y + z) / 3;
        X = 1 - x / mean, Y = 1 - y / mean, Z = 1 - z / mean;
        if (!(std::max({std::fabs(X), std::fabs(Y), std::fabs(Z)}) > near)) break;
        const Real lambda = std::sqrt(x) * (std::sqrt(y) + std::sqrt(z)) + std::sqrt(y) * std::sqrt(z);
        x = (x + lambda) / 4, y = (y + lambda) / 4, z = (z + lambda) / 4;
    }
    const Real e2 = X * Y - Z * Z, e3 = X * Y * Z;
    const Real series = 1 - e2 / 10 + e3 / 14 + e2 * e2 / 24 - 3 * e2 * e3 / 44 - 5 * e2 * e2 * e2 / 208 +
                        3 * e3 * e3 / 104 + e2 * e2 * e3 / 16;
    return series / std::sqrt(mean);
}

JacobiFunctions::JacobiFunctions(Real modulus, Real complement) {
    Real b = complement, c = modulus;
    while (steps_ < limit && c > std::numeric_limits<Real>::epsilon() / 16 * mean_) {
        const Real a = (mean_ + b) / 2;
        c = c * c / (4 * a);
        modulus_(++steps_) = c / a;
        ratio_(steps_) = b / a;
        b = std::sqrt(mean_ * b);
        mean_ = a;
    }
}

auto JacobiFunctions::at(Real sine, Real cosine) const -> Values {
    Values v{sine, cosine, 1};
    for (int i = steps_; i >= 1; --i) {
        const Real q = 1 / (1 + modulus_(i) * v.sn * v.sn);
        v = {(1 + modulus_(i)) * v.sn * q, v.cn * v.dn * q, (ratio_(i) + modulus_(i) * v.cn * v.cn) * q};
    }
    return v;
}

Real complement_of_edge(Real omega) { return std::sqrt((omega - 1) * (omega + 1)) / omega; }

// dn by the descending Landen transformation, up to the modulus 1 where dn is 1/cosh. The complement of the modulus is
// carried, l = (1 - k)/(1 + k), since it is what vanishes.
EllipticZeros ellipticZeros(Real omega, int n) {
    constexpr int landen_limit = 20;
    const Real complement = complement_of_edge(omega);
    Table<Real, landen_limit> l;
    int terms = 0;
    Real k = 1 / omega, next = (omega - 1) / (omega + 1);
    Real u0 = pi / (2 * n * arithmetic_geometric_mean(1, complement));
    while (terms < landen_limit) {
        l(++terms) = next;
        u0 *= (1 + k) / 2;
        if (next < std::numeric_limits<Real>::epsilon() / 16) break;
        k = std::sqrt((1 - next) * (1 + next));
        next = next * next / ((1 + k) * (1 + k));
    }
    EllipticZeros zeros;
    zeros.count = n / 2;
    for (int i = 1; i <= zeros.count; ++i) {
        Real v = 1 / std::cosh((n + 1 - 2 * i) * u0);
        for (int j = terms; j >= 1; --j) v = (v + l(j) / v) / (1 + l(j));
        zeros.v(i) = v;
    }
    return zeros;
}

}  // namespace kavrel
