#include "fir/from_outside.h"

#include <numbers>

#include <gtest/gtest.h>

namespace kavrel {
namespace {

using Taps = std::vector<double>;

TEST(FirFromOutside, CoefficientsAreHalfOrWhole) {
    constexpr auto even = FirSymmetry::even, odd = FirSymmetry::odd, none = FirSymmetry::none;
    // clang-format off
    const struct {
        Taps given;
        FirSymmetry symmetry;
        int length;
        Taps expected;  // blank where they are refused
        std::string why = {};
    } cases[] = {
        {{1, 2, 1}, none, 0, {1, 2, 1}}, {{1, 2, 1}, even, 0, {1, 2, 1}}, {{1, 2}, even, 4, {1, 2, 2, 1}},
        {{1, 2, 0}, odd, 5, {1, 2, 0, -2, -1}}, {{1, 2}, odd, 5, {1, 2, 0, -2, -1}}, {{1, -1}, odd, 0, {1, -1}},
        {Taps(513, 1.0), even, 1026, Taps(1026, 1.0)},
        {{1, 2, 3}, even, 0, {}, "data: Coefficients do not have this symmetry"},
        {{1, 2, 1}, odd, 5, {}, "data: The centre coefficient is not 0"},
        {{1, 2, 3}, even, 8, {}, "filter_length: Filter length and number of coefficients differ"},
        {{0}, odd, 0, {}, "data: Not enough data"}, {Taps(519), none, 0, {}, "filter_length: No space available"},
    };
    // clang-format on
    for (const auto& [given, symmetry, length, expected, why] : cases) {
        FirFilter filter;
        const Refusal wrong = take_coefficients(given, symmetry, length, filter);
        EXPECT_EQ(wrong.empty() ? "" : std::string(wrong.field) + ": " + wrong.text, why) << length;
        EXPECT_EQ(wrong.empty() ? full_response(filter, 1) : Taps(), expected) << length;
    }
}

TEST(FirFromOutside, QuadraticsAreTheFactors) {
    using Rows = std::vector<QuadraticRow>;
    FirFilter filter;
    EXPECT_EQ(take_quadratics(Rows(257, {1, 1}), filter).text, "No space available");
    EXPECT_EQ(take_quadratics(Rows{{1, 1}, {0, 0}}, filter).text, "Values not permitted");
    EXPECT_EQ(take_quadratics(Rows(256, {1e9, 1e9}), filter).text, "Values of the filter are out of range");
    Rows roots_of_minus_1;
    for (int k = 1; k < 512; k += 2) roots_of_minus_1.push_back({-2 * std::cos(k * std::numbers::pi / 512), 1});
    FirFilter comb;
    ASSERT_TRUE(take_quadratics(roots_of_minus_1, comb).empty());
    EXPECT_TRUE(comb.FUNCTION(1).symmetry == FirSymmetry::even && comb.factors.function == 1);
    const Taps taps = full_response(comb, 1);
    for (std::size_t i = 0; i < 513; ++i) EXPECT_NEAR(taps[i], i % 512 == 0 ? 1 : 0, 1e-12);
}

}  // namespace
}  // namespace kavrel
