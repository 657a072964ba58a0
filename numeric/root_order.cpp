#include "numeric/root_order.h"

#include <cmath>

#include "numeric/guarded.h"

namespace kavrel {
namespace {

// Exchange sort of roots first..last of the set by exchanges of neighbours, which makes it stable.
template <class Real, class Before, class Exchange>
void sort_range(RootSetOf<Real>& set, int first, int last, Before before, Exchange exchange) {
    for (int i = first + 1; i <= last; ++i) {
        for (int j = i; j > first && before(set.root(j), set.root(j - 1)); --j) exchange(j - 1, j);
    }
}

template <class Real, class Exchange>
int order_conjugates(RootSetOf<Real>& set, Reals place, Exchange exchange) {
    const auto is_real = [](Complex<Real> z) { return z.im == 0; };
    const auto real_before_complex = [&](Complex<Real> a, Complex<Real> b) { return is_real(a) && !is_real(b); };
    const auto complex_before_real = [&](Complex<Real> a, Complex<Real> b) { return is_real(b) && !is_real(a); };
    const auto smaller_value = [](Complex<Real> a, Complex<Real> b) { return a.re < b.re; };
    const auto smaller_magnitude = [](Complex<Real> a, Complex<Real> b) { return cabs(a) < cabs(b); };

    int reals = 0;
    for (int i = 1; i <= set.count; ++i) reals += is_real(set.root(i)) ? 1 : 0;
    sort_range(set, 1, set.count, real_before_complex, exchange);
    sort_range(set, 1, reals, smaller_value, exchange);
    sort_range(set, reals + 1, set.count, smaller_magnitude, exchange);
    if (place == Reals::last) sort_range(set, 1, set.count, complex_before_real, exchange);
    return reals;
}

}  // namespace

template <class Real>
void sortByMagnitude(RootSetOf<Real>& set) {
    sort_range(
        set, 1, set.count, [](Complex<Real> a, Complex<Real> b) { return cabs(a) < cabs(b); },
        [&](int i, int j) { swapRoots(set, i, j); });
}

template <class Real>
void sortRealsDescendingMagnitude(RootSetOf<Real>& set) {
    sort_range(
        set, 1, set.count, [](Complex<Real> a, Complex<Real> b) { return std::fabs(a.re) > std::fabs(b.re); },
        [&](int i, int j) { swapRoots(set, i, j); });
}

template <class Real>
int sortConjugates(RootSetOf<Real>& set, Reals place) {
    return order_conjugates(set, place, [&](int i, int j) { swapRoots(set, i, j); });
}

template <class Real>
int sortConjugates(RootSetOf<Real>& set, Reals place, RootSigns& LARR) {
    return order_conjugates(set, place, [&](int i, int j) {
        swapRoots(set, i, j);
        std::swap(LARR(i), LARR(j));
    });
}

#define KAVREL_ROOT_ORDER(Real)                                   \
    template void sortByMagnitude(RootSetOf<Real>&);              \
    template void sortRealsDescendingMagnitude(RootSetOf<Real>&); \
    template int sortConjugates(RootSetOf<Real>&, Reals);         \
    template int sortConjugates(RootSetOf<Real>&, Reals, RootSigns&);
KAVREL_ROOT_ORDER(double)
KAVREL_ROOT_ORDER(long double)
#undef KAVREL_ROOT_ORDER

}  // namespace kavrel
