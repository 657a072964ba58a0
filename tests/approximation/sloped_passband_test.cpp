// Sloping pass bands: the loss against the strip about the slope, and the least ripple against linear programs.
#include <cmath>
#include <complex>
#include <fstream>
#include <memory>
#include <numbers>
#include <random>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "tests/approximation/transfer_cases.h"

namespace kavrel {
namespace {

using Real = long double;

FilterSpec sloping(double slope, int n0, int ni) {
    FilterSpec s = test::all_pole(band_pass, sloping_passband, n0 + ni);
    s.zerosAtZero = n0;
    s.zerosAtInfinity = ni;
    s.stopbandLoss = slope;
    return s;
}

// 10 log10 E/Q from the roots.
double loss_at(const test::Design& d, double hertz) {
    const bool warped = d.spec.medium != lumped;
    const Real edge = d.xp.normFrequency, fs = d.spec.sampleFrequency, pi = std::numbers::pi_v<Real>;
    const Real w = warped ? std::tan(pi * hertz / fs) / std::tan(pi * edge / fs) : hertz / edge;
    const Real x = (d.xp.a - w * w) / (1 - w * w);
    Real loss = 10 * std::log10(d.xp.ES.multiplier);
    for (int i = 1; i <= d.xp.ES.count; ++i) {
        loss += 20 *
                std::log10(std::abs(x - std::complex<Real>(d.xp.ES.re(i), d.xp.ES.im(i))) /
                           std::abs(x - std::complex<Real>(d.xp.QS.re(i), d.xp.QS.im(i)))) /
                2;
    }
    return static_cast<double>(loss);
}

// Width of the strip of the pass band, at frequencies of no grid.
double strip(const test::Design& d, const FilterSpec& asked) {
    const double octaves = std::log2(asked.upperPassEdge / asked.lowerPassEdge);
    double low = 1e9, high = -1e9;
    for (int i = 0; i <= 1200; ++i) {
        // Denser at the edges, which themselves are no values of x.
        const double share = (1 - std::cos(std::numbers::pi * (i + 0.003) / 1200.006)) / 2;
        const double off =
            loss_at(d, asked.lowerPassEdge * std::exp2(octaves * share)) - asked.stopbandLoss * octaves * share;
        low = std::fmin(low, off), high = std::fmax(high, off);
    }
    return high - low;
}

TEST(SlopedPassband, LossKeepsToTheStrip) {
    std::mt19937_64 random(83);
    const auto between = [&](double low, double high) { return std::uniform_real_distribution(low, high)(random); };
    int wider = 0;
    for (int turn = 0; turn < 60; ++turn) {
        const int n = 4 + turn % 21, n0 = 1 + static_cast<int>(random() % static_cast<unsigned>(n - 1));
        FilterSpec asked = sloping((turn % 2 == 0 ? 1 : -1) * between(0.5, 14), n0, n - n0);
        asked.medium = static_cast<Medium>(turn % 3);
        asked.lowerPassEdge = 3000 * std::exp2(-std::exp(between(-3, 1)));
        asked.sampleFrequency = asked.medium == lumped ? 0 : between(6500, 30000);
        asked.unitElements = asked.medium == microwave ? turn % 4 : 0;
        asked.bandEdgeLoss = std::exp(between(-4.6, 0));
        if (turn % 9 == 0) {
            asked = request("FZI 0 5000 FZR 0 2000", asked);
            asked.FZI(1) = 0.7 * asked.lowerPassEdge;
        }
        if (turn % 4 == 0) asked.loadResistance = 0;
        SCOPED_TRACE("turn " + std::to_string(turn));
        const auto d = test::designed(asked);
        wider += d->spec.bandEdgeLoss > asked.bandEdgeLoss ? 1 : 0;
        EXPECT_NEAR(strip(*d, asked), d->spec.bandEdgeLoss, 1e-4 * d->spec.bandEdgeLoss);
        EXPECT_LT(strip(*d, asked), d->spec.bandEdgeLoss * (1 + 1e-6));
        double least = 1e9;
        const double top = asked.medium == lumped ? 1e5 : asked.sampleFrequency / 2;
        for (int i = 1; i < 2000; ++i) least = std::fmin(least, loss_at(*d, top * std::pow(i / 2000.0, 3)));
        EXPECT_GT(least, 0);
        EXPECT_EQ(d->spec.zerosAtZero, n0);
    }
    EXPECT_LE(wider, 6);
}

// The peak of transmission next to the upper edge is narrower than the distances of the poles' frequencies.
TEST(SlopedPassband, LevelAmongFiftyPoles) {
    const auto d = test::designed(request(
        "microwave sampleFrequency 8666 lowerPassEdge 2588 flatLoss 0.8 bandEdgeLoss 0.065", sloping(-9.8, 25, 25)));
    double least = 1e9;
    for (int i = 0; i < 4000; ++i) least = std::fmin(least, loss_at(*d, 2990 + 0.0025 * i));
    EXPECT_NEAR(least, 0.8, 1e-4);
}

TEST(SlopedPassband, WholeSlopesAndFlatLossAreExact) {
    for (const double slope : {6.0206, -6.0206, 12.0412, 6.02, 18.0618, 24.0824, -24.0824}) {
        SCOPED_TRACE(slope);
        const FilterSpec asked = sloping(slope, slope < -20 ? 3 : 4, slope > 20 ? 3 : 4);  // too few for the last two
        const auto d = test::designed(request("flatLoss 0", asked)),
                   lifted = test::designed(request("flatLoss 3", asked));
        EXPECT_NEAR(strip(*d, asked), 0.1, 1e-6);
        for (const double hertz : {300.0, 2100.0, 2900.0, 9000.0}) {
            EXPECT_NEAR(loss_at(*lifted, hertz) - loss_at(*d, hertz), 3, 1e-6);
        }
    }
}

TEST(SlopedPassband, LeastRippleIsThatOfAllRealisableFunctions) {
    std::ifstream file(TEST_DATA "/approximation/least_slope_ripple_golden.txt");
    int cases = 0;
    for (std::string line; std::getline(file, line);) {
        if (line[0] == '#') continue;
        SCOPED_TRACE(line);
        std::istringstream in(line);
        int n0 = 0, ni = 0;
        double octaves = 0, slope = 0, least = 0;
        in >> n0 >> ni >> octaves >> slope >> least;
        FilterSpec asked = sloping(slope, n0, ni);
        asked.lowerPassEdge = asked.upperPassEdge / std::exp2(octaves);
        asked.bandEdgeLoss = least / 3;
        EXPECT_NEAR(test::designed(asked)->spec.bandEdgeLoss, 1.01 * least, 2e-3 * least);
        asked.bandEdgeLoss = 1.003 * least;
        EXPECT_EQ(test::designed(asked)->spec.bandEdgeLoss, asked.bandEdgeLoss);
        ++cases;
    }
    EXPECT_EQ(cases, 20);
}

}  // namespace
}  // namespace kavrel
