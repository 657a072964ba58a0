#include "forms/filter_request.h"

#include <cmath>

#include <gtest/gtest.h>

namespace kavrel {
namespace {

TEST(SpecOfRequest, LossesByReflectionAndReturnLoss) {
    FilterRequest r;
    // 100 (1 - 10^(-loss/10)) percent of the power comes back.
    const struct {
        double typed, loss, reflection;
    } rows[] = {
        {0.1, 0.1, 0.0}, {9.5, 9.5, 0.0}, {20.0, 0.04364805402450095, 20.0}, {-10.0, 0.04364805402450095, -10.0}};
    for (const auto& row : rows) {
        r.band_edge_loss = row.typed;
        const FilterSpec spec = spec_of(r, {});
        EXPECT_NEAR(spec.bandEdgeLoss, row.loss, 1e-15 + 1e-15 * row.loss) << row.typed;
        EXPECT_EQ(spec.reflectionInput, row.reflection);
    }
}

// Value of the product of factors at a real point.
double product_at(const Table<double, factor_limit>& factors, int degree, double s) {
    double product = 1.0;
    for (int i = 2; i <= degree; i += 2) product *= (s + factors(i - 1)) * s + factors(i);
    return degree % 2 == 1 ? product * (s + factors(degree)) : product;
}

TEST(SpecOfRequest, RootsOfAFunctionBecomeItsFactors) {
    FilterRequest r;
    r.passband_type = PassbandChoice::functional;
    r.stopband_type = StopbandChoice::specified;
    r.upper_passband = 2.0;
    r.multiplier = 3.0;
    r.DOUBLETS = {.rows = 4, .cells = {-1.0, 0.0, -3.0, 4.0, -5.0, 0.0, -2.0, 0.0}};
    r.TR_ZEROS = {.rows = 1, .cells = {0.0, 6.0}};
    UnitSet kilohertz;
    kilohertz.frequency_index = 2;
    settle_units(kilohertz);
    const auto expected = [](double s) { return (s + 0.5) * (s * s + 3.0 * s + 6.25) * (s + 2.5) * (s + 1.0); };
    for (const FunctionChoice function : {FunctionChoice::e, FunctionChoice::f}) {
        r.function_type = function;
        const FilterSpec spec = spec_of(r, kilohertz);
        const bool of_e = function == FunctionChoice::e;
        ASSERT_EQ(of_e ? spec.denominatorDegree : spec.numeratorDegree, 5);
        ASSERT_EQ(of_e ? spec.numeratorDegree : spec.denominatorDegree, 0);
        for (const double s : {0.0, 0.7, -2.0}) {
            EXPECT_DOUBLE_EQ(product_at(of_e ? spec.denominatorFactors : spec.numeratorFactors, 5, s), expected(s));
        }
        EXPECT_EQ(spec.zeroCount, 1);
        EXPECT_EQ(spec.FZI(1), 6000.0);
    }
    // The same in rad/sec, which have no prefix.
    r.zero_unit = ZeroUnitChoice::radians;
    for (int row = 1; row <= 4; ++row) {
        for (int column = 1; column <= 2; ++column) r.DOUBLETS(row, column) *= 2000.0 * std::acos(-1.0);
    }
    EXPECT_DOUBLE_EQ(product_at(spec_of(r, kilohertz).numeratorFactors, 5, 0.7), expected(0.7));
    // And of a filter for a fraction of a hertz.
    r.upper_passband /= 0x1p13;
    for (int row = 1; row <= 4; ++row) r.DOUBLETS(row, 1) /= 0x1p13, r.DOUBLETS(row, 2) /= 0x1p13;
    EXPECT_DOUBLE_EQ(product_at(spec_of(r, kilohertz).numeratorFactors, 5, 0.7), expected(0.7));
}

}  // namespace
}  // namespace kavrel
