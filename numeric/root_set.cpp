#include "numeric/root_set.h"

#include <cmath>

#include "numeric/guarded.h"
#include "numeric/root_order.h"

namespace kavrel {

template <class Real>
void swapRoots(RootSetOf<Real>& set, int i, int j) {
    const Complex<Real> kept = set.root(i);
    set.set_root(i, set.root(j));
    set.set_root(j, kept);
}

template <class Real>
int removeRoot(RootSetOf<Real>& set, Real zr, Real zi, int rootMatchDigits) {
    const Real relative = std::pow(Real{10}, static_cast<Real>(-rootMatchDigits)) * cabs(zr, zi);
    const Real reach = std::fmax(static_cast<Real>(1e-8), relative);
    int i = 1;
    while (i <= set.count && cabs(set.re(i) - zr, set.im(i) - zi) > reach) ++i;
    if (i > set.count) return -1;

    for (; i < set.count; ++i) set.set_root(i, set.root(i + 1));
    --set.count;
    return 0;
}

template <class Real>
PolynomialOf<Real> expandRoots(const RootSetOf<Real>& set) {
    PolynomialOf<Real> p;
    p.degree = set.count;
    p.re(1) = set.multiplier;
    for (int i = 1; i <= set.count; ++i) {
        const Complex<Real> r = set.root(i);
        for (int k = i + 1; k >= 2; --k) {
            const Complex<Real> c = Complex<Real>{p.re(k), p.im(k)} - r * Complex<Real>{p.re(k - 1), p.im(k - 1)};
            p.re(k) = c.re;
            p.im(k) = c.im;
        }
    }
    return p;
}

template <class Real>
QuadraticFactorsOf<Real> factorsOf(const RootSetOf<Real>& set) {
    RootSetOf<Real> roots = set;
    sortRealsDescendingMagnitude(roots);
    sortConjugates(roots, Reals::last);

    QuadraticFactorsOf<Real> factors;
    factors.multiplier = roots.multiplier;
    factors.count = (roots.count + 1) / 2;
    for (int i = 1; i <= roots.count / 2; ++i) {
        const Complex<Real> r1 = roots.root(2 * i - 1);
        const Complex<Real> r2 = roots.root(2 * i);
        const Real a1 = -(r1.re + r2.re);
        factors.a1(i) = std::fabs(a1) <= static_cast<Real>(1e-10) ? 0 : a1;
        factors.a0(i) = r1.re * r2.re - r1.im * r2.im;
    }
    if (roots.count % 2 == 1) factors.a1(factors.count) = -roots.re(roots.count);
    return factors;
}

#define KAVREL_ROOT_SET(Real)                                        \
    template void swapRoots(RootSetOf<Real>&, int, int);             \
    template int removeRoot(RootSetOf<Real>&, Real, Real, int);      \
    template PolynomialOf<Real> expandRoots(const RootSetOf<Real>&); \
    template QuadraticFactorsOf<Real> factorsOf(const RootSetOf<Real>&);
KAVREL_ROOT_SET(double)
KAVREL_ROOT_SET(long double)
#undef KAVREL_ROOT_SET

}  // namespace kavrel
