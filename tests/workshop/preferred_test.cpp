// Preferred values against the series of IEC 60063: E24 as printed there, E192 by its rule, the powers of the 192nd
// root of 10 in three digits, but 9.20 for 9.19.
#include "workshop/preferred.h"

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "tests/support/circuit_literal.h"

namespace kavrel {
namespace {

std::vector<double> series_of(PercentClass percent_class) {
    std::vector<double> series;
    switch (percent_class) {
        case PercentClass::ten: series = {1.0, 1.2, 1.5, 1.8, 2.2, 2.7, 3.3, 3.9, 4.7, 5.6, 6.8, 8.2}; break;
        case PercentClass::two_to_five:
            series = {1.0, 1.1, 1.2, 1.3, 1.5, 1.6, 1.8, 2.0, 2.2, 2.4, 2.7, 3.0,
                      3.3, 3.6, 3.9, 4.3, 4.7, 5.1, 5.6, 6.2, 6.8, 7.5, 8.2, 9.1};
            break;
        default:
            for (int i = 0; i < 192; i += percent_class == PercentClass::one_percent ? 2 : 1)
                series.push_back(i == 185 ? 9.2 : std::round(100 * std::pow(10, i / 192.0)) / 100);
    }
    series.push_back(10);
    return series;
}

TEST(Preferred, IsTheNearestOfItsSeries) {
    for (int c = 1; c <= 4; ++c) {
        const auto series = series_of(PercentClass{c});
        for (const double decade : {1e-12, 1e-7, 1.0, 1e3}) {
            for (double x = 1; x < 10; x *= 1.000717) {
                const auto nearest =
                    std::ranges::min_element(series, {}, [x](double entry) { return std::fabs(entry - x); });
                EXPECT_DOUBLE_EQ(preferred_value(-x * decade, PercentClass{c}), -*nearest * decade) << c << ' ' << x;
            }
            for (const double entry : series) {
                EXPECT_EQ(preferred_value(entry, PercentClass{c}), entry) << "to the last bit";
            }
        }
        for (const double x : {0.0, 1e30, 3e-25}) EXPECT_EQ(preferred_value(x, PercentClass{c}), x);
    }
    EXPECT_EQ(preferred_value(13.5, PercentClass::ten), 12) << "halfway";
}

TEST(Preferred, IsNotDoneTwiceUnlessValuesWereChanged) {
    Circuit made = circuit("R 51.3 | C3 1.03n | LC4 2.2u 3.3p | LATTICE:LCLLCL6 1 2 1e30 3.14 5 6 | R8 50");
    ASSERT_TRUE(preferred(made, PercentClass::two_to_five).empty());
    for (const double value : branch_values(made, unpackBranch(made, 6)))
        EXPECT_EQ(value, preferred_value(value, PercentClass::two_to_five));
    const Circuit rounded = made;
    for (const PercentClass c : {PercentClass::two_to_five, PercentClass::ten}) {
        EXPECT_EQ(preferred(made, c).text, already_preferred);
        EXPECT_TRUE(made == rounded);
    }
    made.VALUE(2) *= 1.01;
    EXPECT_TRUE(preferred(made, PercentClass::ten).empty());
    EXPECT_TRUE(preferred(made, PercentClass::one_percent).empty());
    EXPECT_EQ(preferred(made, PercentClass{0}).text, "Incorrect specification");
}

}  // namespace
}  // namespace kavrel
