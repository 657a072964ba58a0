// Taps off the grid and with bounded gain, on random requests: their response on a dense grid against the deviation
// that no taps can be below (alternation on the peaks of that response, by sums of its own).
#include "fir/best_taps.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "fir/off_grid.h"
#include "tests/support/numbers.h"

namespace kavrel {
namespace {

struct Sample {
    long double x, desired, weight;  // folded
    double error;                    // weighted, with its sign
    bool free;
};

// What taps do in their bands, and outside as far as the gain is bounded.
class Response {
public:
    Response(const FirTask& asked, const FirTaps& made)
        : task(asked), taps(full_response(made.filter, 1)), plan(made.plan) {
        double below = 0;
        for (int b = 1; b <= task.BANDS.NBANDS; ++b) {
            sample(below, task.BANDS.EDGE(2 * b - 1), 0);
            sample(task.BANDS.EDGE(2 * b - 1), below = task.BANDS.EDGE(2 * b), b);
        }
        sample(below, 0.5, 0);
    }
    [[nodiscard]] double largest(bool free) const {
        double largest = 0;
        for (const Sample& s : samples) {
            if (s.free == free && !(std::abs(s.error) <= largest)) largest = std::abs(s.error);
        }
        return largest;
    }
    // By which no taps can deviate less: the alternation on the peaks that come near `deviation` or `gain`.
    [[nodiscard]] double bound(double deviation, double gain) const {
        std::vector<const Sample*> peaks;
        const auto height = [&](const Sample& s) { return std::abs(s.error) / (s.free ? gain : deviation); };
        for (const Sample& s : samples) {
            if (height(s) < 0.97) continue;
            if (peaks.empty() || (peaks.back()->error > 0) != (s.error > 0)) {
                peaks.push_back(&s);
            } else if (height(s) > height(*peaks.back())) {
                peaks.back() = &s;
            }
        }
        const auto wanted = static_cast<std::size_t>(plan.NFCNS + 1);
        while (peaks.size() > wanted)
            peaks.erase(height(*peaks.front()) < height(*peaks.back()) ? peaks.begin() : peaks.end() - 1);
        if (peaks.size() < wanted) return 0;
        long double desired = 0, in_bands = 0, outside = 0;
        for (const Sample* s : peaks) {
            long double weight = 1;
            for (const Sample* other : peaks) {
                if (other != s) weight /= 2 * (s->x - other->x);
            }
            desired += weight * s->desired;
            (s->free ? outside : in_bands) += std::abs(weight) / s->weight;
        }
        return static_cast<double>((std::abs(desired) - static_cast<long double>(gain) * outside) / in_bands);
    }

private:
    void sample(double low, double high, int band) {
        const double zero = 1.0 / (32.0 * static_cast<double>(taps.size()));  // of the type, left out
        if (plan.NEG == 1) low = std::max(low, zero);
        if (plan.NEG == plan.NODD) high = std::min(high, 0.5 - zero);
        if (!(high > low)) return;
        const int points = 64 + static_cast<int>((high - low) * 256 * static_cast<double>(taps.size()));
        for (int k = 0; k <= points; ++k) {
            const double f = low + (high - low) * (1 - std::cos(M_PI * k / points)) / 2, w = 2 * M_PI * f;
            double amplitude = 0;
            for (std::size_t j = 0; j < taps.size(); ++j) {
                const double arm = (static_cast<double>(taps.size()) - 1) / 2 - static_cast<double>(j);
                if (arm < 0) break;
                amplitude += (arm == 0 ? 1 : 2) * taps[j] * (plan.NEG == 1 ? std::sin(w * arm) : std::cos(w * arm));
            }
            const double wanted = band > 0 ? desired(task, f, band) : 0, heavy = band > 0 ? weight(task, f, band) : 1;
            const double q = plan.NEG == 1 ? (plan.NODD == 1 ? std::sin(w) : std::sin(w / 2))
                                           : (plan.NODD == 1 ? 1 : std::cos(w / 2));
            samples.push_back({std::cos(static_cast<long double>(w)), wanted / q, heavy * q,
                               heavy * (amplitude - wanted), band == 0});
        }
    }

