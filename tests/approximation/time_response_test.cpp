#include "approximation/time_response.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <fstream>
#include <limits>
#include <memory>
#include <numbers>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "approximation/power_loss.h"
#include "approximation/s_plane.h"
#include "tests/approximation/transfer_cases.h"

namespace kavrel {
namespace {

struct Responses {
    std::vector<double> impulse, step;
};

Responses responses(const TransferFunction& t, const std::vector<double>& times) {
    Unwatched unwatched;
    Responses r{std::vector<double>(times.size()), std::vector<double>(times.size())};
    EXPECT_EQ(time_response(t, times, unwatched, r.impulse, r.step), TimeVerdict::done);
    return r;
}

void add_pole(TransferFunction& t, double re, double im) {
    t.POLES_RE(++t.poleCount) = re;
    t.POLES_IM(t.poleCount) = im;
    if (im != 0) {
        t.POLES_RE(++t.poleCount) = re;
        t.POLES_IM(t.poleCount) = -im;
    }
}

double largest(const std::vector<double>& values) {
    double most = 0;
    for (const double v : values) most = std::fmax(most, std::fabs(v));
    return most;
}

struct GoldenResponse {
    std::string name;
    TransferFunction transfer;
    double direct = 0;
    std::vector<double> times;
    Responses truth;
};

std::vector<GoldenResponse> golden_responses() {
    std::vector<GoldenResponse> all;
    std::ifstream file(TEST_DATA "/approximation/time_response_golden.txt");
    std::string word;
    while (file >> word) {
        if (word != "case") {
            std::getline(file, word);
            continue;
        }
        GoldenResponse g;
        TransferFunction& t = g.transfer;
        std::size_t rows = 0;
        file >> g.name >> g.direct >> t.zeroCount >> t.poleCount >> rows;
        for (int i = 1; i <= t.zeroCount; ++i) file >> t.ZEROS_RE(i) >> t.ZEROS_IM(i);
        for (int i = 1; i <= t.poleCount; ++i) file >> t.POLES_RE(i) >> t.POLES_IM(i);
        for (double time = 0, impulse = 0, step = 0; rows > 0 && file >> time >> impulse >> step; --rows) {
            g.times.push_back(time);
            g.truth.impulse.push_back(impulse);
            g.truth.step.push_back(step);
        }
        EXPECT_FALSE(file.fail()) << g.name;
        all.push_back(std::move(g));
    }
    return all;
}

TEST(TimeResponse, AgreesWithResiduesOfManyDigits) {
    const auto all = golden_responses();
    ASSERT_EQ(all.size(), 19u);
    for (const GoldenResponse& g : all) {
        const Responses r = responses(g.transfer, g.times);
        for (std::size_t i = 0; i < g.times.size(); ++i) {
            EXPECT_NEAR(r.impulse[i], g.truth.impulse[i], 1e-13 * largest(g.truth.impulse)) << g.name << g.times[i];
            EXPECT_NEAR(r.step[i], g.truth.step[i], 1e-13 * largest(g.truth.step)) << g.name << g.times[i];
        }
        const double at_zero = responses(g.transfer, {0}).step[0];
        EXPECT_NEAR(at_zero, g.direct, 1e-13 * std::fabs(g.direct)) << g.name;
    }
}

// The way through the times does not matter: 501 equal steps, rounded as they are, and each time by itself.
TEST(TimeResponse, DoesNotDependOnTheOtherTimes) {
    for (const GoldenResponse& g : golden_responses()) {
        std::vector<double> times(501);
        for (int i = 0; i < 501; ++i) times[static_cast<std::size_t>(i)] = g.times.back() * (1.01 * i / 500 - 0.01);
        const Responses all = responses(g.transfer, times);
        for (std::size_t i = 0; i < times.size(); i += 25) {
            const Responses one = responses(g.transfer, {times[i]});
            EXPECT_NEAR(one.impulse[0], all.impulse[i], 2e-13 * largest(all.impulse)) << g.name;
            EXPECT_NEAR(one.step[0], all.step[i], 2e-13 * largest(all.step)) << g.name;
            if (times[i] < 0) {
                EXPECT_EQ(all.impulse[i], 0.0);
                EXPECT_EQ(all.step[i], 0.0);
            }
        }
    }
}

// The spectrum of the impulse response is the loss of the design, of which the least is 0 here.
TEST(TimeResponse, SpectrumIsTheLossOfTheDesign) {
    for (const auto type : {low_pass, band_pass}) {
        for (const int n : {10, 18}) {
            FilterSpec s = test::all_pole(type, equal_ripple, n);
            test::single_terminated(s);
            const auto d = test::designed(s);
            const TransferFunction t = xToFrequencyPlane(d->spec, d->xp);
            const double rate = 30e3;
            std::vector<double> times(static_cast<std::size_t>(15 * n * 30));
            for (std::size_t i = 0; i < times.size(); ++i) times[i] = static_cast<double>(i) / rate;
            const Responses r = responses(t, times);
            for (double f = 100; f < 3200; f += 150) {
                std::complex<double> sum = 0;
                for (std::size_t i = 0; i < times.size(); ++i) {
                    sum += r.impulse[i] * std::polar(1 / rate, -2 * std::numbers::pi * f * times[i]);
                }
                const double truth = std::pow(10, -lossAt(d->spec, d->xp, f) / 20);
                EXPECT_NEAR(std::abs(sum), truth, 1e-6) << type << ' ' << n << ' ' << f;
            }
        }
    }
}

TEST(TimeResponse, StepEndsAtTheGainForDirectCurrent) {
    const double ripple = std::pow(10, -0.1 / 20);
    const struct {
        FilterType type;
        int n;
        bool minima;
        double end;
    } rows[] = {
        {low_pass, 7, false, 1},  {low_pass, 8, false, ripple}, {low_pass, 7, true, 1},   {low_pass, 8, true, ripple},
        {high_pass, 7, false, 0}, {high_pass, 8, false, 0},     {band_pass, 8, false, 0}, {band_pass, 10, true, 0},
    };
    for (const auto& row : rows) {
        FilterSpec s = row.minima ? test::with_minima(row.type, equal_ripple, row.n, -1)
                                  : test::all_pole(row.type, equal_ripple, row.n);
        test::single_terminated(s);
        const auto d = test::designed(s);
        const TransferFunction t = xToFrequencyPlane(d->spec, d->xp);
        const Responses r = responses(t, {0.0, 1.0});
        EXPECT_NEAR(r.step[0], std::pow(10, -lossAt(d->spec, d->xp, 1e15) / 20), 1e-9) << row.type << row.n;
        EXPECT_NEAR(r.step[1], row.end, 1e-9) << row.type << row.n;
    }
}

TEST(TimeResponse, Refusals) {
    constexpr double inf = std::numeric_limits<double>::infinity();
    const TransferFunction none;
    TransferFunction one, improper, unpaired, strange, stray, crossed;
    add_pole(one, -1, 0);
    improper = one;
    improper.zeroCount = 2;
    unpaired.poleCount = stray.poleCount = 2;
    unpaired.POLES_RE(1) = unpaired.POLES_RE(2) = -1;
    unpaired.POLES_IM(1) = unpaired.POLES_IM(2) = 1;
    stray.POLES_RE(1) = stray.POLES_RE(2) = -1;
    stray.POLES_IM(1) = 1, stray.POLES_IM(2) = -1.1;
    crossed.poleCount = 4;
    crossed.POLES_RE = {-1, -2, -2, -1};
    crossed.POLES_IM = {1, 3, -3, -1};
    strange = one;
    strange.POLES_RE(1) = inf;
    const struct {
        const TransferFunction& transfer;
        std::vector<double> times;
        TimeVerdict verdict;
    } rows[] = {
        {one, {0, 0, 1}, TimeVerdict::done},     {one, {}, TimeVerdict::done},
        {crossed, {0}, TimeVerdict::done},       {one, {0, 1, 0.5}, TimeVerdict::bad_times},
        {one, {0, inf}, TimeVerdict::bad_times}, {one, {-inf}, TimeVerdict::bad_times},
        {none, {0}, TimeVerdict::no_modes},      {improper, {0}, TimeVerdict::improper},
        {unpaired, {0}, TimeVerdict::unpaired},  {stray, {0}, TimeVerdict::unpaired},
        {strange, {0}, TimeVerdict::unpaired},
    };
    Unwatched unwatched;
    for (const auto& row : rows) {
        std::vector<double> impulse(row.times.size(), 7), step(row.times.size(), 7);
        EXPECT_EQ(time_response(row.transfer, row.times, unwatched, impulse, step), row.verdict);
        if (row.verdict != TimeVerdict::done) {
            EXPECT_EQ(impulse.front(), 7);
            EXPECT_EQ(message_of(row.verdict).empty(), false);
        }
    }
    std::vector<double> shorter;
    EXPECT_EQ(time_response(one, {{0.0}}, unwatched, shorter, shorter), TimeVerdict::bad_times);
}

}  // namespace
}  // namespace kavrel
