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

Taps product(const Taps& a, const Taps& b) {
    std::vector<long double> sums(a.size() + b.size() - 1);
    for (std::size_t i = 0; i < a.size(); ++i) {
        for (std::size_t j = 0; j < b.size(); ++j) sums[i + j] += static_cast<long double>(a[i]) * b[j];
    }
    return {sums.begin(), sums.end()};
}

double missed(const Taps& found, const Taps& taps) {
    if (found.size() != taps.size()) return HUGE_VAL;
    double peak = 0, difference = 0;
    for (std::size_t i = 0; i < taps.size(); ++i) {
        peak = std::max(peak, std::abs(taps[i]));
        difference = std::max(difference, std::abs(found[i] - taps[i]));
    }
    return difference / peak;
}

FirFactors factors_found(const Taps& taps) {
    Unwatched unwatched;
    FirFactors factors;
    EXPECT_EQ(extract_factors(taps, unwatched, factors), ExtractionVerdict::extracted) << taps.size() << " taps";
    EXPECT_LT(missed(product_of(factors), taps), 1e-10) << taps.size() << " taps";
    return factors;
}

int on_circle(const FirFactors& factors) {
    int count = 0;
    for (int k = 1; k <= factors.count; ++k) count += factors.A2(k) == 1 ? 1 : 0;
    return count;
}

// Every pair on the circle is a change of sign of the amplitude.
TEST(Factors, OfEqualRippleFiltersMultiplyBack) {
    for (const int length : {15, 16, 17, 32, 64, 101, 128, 255, 256, 511, 512}) {
        for (const double weight : {1.0, 1000.0}) {
            const Taps taps = equal_ripple(length, weight);
            const FirFactors factors = factors_found(taps);
            int changes = 0;
            const auto amplitude = [&](double f) {
                return (response(taps, f) * std::polar(1.0, pi * f * (length - 1))).real();
            };
            const int points = 16 * length;
            for (int i = 1; i < points; ++i) {
                changes += (amplitude(0.5 * (i - 1) / points) > 0) != (amplitude(0.5 * i / points) > 0) ? 1 : 0;
            }
            EXPECT_EQ(on_circle(factors), changes) << length;
        }
        factors_found(equal_ripple(length, 1, FirType::hilbert));
    }
}

TEST(Factors, AreTheChosenZeros) {
    const double c = std::cos(1.0), far = 1 / 3.0;
    const auto power = [](const Taps& factor, int n) {
        Taps all = {1};
        for (int i = 0; i < n; ++i) all = product(all, factor);
        return all;
    };
    const struct {
        const char* what;
        Taps taps;
        std::vector<QuadraticRow> rows;
        double within = 1e-14;
    } cases[] = {
        {"a lone zero", {2, -1}, {{-0.5, 0}}},
        {"two by two", product(product({1, -0.5}, {1, 0.25}), product({1, -2}, {1, 4})), {{-0.25, -0.125}, {2, -8}}},
        {"on the circle and inside", product({1, -1}, {1, -0.5}), {{-1, 0}, {-0.5, 0}}},
        {"1 and -1", {3, 0, -3}, {{0, -1}}},
        {"a sum of seven",
         Taps(7, 0.25),
         {{-2 * std::cos(2 * pi / 7), 1}, {-2 * std::cos(4 * pi / 7), 1}, {-2 * std::cos(6 * pi / 7), 1}}},
        {"a quadruple", product({1, far, 0.5}, {1, 2 * far, 2}), {{far, 0.5}, {2 * far, 2}}},
        {"double ones on the circle", power({1, -2 * c, 1}, 2), {{-2 * c, 1}, {-2 * c, 1}}},
        {"double ones at j", {1, 0, 2, 0, 1}, {{0, 1}, {0, 1}}},
        {"four at -1", {1, 4, 6, 4, 1}, {{2, 1}, {2, 1}}},
        {"eight inside", power({1, 0.5}, 8), {{1, 0.25}, {1, 0.25}, {1, 0.25}, {1, 0.25}}},
        {"three pairs at one place", power({1, -0.5, 0.5}, 3), {{-0.5, 0.5}, {-0.5, 0.5}, {-0.5, 0.5}}},
        {"ends far below", {1e-30, 1, 1e-30}, {{1e30, 0}, {1e-30, 0}}},
    };
    for (const auto& wanted : cases) {
        SCOPED_TRACE(wanted.what);
        const FirFactors factors = factors_found(wanted.taps);
        EXPECT_EQ(factors.multiplier, wanted.taps.front());
        std::vector<std::pair<double, double>> found, rows;
        for (int k = 1; k <= factors.count; ++k) found.emplace_back(factors.A1(k), factors.A2(k));
        for (const QuadraticRow& row : wanted.rows) rows.emplace_back(row.linear, row.quadratic);
        std::ranges::sort(found), std::ranges::sort(rows);
        ASSERT_EQ(found.size(), rows.size());
        for (std::size_t k = 0; k < rows.size(); ++k) {
            EXPECT_NEAR(found[k].first, rows[k].first, wanted.within * std::max(1.0, std::abs(rows[k].first)));
            EXPECT_NEAR(found[k].second, rows[k].second, wanted.within);
        }
    }
    const Taps delayed = {0, 0, 3, 0, 0.75, 0};
    const FirFactors factors = factors_found(delayed);
    EXPECT_EQ(factors.delay, 2);
    EXPECT_EQ(factors.trailing, 1);
    EXPECT_EQ(factors.A2(1), 0.25);
}