    const FirTask& task;
    std::vector<double> taps;
    FirPlan plan;
    std::vector<Sample> samples;
};

FirTaps taps_of(const FirTask& task) {
    Unwatched unwatched;
    FirTaps taps;
    EXPECT_EQ(best_taps(task, unwatched, taps), FirTapsVerdict::made);
    return taps;
}

FirTask hilbert(int taps, double low, double high) {
    FirTask task;
    task.JTYPE = FirType::hilbert;
    task.NFILT = taps;
    task.BANDS.NBANDS = 1;
    task.BANDS.EDGE = {low, high};
    task.BANDS.FX = {1};
    task.BANDS.WTX = {1};
    return task;
}

TEST(BestTaps, AreWithinOnePercentOfTheBestBetweenGridPoints) {
    RandomNumbers draw(7);
    int judged = 0;
    for (int i = 0; i < 40; ++i) {
        FirTask task;
        task.NFILT = 2 * static_cast<int>(draw.between(10, 60)) + 1;
        BandTable& bands = task.BANDS;
        bands.NBANDS = 2 + static_cast<int>(draw.between(0, 5));
        const double slot = 0.5 / bands.NBANDS;
        for (int b = 1; b <= bands.NBANDS; ++b) {
            const double width =
                draw.between(0, 1) < 0.5 ? draw.between(0.1, 0.9) / task.NFILT : draw.between(0.5, 0.9) * slot;
            bands.EDGE(2 * b - 1) = (b - 1) * slot;
            bands.EDGE(2 * b) = b == bands.NBANDS ? 0.5 : (b - 1) * slot + std::min(width, 0.9 * slot);
            bands.FX(b) = b % 2;
            bands.WTX(b) = std::exp(draw.between(0, 3));
        }
        SCOPED_TRACE(i);
        const FirTaps taps = taps_of(task);
        const Response response(task, taps);
        const double deviation = response.largest(false), gain = response.largest(true);
        EXPECT_LE(gain, most_outside_gain * 1.001);
        EXPECT_TRUE(taps.optimal);
        if (deviation < 1e-10) continue;
        ++judged;
        EXPECT_NEAR(taps.deviation / deviation, 1, 2e-3);
        EXPECT_NEAR(taps.outside_gain / gain, 1, 2e-3);
        EXPECT_LE(deviation, 1.0105 * response.bound(deviation, taps.bounded ? most_outside_gain : 1e300));
    }
    EXPECT_GE(judged, 25);
}

// The first two by linear programming with the same bound: 0.0074 and 0.137.
TEST(BestTaps, HilbertTransformersWithAFreeUpperEndAreBounded) {
    EXPECT_NEAR(taps_of(hilbert(112, 0.0109, 0.2864)).deviation, 0.0074, 5e-5);
    EXPECT_NEAR(taps_of(hilbert(40, 0.0109, 0.2864)).deviation, 0.137, 5e-4);
    RandomNumbers draw(7);
    int bounded = 0;
    for (int i = 0; i < 30; ++i) {
        const FirTask task =
            hilbert(static_cast<int>(draw.between(20, 120)), draw.between(0.005, 0.1), draw.between(0.15, 0.48));
        SCOPED_TRACE(testing::Message() << task.NFILT << " taps " << task.BANDS.EDGE(1) << " " << task.BANDS.EDGE(2));
        const FirTaps taps = taps_of(task);
        const Response response(task, taps);
        const double deviation = response.largest(false);
        EXPECT_LE(response.largest(true), most_outside_gain * 1.001);
        EXPECT_TRUE(taps.optimal);
        if (!taps.bounded || deviation < 1e-10) continue;
        ++bounded;
        EXPECT_LE(deviation, 1.001 * response.bound(deviation, most_outside_gain));
    }
    EXPECT_GE(bounded, 15);
}

TEST(BestTaps, WhatFewerTapsFillToTheLastPlaceIsPadded) {
    FirTask task;
    task.NFILT = 512;
    task.BANDS.NBANDS = 2;
    task.BANDS.EDGE = {0, 0.125, 0.3125, 0.5};
    task.BANDS.FX = {1, 0};
    task.BANDS.WTX = {1, 1};
    const FirTaps taps = taps_of(task);
    EXPECT_LE(taps.taps_used, 104);
    EXPECT_EQ(taps.iterations, 208) << "passes of the whole search";
    EXPECT_LE(taps.deviation, rounding_deviation);
    EXPECT_LE(taps.outside_gain, 1.001);
    EXPECT_EQ(full_response(taps.filter, 1).size(), 512U);
    EXPECT_EQ(full_response(taps.filter, 1)[static_cast<std::size_t>(511 - taps.taps_used) / 2], 0);
}

}  // namespace
}  // namespace kavrel
