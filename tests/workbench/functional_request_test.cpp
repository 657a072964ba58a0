// Functions given by their roots: what a design found, typed in again, has to give the same poles.
#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

#include "tests/support/choices.h"
#include "tests/support/fake_window.h"
#include "workbench/filter_road.h"

namespace kavrel {
namespace {

constexpr double two_pi = 2.0 * std::numbers::pi;

struct FunctionalRequest : testing::Test {
    FakeWindow window;
    Workbench bench{window};
    FilterRequest& request = bench.filter_request;

    void design() {
        window.forms = {[](FormSheet&) { return true; }};
        window.boxes.clear();
        filter_design_road(bench, FormStart::last_values);
        ASSERT_EQ(bench.design, DesignOutcome::done)
            << (window.boxes.empty() ? window.lines.back() : window.boxes.back());
    }

    void ask_for_elliptic(TypeChoice filter_type) {
        request = {};
        request.filter_type = filter_type;
        request.passband_type = PassbandChoice::equal_ripple;
        request.stopband_type = StopbandChoice::equal_min;
        request.band_edge_loss = 0.2;
        request.lower_passband = 1000.0;
        request.upper_passband = filter_type == TypeChoice::band_pass ? 1300.0 : 1000.0;
        request.lower_stopband = 700.0;
        request.upper_stopband = 1800.0;
        request.lower_stop_loss = request.upper_stop_loss = 45.0;
    }

    // The last design's poles and zeros in rad/sec as rows of a functional request of the same kind.
    void type_in_the_poles() {
        const TransferFunction& t = bench.filter.design.transfer;
        const FilterSpec& spec = bench.filter.found;
        request.passband_type = PassbandChoice::functional;
        request.function_type = FunctionChoice::e;
        request.stopband_type = StopbandChoice::specified;
        request.zero_unit = ZeroUnitChoice::radians;
        request.DOUBLETS.rows = request.TR_ZEROS.rows = 0;
        for (int i = 1; i <= t.poleCount; ++i) add_row(request.DOUBLETS, t.POLES_RE(i), t.POLES_IM(i));
        for (int i = 1; i <= spec.zeroCount; ++i) add_row(request.TR_ZEROS, 0.0, two_pi * spec.FZI(i));
        request.zeros_at_zero = spec.zerosAtZero;
        request.zeros_at_infinity = spec.zerosAtInfinity;
    }
    static void add_row(FormList<finite_zero_limit, 2>& list, double re, double im) {
        if (im < 0.0) return;
        ++list.rows;
        list(list.rows, 1) = re;
        list(list.rows, 2) = im;
    }

    static double farthest(const TransferFunction& a, const TransferFunction& b) {
        double most = a.poleCount == b.poleCount ? 0.0 : 1.0;
        for (int i = 1; i <= a.poleCount; ++i) {
            double nearest = 1.0;
            for (int j = 1; j <= b.poleCount; ++j) {
                nearest = std::min(nearest, std::hypot(a.POLES_RE(i) - b.POLES_RE(j), a.POLES_IM(i) - b.POLES_IM(j)) /
                                                std::hypot(b.POLES_RE(j), b.POLES_IM(j)));
            }
            most = std::max(most, nearest);
        }
        return most;
    }
};

TEST_F(FunctionalRequest, PolesTypedInComeOutAgain) {
    for (const TypeChoice type : {TypeChoice::low_pass, TypeChoice::high_pass, TypeChoice::band_pass}) {
        for (const FilterKind kind : {FilterKind::lc, FilterKind::active_rc}) {
            ask_for_elliptic(type);
            request.filter_kind = kind;
            design();
            const TransferFunction known = bench.filter.design.transfer;
            type_in_the_poles();
            design();
            EXPECT_LT(farthest(bench.filter.design.transfer, known), 1e-12) << "type " << type << ", kind " << kind;
        }
    }
}

// The zeros that give the stopband of an elliptic filter equal minima are its own.
TEST_F(FunctionalRequest, EqualMinimaFindsTheZerosThatThePolesBelongTo) {
    for (const TypeChoice type : {TypeChoice::low_pass, TypeChoice::high_pass}) {
        ask_for_elliptic(type);
        request.lower_stop_loss = request.upper_stop_loss = 55.0;
        design();
        const FilterSpec known = bench.filter.found;
        ASSERT_EQ(known.degree % 2, 1);
        type_in_the_poles();
        request.stopband_type = StopbandChoice::equal_min;
        design();
        ASSERT_EQ(bench.filter.found.zeroCount, known.zeroCount);
        for (int i = 1; i <= known.zeroCount; ++i) {
            double nearest = 1.0;
            for (int j = 1; j <= known.zeroCount; ++j) {
                nearest = std::min(nearest, std::abs(bench.filter.found.FZI(i) / known.FZI(j) - 1.0));
            }
            EXPECT_LT(nearest, 1e-9) << "zero " << i << " of type " << type;
        }
    }
}

// Reflection zeros at s^2 = (x - a)/(1 - x), the level from the loss at the edge.
TEST_F(FunctionalRequest, ReflectionZerosTypedInGiveThePoles) {
    ask_for_elliptic(TypeChoice::low_pass);
    design();
    const TransferFunction known = bench.filter.design.transfer;
    const WideRootSet F = bench.filter.design.x_plane.FS;
    type_in_the_poles();
    request.function_type = FunctionChoice::f;
    request.zero_unit = ZeroUnitChoice::hertz;
    request.DOUBLETS.rows = 0;
    double product = 1.0;  // |f/q| of multiplier 1 at s = j
    for (int i = 1; i <= F.count; ++i) {
        const double x = static_cast<double>(F.re(i));
        if (std::abs(x) < 1e-12) {
            add_row(request.DOUBLETS, 0.0, 0.0);
        } else if (i % 2 == 1) {
            const double w = std::sqrt(-x / (1.0 - x));
            add_row(request.DOUBLETS, 0.0, 1000.0 * w);
            product *= 1.0 - w * w;
        }
    }
    for (int i = 1; i <= request.TR_ZEROS.rows; ++i) {
        const double w = bench.filter.found.FZI(i) / 1000.0;
        request.TR_ZEROS(i, 2) = 1000.0 * w;
        product /= w * w - 1.0;
    }
    request.multiplier = std::sqrt(std::pow(10.0, 0.02) - 1.0) / product;
    design();
    EXPECT_LT(farthest(bench.filter.design.transfer, known), 1e-10);
}

}  // namespace
}  // namespace kavrel
