// Roots known to 25 digits, read from tests/data/numeric, and the proof that roots found are right.
#pragma once

#include <fstream>
#include <initializer_list>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "numeric/guarded.h"
#include "numeric/root_set.h"

namespace kavrel::testing {

using Z = Complex<Wide>;

inline WideRootSet set_of(Wide multiplier, std::initializer_list<Z> roots) {
    WideRootSet set;
    set.multiplier = multiplier;
    for (const Z z : roots) set.append(z);
    return set;
}

struct GoldenRoot {
    Z x;
    Wide condition;  // larger term of the sum over |x S'(x)|
};

struct GoldenSet {
    Wide multiplier = 0;
    std::vector<GoldenRoot> roots;
};

inline std::ifstream golden_file(const char* name) {
    std::ifstream in(std::string(TEST_DATA) + "/numeric/" + name);
    EXPECT_TRUE(in.good()) << name;
    std::string comment;
    while (in.peek() == '#') std::getline(in, comment);
    return in;
}

// The number after `keyword`, and the roots that follow the count.
inline GoldenSet read_golden_set(std::istream& in) {
    GoldenSet set;
    std::string keyword;
    std::size_t count = 0;
    in >> keyword >> set.multiplier >> count;
    set.roots.resize(count);
    for (GoldenRoot& r : set.roots) in >> r.x.re >> r.x.im >> r.condition;
    return set;
}

// Each golden root has a root of its own within `rounding` times 1 + its condition: relative, by magnitude. The
// multiplier agrees to 1e-12.
inline void expect_golden(const WideRootSet& found, const GoldenSet& golden, Wide rounding) {
    ASSERT_EQ(found.count, static_cast<int>(golden.roots.size()));
    EXPECT_NEAR(static_cast<double>(found.multiplier / golden.multiplier), 1, 1e-12);
    std::vector<bool> taken(golden.roots.size() + 1, false);
    for (const GoldenRoot& g : golden.roots) {
        int best = 0;
        Wide distance = std::numeric_limits<Wide>::infinity();
        for (int i = 1; i <= found.count; ++i) {
            const Wide d = cabs(g.x - found.root(i));
            if (!taken[static_cast<std::size_t>(i)] && d < distance) distance = d, best = i;
        }
        ASSERT_GT(best, 0);
        taken[static_cast<std::size_t>(best)] = true;
        EXPECT_LE(distance, rounding * (1 + g.condition) * cabs(g.x))
            << static_cast<double>(g.x.re) << " + j " << static_cast<double>(g.x.im) << ", condition "
            << static_cast<double>(g.condition);
        EXPECT_EQ(g.x.im == 0, found.im(best) == 0);
    }
}

// A value and its derivative, on any common scale.
struct ValueAndSlope {
    Z value, slope;
};

// Newton's disks: around x, a disk of radius n |f/f'| holds a root of the polynomial f of degree n. When the disks of
// all n roots found are disjoint, each holds exactly one: the set is complete, and |f/f'| the error. Returns the
// largest n |f/(x f')|, or infinity when two disks meet.
template <class Function>
Wide proven_error(const WideRootSet& found, Function f) {
    std::vector<Wide> radius(1, 0);
    Wide worst = 0;
    for (int i = 1; i <= found.count; ++i) {
        const Z x = found.root(i);
        const ValueAndSlope v = f(x);
        const Wide r = v.value == Z{} ? 0 : found.count * (cabs(v.value) / cabs(v.slope));
        radius.push_back(r);
        if (cabs(x) > 0) worst = std::max(worst, r / cabs(x));
        for (int j = 1; j < i; ++j) {
            const Z other = found.root(j);
            const Wide both = r + radius[static_cast<std::size_t>(j)];
            if (!(cabs(x - other) > both)) return std::numeric_limits<Wide>::infinity();
        }
    }
    return worst;
}

}  // namespace kavrel::testing
