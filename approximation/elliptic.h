// Elliptic integrals and functions in the wide type, and the zeros that they give. A modulus comes with its complement,
// since near 1 it is the complement that has the digits.
#pragma once

#include "approximation/x_plane.h"
#include "shell/table.h"

namespace kavrel {

[[nodiscard]] XPlane::Real arithmetic_geometric_mean(XPlane::Real a, XPlane::Real b);

// Carlson's symmetric integral of the first kind R_F(x, y, z), at most one argument 0. F(phi, k) is sin phi
// R_F(cos^2 phi, 1 - k^2 sin^2 phi, 1). Source: B. C. Carlson, Numer. Algorithms 10 (1995).
[[nodiscard]] XPlane::Real carlson_rf(XPlane::Real x, XPlane::Real y, XPlane::Real z);

// Jacobi's functions of one modulus by Gauss's transformation, with c' = c^2/(4 a') in place of a difference.
class JacobiFunctions {
public:
    using Real = XPlane::Real;
    struct Values {
        Real sn = 0, cn = 0, dn = 1;
    };

    JacobiFunctions(Real modulus, Real complement);

    // At (phi/(pi/2)) K, from the sine and the cosine of phi.
    [[nodiscard]] Values at(Real sine, Real cosine) const;
    // K is pi/2 over it.
    [[nodiscard]] Real mean() const { return mean_; }

private:
    static constexpr int limit = 20;
    int steps_ = 0;
    Table<Real, limit> modulus_, ratio_;  // [i] c_i/a_i and b_(i - 1)/a_i
    Real mean_ = 1;
};

// Elliptic zeros of degree n, 1 to 50, edge ratio omega > 1: v(i) = dn(u_i), ascending, 1 <= i <= n/2; the zeros
// in x are 1/v^2, the last one farthest from the pass band.
struct EllipticZeros {
    int count = 0;
    Table<XPlane::Real, 25> v;
};
[[nodiscard]] EllipticZeros ellipticZeros(XPlane::Real omega, int n);

// sqrt(1 - 1/omega^2).
[[nodiscard]] XPlane::Real complement_of_edge(XPlane::Real omega);

}  // namespace kavrel
