// Whole designs against poles and zeros from closed forms.
#include <cmath>
#include <complex>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "approximation/s_plane.h"
#include "tests/approximation/transfer_cases.h"

namespace kavrel {
namespace {

using Root = std::complex<double>;

struct GoldenCase {
    std::string kind;
    FilterSpec spec;
    int at_zero = 0;
    int at_infinity = 0;
    std::vector<Root> poles;  // upper half plane
    std::vector<Root> zeros;
};

bool read_case(const std::string& line, GoldenCase& g) {
    std::istringstream in(line);
    FilterSpec& s = g.spec;
    in >> g.kind >> s.filterType >> s.medium >> s.symmetryFlag >> s.degree >> s.lowerPassEdge >> s.upperPassEdge >>
        s.lowerStopEdge >> s.upperStopEdge >> s.bandEdgeLoss >> s.sampleFrequency >> s.sourceResistance >>
        s.loadResistance >> g.at_zero >> g.at_infinity;
    s.degreeParity = s.degree % 2;
    s.passbandType = g.kind == "chebyshev" || g.kind == "elliptic" ? equal_ripple : maximally_flat;
    if (g.kind == "butterworth" || g.kind == "chebyshev") {
        s.stopbandType = specified_zeros;
        s.zerosAtZero = g.at_zero;
        s.zerosAtInfinity = g.at_infinity;
    } else {
        s.stopbandType = equal_minima;
        s.stopbandLoss = s.upperStopLoss = 40;
    }
    std::size_t count = 0;
    in >> count;
    for (double re = 0, im = 0; count > 0 && in >> re >> im; --count) g.poles.emplace_back(re, im);
    in >> count;
    for (double im = 0; count > 0 && in >> im; --count) g.zeros.emplace_back(0, im);
    return !in.fail() && !g.poles.empty();
}

// The largest distance of a wanted root from the one found for it, relative to its magnitude; infinite when the counts
// differ. Each found root is used once.
double deviation(const std::vector<Root>& wanted, std::vector<Root> found) {
    if (wanted.size() != found.size()) return HUGE_VAL;
    double largest = 0;
    for (const Root& w : wanted) {
        auto nearest = found.begin();
        for (auto f = found.begin(); f != found.end(); ++f) {
            if (std::abs(*f - w) < std::abs(*nearest - w)) nearest = f;
        }
        largest = std::fmax(largest, std::abs(*nearest - w) / std::abs(w));
        found.erase(nearest);
    }
    return largest;
}

std::vector<Root> upper_half(int count, const Table<double, max_degree>& re, const Table<double, max_degree>& im) {
    std::vector<Root> roots;
    for (int i = 1; i <= count; ++i) {
        if (im(i) >= 0 && (re(i) != 0 || im(i) != 0)) roots.emplace_back(re(i), im(i));
    }
    return roots;
}

TEST(TransferGolden, PolesAndZerosOfClassicalFilters) {
    std::ifstream file(TEST_DATA "/approximation/transfer_golden.txt");
    ASSERT_TRUE(file.is_open());
    int cases = 0;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#') continue;
        ++cases;
        GoldenCase g;
        ASSERT_TRUE(read_case(line, g)) << line.substr(0, 100);
        SCOPED_TRACE(line.substr(0, 110));

        const auto design = test::designed(g.spec);
        const TransferFunction t = xToFrequencyPlane(design->spec, design->xp);
        EXPECT_EQ(t.poleCount, g.spec.degree);
        EXPECT_EQ(t.zerosAtZero, g.at_zero);
        EXPECT_EQ(t.zerosAtInfinity, g.at_infinity);
        EXPECT_LT(deviation(g.poles, upper_half(t.poleCount, t.POLES_RE, t.POLES_IM)), 1e-12);
        EXPECT_LT(deviation(g.zeros, upper_half(t.zeroCount, t.ZEROS_RE, t.ZEROS_IM)), 1e-12);
    }
    EXPECT_GE(cases, 250);
}

}  // namespace
}  // namespace kavrel
