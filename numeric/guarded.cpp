#include "numeric/guarded.h"

#include <algorithm>
#include <utility>

namespace kavrel {

template <class Real>
Real cabs(Real re, Real im) {
    Real larger = std::fabs(re);
    Real smaller = std::fabs(im);
    if (larger < smaller) std::swap(larger, smaller);
    if (larger == 0) return 0;
    const Real q = smaller / larger;
    return larger * std::sqrt(1 + q * q);
}

template <class Real>
Complex<Real> csqrt(Real re, Real im) {
    const Real m = cabs(re, im);
    if (m == 0) return {};
    const Real t = std::sqrt((std::fabs(re) + m) / 2);
    const Real u = std::fabs(im) / (2 * t);
    const Complex<Real> root = re >= 0 ? Complex<Real>{t, u} : Complex<Real>{u, t};
    return im >= 0 ? root : conjugate(root);
}

template <class Real>
Complex<Real> cdiv(Real nr, Real ni, Real dr, Real di, int decades) {
    const Real n = std::max(std::fabs(nr), std::fabs(ni));
    const Real d = std::max(std::fabs(dr), std::fabs(di));
    constexpr auto infinite = static_cast<Real>(infinite_part);
    if (n == 0) return {};
    if (d == 0) return {infinite, infinite};

    // 35 decades are within every reach, whichever way the logarithms are cut.
    if (!(n < d * static_cast<Real>(1e35) && n > d * static_cast<Real>(1e-35))) {
        const Real difference = std::trunc(std::log10(n)) - std::trunc(std::log10(d));
        if (difference < static_cast<Real>(-decades)) return {};
        if (difference >= static_cast<Real>(decades)) return {infinite, infinite};
    }

    if (std::fabs(dr) < std::fabs(di)) {
        const Real t = dr / di;
        const Real den = di + dr * t;
        return {(nr * t + ni) / den, (ni * t - nr) / den};
    }
    const Real t = di / dr;
    const Real den = dr + di * t;
    return {(ni * t + nr) / den, (ni - nr * t) / den};
}

template <class Real>
Complex<Real> cinv(Real re, Real im) {
    return cdiv(Real{1}, Real{0}, re, im);
}

template <class Real>
Complex<Real> reflectIntoUnitCircle(Complex<Real> z) {
    return cabs(z) > 1 ? cinv(z.re, z.im) : z;
}

template <class Real>
RootPair<Real> rootsOfQuadratic(Real a1, Real a0, bool reflect) {
    const Real h = -a1 / 2;
    const Real d = h * h - a0;
    const Real r = std::sqrt(std::fabs(d));

    RootPair<Real> roots;
    if (d < 0) {
        roots = {{h, r}, {h, -r}};
    } else {
        const Real larger = h < 0 ? h - r : h + r;
        const Real smaller = larger == 0 ? larger : a0 / larger;
        roots = h < 0 ? RootPair<Real>{{smaller, 0}, {larger, 0}} : RootPair<Real>{{larger, 0}, {smaller, 0}};
    }
    if (reflect) roots = {reflectIntoUnitCircle(roots.first), reflectIntoUnitCircle(roots.second)};
    return roots;
}

template <class Real>
RootPair<Real> csqrtDifference(Real zr, Real zi, Real cr, Real ci, bool reflect) {
    const Complex<Real> z{zr, zi};
    const Complex<Real> r = csqrt(z * z - Complex<Real>{cr, ci});
    const Complex<Real> c{cr, ci};
    const bool plus_is_larger = z.re * r.re + z.im * r.im >= 0;
    const Complex<Real> larger = plus_is_larger ? z + r : z - r;
    const Complex<Real> smaller = larger == Complex<Real>{} ? larger : cdiv(c, larger);
    RootPair<Real> roots = plus_is_larger ? RootPair<Real>{larger, smaller} : RootPair<Real>{smaller, larger};
    if (reflect) roots = {reflectIntoUnitCircle(roots.first), reflectIntoUnitCircle(roots.second)};
    return roots;
}

#define KAVREL_GUARDED(Real)                                     \
    template Real cabs(Real, Real);                              \
    template Complex<Real> csqrt(Real, Real);                    \
    template Complex<Real> cdiv(Real, Real, Real, Real, int);    \
    template Complex<Real> cinv(Real, Real);                     \
    template Complex<Real> reflectIntoUnitCircle(Complex<Real>); \
    template RootPair<Real> rootsOfQuadratic(Real, Real, bool);  \
    template RootPair<Real> csqrtDifference(Real, Real, Real, Real, bool);
KAVREL_GUARDED(double)
KAVREL_GUARDED(long double)
#undef KAVREL_GUARDED

}  // namespace kavrel
