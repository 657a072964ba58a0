// Factors against the taps that they are of, against zeros that were chosen, and against the amplitude's own zeros.
#include "fir/factors.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

#include <gtest/gtest.h>

#include "fir/best_taps.h"
#include "fir/factor_extraction.h"
#include "tests/support/numbers.h"

namespace kavrel {
namespace {

using Taps = std::vector<double>;
constexpr double pi = std::numbers::pi;

Taps equal_ripple(int length, double weight, FirType type = FirType::filter) {
    FirTask task;
    task.JTYPE = type;
    task.NFILT = length;
    const double tap = 1.0 / length;
    task.BANDS.NBANDS = type == FirType::filter ? 2 : 1;
    task.BANDS.EDGE = {0, 0.2, 0.2 + 3 * tap, 0.5};
    if (type == FirType::hilbert) task.BANDS.EDGE = {2 * tap, 0.5 - 2 * tap};
    task.BANDS.FX = {1, 0};
    task.BANDS.WTX = {1, weight};
    Unwatched unwatched;
    FirTaps taps;
    EXPECT_EQ(best_taps(task, unwatched, taps), FirTapsVerdict::made);
    return full_response(taps.filter, 1);
}

std::complex<double> response(const Taps& taps, double f) {
    std::complex<double> sum = 0;
    for (std::size_t i = 0; i < taps.size(); ++i)
        sum += taps[i] * std::polar(1.0, -2 * pi * f * static_cast<double>(i));
    return sum;
}

FirFactors factors_found(const Taps& taps) {
    Unwatched unwatched;
    FirFactors factors;
    EXPECT_EQ(extract_factors(taps, unwatched, factors), ExtractionVerdict::extracted);
    const Taps found = product_of(factors);
    EXPECT_EQ(found.size(), taps.size());
    double peak = 0, missed = 0;
    for (std::size_t i = 0; i < std::min(taps.size(), found.size()); ++i) {
        peak = std::max(peak, std::abs(taps[i]));
        missed = std::max(missed, std::abs(found[i] - taps[i]));
    }
    EXPECT_LE(missed, 1e-10 * peak) << taps.size() << " taps";
    return factors;
}

std::vector<std::pair<double, double>> sorted_rows(const FirFactors& factors) {
    std::vector<std::pair<double, double>> rows;
    for (int k = 1; k <= factors.count; ++k) rows.emplace_back(factors.A1(k), factors.A2(k));
    std::ranges::sort(rows);
    return rows;
}

TEST(Factors, OfEqualRippleFiltersMultiplyBackWithAPairOnTheCircleForEachChangeOfSign) {
    for (const int length : {15, 16, 17, 32, 64, 101, 128, 255, 256, 511, 512}) {
        for (const double weight : {1.0, 1000.0}) {
            const Taps taps = equal_ripple(length, weight);
            const auto is_positive = [&](int i) {
                const double f = i / (32.0 * length);
                return (response(taps, f) * std::polar(1.0, pi * f * (length - 1))).real() > 0;
            };
            int changes = 0;
            for (int i = 1; i < 16 * length; ++i) changes += is_positive(i) != is_positive(i - 1) ? 1 : 0;
            const auto on_circle = [](const auto& row) { return row.second == 1; };
            EXPECT_EQ(std::ranges::count_if(sorted_rows(factors_found(taps)), on_circle), changes) << length;
        }
        factors_found(equal_ripple(length, 1, FirType::hilbert));
    }
}

TEST(Factors, AreTheChosenOnes) {
    const double c = 2 * std::cos(1.0), third = 1 / 3.0;
    const std::vector<QuadraticRow> cases[] = {
        {{-0.5, 0}},
        {{-0.25, -0.125}, {2, -8}},  // real zeros two by two
        {{-1, 0}, {-0.5, 0}},        // on the circle and inside
        {{0, -1}, {c, 1}},           // 1 and -1
        {{third, 0.5}, {2 * third, 2}},
        {{c, 1}, {c, 1}},
        {{2, 1}, {2, 1}, {2, 1}},
        {{1, 0.25}, {1, 0.25}, {1, 0.25}, {1, 0.25}},  // a zero of order 8
        {{-0.5, 0.5}, {-0.5, 0.5}, {-0.5, 0.5}},
        {{1e30, 0}, {1e-30, 0}},
    };
    for (const auto& rows : cases) {
        FirFactors chosen = factors_of(rows);
        chosen.multiplier = -3, chosen.delay = 2, chosen.trailing = 1;
        const FirFactors factors = factors_found(product_of(chosen));
        EXPECT_EQ(factors.multiplier, -3);
        EXPECT_EQ(std::pair(factors.delay, factors.trailing), std::pair(2, 1));
        const auto found = sorted_rows(factors), wanted = sorted_rows(chosen);
        ASSERT_EQ(found.size(), wanted.size());
        for (std::size_t k = 0; k < wanted.size(); ++k) {
            EXPECT_NEAR(found[k].first, wanted[k].first, 1e-14 * std::max(1.0, std::abs(wanted[k].first)));
            EXPECT_NEAR(found[k].second, wanted[k].second, 1e-14);
        }
    }
    EXPECT_EQ(product_of(factors_of(cases[1])), (Taps{1, 1.75, -8.625, 1.75, 1}));
}

// Factored again where no symmetry helps.
TEST(Factors, ReflectedZerosKeepTheMagnitude) {
    std::vector<Taps> responses = {{1, -2.5, 1}, {1, 1}, {1, -4}, {1, -1.5, 0.5}, {1, -3, 2}};
    for (const int length : {15, 64, 101, 256}) responses.push_back(equal_ripple(length, 10));
    for (const Taps& taps : responses) {
        for (const CircleSide from : {CircleSide::outside, CircleSide::inside}) {
            FirFactors factors = factors_found(taps);
            reflect_zeros(factors, from);
            EXPECT_EQ(reflect_zeros(factors, from), 0);
            const Taps reflected = product_of(factors);
            for (int i = 0; i <= 100; ++i) {
                const double before = std::abs(response(taps, 0.002 * i));
                EXPECT_NEAR(std::abs(response(reflected, 0.002 * i)), before, 1e-9 * before + 1e-14);
            }
            factors_found(reflected);
        }
    }
    const QuadraticRow both_sides = {-2.5, 1};
    FirFactors factors = factors_of({&both_sides, 1});
    EXPECT_EQ(reflect_zeros(factors, CircleSide::outside), 1);
    EXPECT_EQ(product_of(factors), (Taps{-2, 2, -0.5})) << "0.5 and 2 become 0.5 twice";
}

TEST(Factors, OfTheLongestResponsesFindPlace) {
    std::vector<QuadraticRow> rows = {{-2.5, 1}, {1, 0}};  // three zeros are left over
    for (int k = 0; k < 254; ++k) rows.push_back({-2 * std::cos(pi * (k + 0.5) / 254), 1});
    EXPECT_EQ(factors_found(product_of(factors_of(rows))).count, fir_factor_limit);
    RandomNumbers random(19);
    Taps taps;
    for (int i = 0; i < fir_factor_taps; ++i) taps.push_back(random.between(-1, 1));
    factors_found(taps);
}

}  // namespace
}  // namespace kavrel
