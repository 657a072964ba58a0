#include "numeric/root_order.h"

#include <cmath>

#include "numeric/guarded.h"

namespace kavrel {

namespace {

using Root = Complex<Wide>;

template <class Before>
void sort_range(WideRootSet& set, int first, int last, Before before);
bool is_real(Root z) { return z.im == 0; }
bool smaller_magnitude(Root a, Root b) { return cabs(a) < cabs(b); }

}  // namespace

void sortByMagnitude(WideRootSet& set) { sort_range(set, 1, set.count, smaller_magnitude); }

void sortRealsDescendingMagnitude(WideRootSet& set) {
    sort_range(set, 1, set.count, [](Root a, Root b) { return std::fabs(a.re) > std::fabs(b.re); });
}

int sortConjugates(WideRootSet& set, Reals place) {
    int reals = 0;
    for (int i = 1; i <= set.count; ++i) reals += is_real(set.root(i)) ? 1 : 0;
    sort_range(set, 1, set.count, [](Root a, Root b) { return is_real(a) && !is_real(b); });
    sort_range(set, 1, reals, [](Root a, Root b) { return a.re < b.re; });
    sort_range(set, reals + 1, set.count, smaller_magnitude);
    if (place == Reals::last) sort_range(set, 1, set.count, [](Root a, Root b) { return is_real(b) && !is_real(a); });
    return reals;
}

namespace {

// Sorts roots first to last of the set by exchanges of neighbours, which keeps the order of equal ones.
template <class Before>
void sort_range(WideRootSet& set, int first, int last, Before before) {
    for (int i = first + 1; i <= last; ++i) {
        for (int j = i; j > first && before(set.root(j), set.root(j - 1)); --j) {
            const Root kept = set.root(j);
            set.set_root(j, set.root(j - 1));
            set.set_root(j - 1, kept);
        }
    }
}

}  // namespace

}  // namespace kavrel
