// Whole digital functions against poles, zeros and levels of mpmath.
#include "approximation/z_transform.h"

#include <algorithm>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "tests/approximation/digital_cases.h"

namespace kavrel {
namespace {

using Root = std::complex<double>;

struct GoldenCase {
    test::DigitalCase asked;
    double multiplier = 0;
    std::vector<Root> zeros;  // upper half plane
    std::vector<Root> poles;
};

bool read_case(const std::string& line, GoldenCase& g) {
    std::istringstream in(line);
    FilterSpec& s = g.asked.spec;
    SpectralRequest& target = g.asked.target;
    int transform = 0, spectral = 0;
    std::string kind;
    int degree = 0;
    in >> transform >> kind >> s.filterType >> degree >> s.lowerPassEdge >> s.upperPassEdge >> s.lowerStopEdge >>
        s.upperStopEdge >> s.bandEdgeLoss >> spectral >> target.lower >> target.upper >> g.multiplier;
    g.asked.transform = static_cast<ZTransform>(transform);
    target.kind = static_cast<SpectralKind>(spectral);
    test::take_function(kind, degree, s);
    for (auto* roots : {&g.zeros, &g.poles}) {
        std::size_t count = 0;
        in >> count;
        for (double re = 0, im = 0; count > 0 && in >> re >> im; --count) roots->emplace_back(re, im);
    }
    return !in.fail() && !g.poles.empty();
}

// The largest distance of a wanted root from the nearest one found that is left, relative to `size`.
template <class Size>
double deviation(const std::vector<Root>& wanted, HalfRoots found, const Size& size) {
    if (wanted.size() != found.size()) return HUGE_VAL;
    double largest = 0;
    for (const Root& w : wanted) {
        const auto distance = [&](const HalfRoot& f) {
            return std::abs(w - Root(static_cast<double>(f.root.re), static_cast<double>(f.root.im))) / size(w);
        };
        const auto nearest = std::ranges::min_element(found, {}, distance);
        largest = std::max(largest, distance(*nearest));
        found.erase(nearest);
    }
    return largest;
}

TEST(ZTransformGolden, RootsAndLevelAreThoseOfTheClosedForms) {
    std::ifstream file(TEST_DATA "/approximation/z_transform_golden.txt");
    int cases = 0;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#') continue;
        ++cases;
        GoldenCase g;
        ASSERT_TRUE(read_case(line, g)) << line.substr(0, 100);
        SCOPED_TRACE(line.substr(0, 130));
        const DigitalFunction f = test::designed(g.asked).function;
        EXPECT_LT(deviation(g.zeros, zeros_of(f), [](Root r) { return std::abs(r); }), 1e-12);
        EXPECT_LT(deviation(g.poles, poles_of(f), [](Root r) { return 1 - std::abs(r); }), 1e-12);
        EXPECT_NEAR(f.zMultiplier / g.multiplier, 1, 1e-12);
    }
    EXPECT_GE(cases, 230);
}

}  // namespace
}  // namespace kavrel
