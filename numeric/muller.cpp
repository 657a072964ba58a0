#include "numeric/muller.h"

#include <algorithm>

#include "numeric/guarded.h"

namespace kavrel {

template <class Real>
Real mullerStep(MullerPoints<Real>& p, int iteration) {
    const auto quotient = [](Complex<Real> n, Complex<Real> d) { return cdiv(n, d, solver_decades); };
    const auto difference = [&](int i, int j) { return quotient(p.f(j) - p.f(i), p.x(j) - p.x(i)); };

    if (iteration == 1) p.q12 = difference(1, 2);
    const Complex<Real> q23 = difference(2, 3);
    const Complex<Real> q13 = quotient(q23 - p.q12, p.x(3) - p.x(1));
    p.q12 = q23;

    // f(x3 - delta) = q13 delta^2 - 2 b delta + f3 = 0, solved for delta as f3/(b +- sqrt(b^2 - q13 f3))
    Complex<Real> b = Real{0.5} * ((p.x(3) - p.x(2)) * q13 + q23);
    Complex<Real> c = q13;
    Complex<Real> f3 = p.f(3);
    const Real g = std::max(largest_part(b), std::sqrt(largest_part(c) * largest_part(f3)));
    p.x(4) = p.x(3);
    if (!(g > 0)) return 0;
    b = (1 / g) * b;
    const Complex<Real> w = csqrt(b * b - ((1 / g) * c) * ((1 / g) * f3));
    const Complex<Real> plus = b + w;
    const Complex<Real> minus = b - w;
    Complex<Real> delta = quotient(f3, g * (cabs(plus) >= cabs(minus) ? plus : minus));

    const auto decades = [](Complex<Real> z) { return std::trunc(std::log10(cabs(z) / 10 + 1)); };
    if (cabs(delta) >= 90) {  // a shorter step has no decades
        const Real excess = decades(delta) - decades(p.x(3));
        if (excess > 0) delta = std::pow(Real{10}, -excess) * delta;
    }

    p.x(4) = p.x(3) - delta;
    return cabs(delta);
}

template double mullerStep(MullerPoints<double>&, int);
template long double mullerStep(MullerPoints<long double>&, int);

}  // namespace kavrel
