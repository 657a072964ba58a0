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
        SCOPED_TRACE(line.substr(0, 130));
        std::istringstream in(line);
        test::DigitalCase asked;
        FilterSpec& s = asked.spec;
        std::string kind;
        int transform = 0, spectral = 0, degree = 0;
        double multiplier = 0;
        in >> transform >> kind >> s.filterType >> degree >> s.lowerPassEdge >> s.upperPassEdge >> s.lowerStopEdge >>
            s.upperStopEdge >> s.bandEdgeLoss >> spectral >> asked.target.lower >> asked.target.upper >> multiplier;
        asked.transform = static_cast<ZTransform>(transform), asked.target.kind = static_cast<SpectralKind>(spectral);
        test::take_function(kind, degree, s);
        const auto roots = [&] {  // of the upper half plane
            std::vector<Root> list;
            std::size_t count = 0;
            in >> count;
            for (double re = 0, im = 0; count > 0 && in >> re >> im; --count) list.emplace_back(re, im);
            return list;
        };
        const std::vector<Root> zeros = roots(), poles = roots();
        ASSERT_TRUE(in && !poles.empty());
        const DigitalFunction f = test::designed(asked).function;
        EXPECT_LT(deviation(zeros, zeros_of(f), [](Root r) { return std::abs(r); }), 1e-12);
        EXPECT_LT(deviation(poles, poles_of(f), [](Root r) { return 1 - std::abs(r); }), 1e-12);
        EXPECT_NEAR(f.zMultiplier / multiplier, 1, 1e-12);
    }
    EXPECT_GE(cases, 230);
}

}  // namespace
}  // namespace kavrel