TEST(Factors, OfASquareAreDoubleOnTheCircle) {
    for (const int length : {15, 31, 101, 201}) {
        const Taps taps = equal_ripple(length, 1);
        EXPECT_EQ(on_circle(factors_found(product(taps, taps))), 2 * on_circle(factors_found(taps))) << length;
    }
}

// Of each the least and the greatest phase, factored again where no symmetry helps.
TEST(Factors, ReflectedZerosKeepTheMagnitude) {
    for (const int length : {15, 64, 101, 256}) {
        const Taps taps = equal_ripple(length, 10);
        for (const CircleSide from : {CircleSide::outside, CircleSide::inside}) {
            FirFactors factors = factors_found(taps);
            EXPECT_GT(reflect_zeros(factors, from), 0);
            for (int k = 1; k <= factors.count; ++k) {
                const double b = std::abs(factors.A2(k));
                EXPECT_TRUE(from == CircleSide::outside ? b <= 1 : b >= 1 || b == 0);
            }
            EXPECT_EQ(reflect_zeros(factors, from), 0);
            const Taps reflected = product_of(factors);
            for (int i = 0; i <= 100; ++i) {
                const double before = std::abs(response(taps, 0.002 * i)),
                             now = std::abs(response(reflected, 0.002 * i));
                EXPECT_NEAR(20 * std::log10(now / before), 0, 1e-8) << length;
            }
            factors_found(reflected);
        }
    }
    const QuadraticRow rows[] = {{-2.5, 1}, {1, 0}, {-4, 0}, {-1.5, 0.5}, {-5, 6}, {-3, 2}};
    for (const QuadraticRow row : rows) {  // zeros on both sides, on the circle, of first order
        for (const CircleSide from : {CircleSide::outside, CircleSide::inside}) {
            FirFactors factors = factors_of({&row, 1});
            const Taps before = product_of(factors);
            reflect_zeros(factors, from);
            EXPECT_EQ(zeros_of({factors.A1(1), factors.A2(1)}), zeros_of(row));
            for (const double f : {0.0, 0.1, 0.37, 0.5}) {
                EXPECT_NEAR(std::abs(response(product_of(factors), f)), std::abs(response(before, f)), 1e-14);
            }
        }
    }
    FirFactors both = factors_of({rows, 1});
    EXPECT_EQ(reflect_zeros(both, CircleSide::outside), 1);
    EXPECT_EQ(std::pair(both.A1(1), both.A2(1)), std::pair(-1.0, 0.25)) << "0.5 and 2 become 0.5 twice";
    EXPECT_EQ(both.multiplier, -2);
}

TEST(Factors, OfTheLongestResponsesFindPlace) {
    std::vector<QuadraticRow> rows;
    for (int k = 0; k < 254; ++k) rows.push_back({-2 * std::cos(pi * (k + 0.5) / 254), 1});
    rows.push_back({-2.5, 1});
    rows.push_back({1, 0});
    EXPECT_EQ(factors_found(product_of(factors_of(rows))).count, fir_factor_limit) << "three zeros are left over";
    RandomNumbers random(19);
    Taps taps;
    for (int i = 0; i < fir_factor_taps; ++i) taps.push_back(random.between(-1, 1));
    factors_found(taps);
}

TEST(Factors, ThatAreNotFoundLeaveTheListAsItWas) {
    struct Impatient final : Watcher {
        int left = 40;
        bool asked() override { return left-- > 0; }
    };
    const struct {
        Taps taps;
        ExtractionVerdict verdict;
    } cases[] = {
        {{0, 0}, ExtractionVerdict::all_zero},
        {{1, std::nan(""), 1}, ExtractionVerdict::all_zero},
        {Taps(514, 1.0), ExtractionVerdict::too_long},
        {{1e-300, 1, 1e300}, ExtractionVerdict::not_found},  // its quadratic coefficient is 1e600
        {equal_ripple(101, 1), ExtractionVerdict::stopped},
    };
    for (const auto& wanted : cases) {
        Impatient watcher;
        FirFactors factors;
        factors.multiplier = 7;
        EXPECT_EQ(extract_factors(wanted.taps, watcher, factors), wanted.verdict);
        EXPECT_EQ(factors.multiplier, 7);
    }
}

}  // namespace
}  // namespace kavrel
