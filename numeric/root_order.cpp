#include "numeric/root_order.h"

#include <cmath>
#include <utility>

#include "numeric/guarded.h"

namespace kavrel {

namespace {

using Root = Complex<Wide>;

template <class Key>
void sort_range(WideRootSet& set, int first, int last, Key key);
bool is_real(Root z) { return z.im == 0; }
Wide magnitude(Root z) { return cabs(z); }

}  // namespace

void sortByMagnitude(WideRootSet& set) { sort_range(set, 1, set.count, magnitude); }

void sortRealsDescendingMagnitude(WideRootSet& set) {
    sort_range(set, 1, set.count, [](Root z) { return -std::fabs(z.re); });
}

int sortConjugates(WideRootSet& set, Reals place) {
    int reals = 0;
    for (int i = 1; i <= set.count; ++i) reals += is_real(set.root(i)) ? 1 : 0;
    const auto [first_real, first_pair] =
        place == Reals::last ? std::pair(set.count - reals + 1, 1) : std::pair(1, reals + 1);
    const bool reals_last = place == Reals::last;
    sort_range(set, 1, set.count, [reals_last](Root z) { return is_real(z) == reals_last ? Wide{1} : Wide{0}; });
    sort_range(set, first_real, first_real + reals - 1, [](Root z) { return z.re; });
    sort_range(set, first_pair, first_pair + set.count - reals - 1, magnitude);
    return reals;
}

namespace {

// Sorts roots first to last of the set by ascending keys; equal ones keep their order.
template <class Key>
void sort_range(WideRootSet& set, int first, int last, Key key) {
    Table<Wide, max_degree> keys;
    for (int i = first; i <= last; ++i) keys(i) = key(set.root(i));
    for (int i = first + 1; i <= last; ++i) {
        const Root moved = set.root(i);
        const Wide own = keys(i);
        int j = i;
        for (; j > first && own < keys(j - 1); --j) {
            set.set_root(j, set.root(j - 1));
            keys(j) = keys(j - 1);
        }
        set.set_root(j, moved);
        keys(j) = own;
    }
}

}  // namespace

}  // namespace kavrel
