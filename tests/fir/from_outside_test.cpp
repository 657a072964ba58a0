#include "fir/from_outside.h"

#include <numbers>

#include <gtest/gtest.h>

namespace kavrel {
namespace {

constexpr auto even = FirSymmetry::even, odd = FirSymmetry::odd, none = FirSymmetry::none;
using Taps = std::vector<double>;

struct Coefficients {
    Taps given;
    FirSymmetry symmetry;
    int length;
    Taps expected;              // blank where they are refused
    std::string_view why = {};  // and field
};

TEST(FirFromOutside, CoefficientsAreHalfOrWhole) {
    const Taps ones(519, 1.0);
    const Coefficients cases[] = {
        {{1, 2, 3}, none, 0, {1, 2, 3}},
        {{1, 2, 1}, none, 3, {1, 2, 1}},
        {{1, 2, 1}, even, 0, {1, 2, 1}},
        {{1, 2}, even, 3, {1, 2, 1}},
        {{1, 2}, even, 4, {1, 2, 2, 1}},
        {{1, 2, 0}, odd, 5, {1, 2, 0, -2, -1}},
        {{1, 2}, odd, 5, {1, 2, 0, -2, -1}},
        {{1, -1}, odd, 0, {1, -1}},
        {{0, 0}, even, 3, {0, 0, 0}},
        {Taps(513, 1.0), even, 1026, Taps(1026, 1.0)},
        {{1, 2, 3}, even, 0, {}, "Coefficients do not have this symmetry data"},
        {{1, 2, 1}, odd, 5, {}, "The centre coefficient is not 0 data"},
        {{1, 2, 3}, none, 4, {}, "Filter length and number of coefficients differ filter_length"},
        {{1, 2, 3}, even, 8, {}, "Filter length and number of coefficients differ filter_length"},
        {{0}, odd, 0, {}, "Not enough data data"},
        {{}, none, 0, {}, "Not enough data data"},
        {ones, none, 0, {}, "No space available filter_length"},
        {ones, even, 1027, {}, "No space available filter_length"},
    };
    for (const auto& [given, symmetry, length, expected, why] : cases) {
        FirFilter filter;
        const Refusal wrong = take_coefficients(given, symmetry, length, filter);
        EXPECT_EQ(wrong.empty() ? "" : wrong.text + ' ' + std::string(wrong.field), why)
            << given.size() << ' ' << length;
        EXPECT_TRUE(!wrong.empty() ||
                    (full_response(filter, 1) == expected && filter.FUNCTION(1).symmetry == symmetry));
    }
}

TEST(FirFromOutside, QuadraticsAreTheFactors) {
    FirFilter filter;
    const QuadraticRow rows[] = {{0.5, 0}, {-2, 1}};
    ASSERT_TRUE(take_quadratics(rows, filter).empty());
    EXPECT_EQ(full_response(filter, 1), (Taps{1, -1.5, 0, 0.5}));
    EXPECT_TRUE(filter.factors.count == 2 && filter.factors.function == 1 && filter.factors.A1(2) == -2);
    EXPECT_EQ(take_quadratics(std::vector<QuadraticRow>(257, {1, 1}), filter).text, "No space available");
    EXPECT_EQ(take_quadratics({{{1, 1}, {0, 0}}}, filter).text, "Values not permitted");
    EXPECT_EQ(take_quadratics(std::vector<QuadraticRow>(256, {1e9, 1e9}), filter).text,
              "Values of the filter are out of range");
    // All 512th roots of -1.
    std::vector<QuadraticRow> circle;
    for (int k = 0; k < 256; ++k) circle.push_back({-2 * std::cos((2 * k + 1) * std::numbers::pi / 512), 1});
    FirFilter comb;
    ASSERT_TRUE(take_quadratics(circle, comb).empty());
    EXPECT_TRUE(comb.FUNCTION(1).symmetry == even && comb.FUNCTION(1).taps == 513);
    const Taps taps = full_response(comb, 1);
    for (int i = 1; i < 512; ++i) EXPECT_NEAR(taps[static_cast<std::size_t>(i)], 0, 1e-12);
}

}  // namespace
}  // namespace kavrel
