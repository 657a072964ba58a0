#include "numeric/root_set.h"

#include <cmath>

#include "numeric/guarded.h"
#include "numeric/root_order.h"

namespace kavrel {

Polynomial expandRoots(const WideRootSet& set) {
    Polynomial p;
    p.degree = set.count;
    p.re(1) = set.multiplier;
    for (int i = 1; i <= set.count; ++i) {
        const Complex<Wide> r = set.root(i);
        for (int k = i + 1; k >= 2; --k) {
            const Complex<Wide> c = Complex<Wide>{p.re(k), p.im(k)} - r * Complex<Wide>{p.re(k - 1), p.im(k - 1)};
            p.re(k) = c.re;
            p.im(k) = c.im;
        }
    }
    return p;
}

QuadraticFactor factorsOf(const WideRootSet& set) {
    WideRootSet roots = set;
    sortRealsDescendingMagnitude(roots);
    sortConjugates(roots, Reals::last);

    QuadraticFactor factors;
    factors.multiplier = roots.multiplier;
    factors.count = (roots.count + 1) / 2;
    for (int i = 1; i <= roots.count / 2; ++i) {
        const Complex<Wide> r1 = roots.root(2 * i - 1);
        const Complex<Wide> r2 = roots.root(2 * i);
        const Wide a1 = -(r1.re + r2.re);
        factors.a1(i) = std::fabs(a1) <= static_cast<Wide>(1e-10) ? 0 : a1;
        factors.a0(i) = r1.re * r2.re - r1.im * r2.im;
    }
    if (roots.count % 2 == 1) factors.a1(factors.count) = -roots.re(roots.count);
    return factors;
}

}  // namespace kavrel
