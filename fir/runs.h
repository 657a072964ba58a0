// Runs of errors of one sign, of which an exchange takes the next extremal points.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace kavrel {

// Where the error of a run is largest.
template <class Place, class Real>
struct ErrorRun {
    Place at;
    int sign = 0;
    Real value = 0;  // its size there
};

// Leaves `wanted` of the runs, whose signs alternate: from the smallest on they go, so that the signs go on alternating
// and the largest stays.
template <class Place, class Real>
void thin_runs(std::vector<ErrorRun<Place, Real>>& all, std::size_t wanted) {
    const auto by_value = [](const auto& a, const auto& b) { return a.value < b.value; };
    while (all.size() > wanted) {
        const auto smallest = std::min_element(all.begin(), all.end(), by_value);
        const bool at_end = smallest == all.begin() || smallest + 1 == all.end();
        if (at_end) {
            all.erase(smallest);
        } else if (all.size() == wanted + 1) {
            all.erase(all.front().value < all.back().value ? all.begin() : all.end() - 1);
        } else {
            const auto first = (smallest - 1)->value < (smallest + 1)->value ? smallest - 1 : smallest;
            all.erase(first, first + 2);
        }
    }
}

}  // namespace kavrel
