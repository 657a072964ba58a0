// Responses over frequency against sums in wider numbers, and on zeros.
#include "fir/frequency_response.h"

#include <cmath>
#include <complex>
#include <numbers>
#include <random>

#include <gtest/gtest.h>

namespace kavrel {
namespace {

using Wide = long double;
using Taps = std::vector<double>;
constexpr auto even = FirSymmetry::even, odd = FirSymmetry::odd, none = FirSymmetry::none;

FirFilter filter_of(int length, FirSymmetry symmetry, const Taps& cells) {
    FirFilter filter;
    filter.sampling_frequency = 48e3;
    EXPECT_TRUE(add_function(filter, {.taps = length, .symmetry = symmetry}, cells));
    return filter;
}

void expect_sum(const FirFilter& filter, double hertz) {
    const Taps taps = full_response(filter, 1);
    const ResponsePoint p = fir_frequency_response(filter, 1, {&hertz, 1}).front();
    const Wide theta = 2 * std::numbers::pi_v<Wide> * static_cast<Wide>(hertz / 48e3);
    std::complex<Wide> sum, weighted;
    Wide bound = 0;
    for (std::size_t i = 0; i < taps.size(); ++i) {
        const auto term = static_cast<Wide>(taps[i]) * std::polar(Wide{1}, -theta * static_cast<Wide>(i));
        sum += term, weighted += static_cast<Wide>(i) * term, bound += std::abs(term);
    }
    const auto found = std::polar(std::pow(Wide{10}, -static_cast<Wide>(p.loss) / 20),
                                  -static_cast<Wide>(p.phase) * std::numbers::pi_v<Wide> / 180);
    EXPECT_LT(std::abs(found - sum) / bound, 1e-12) << taps.size() << ' ' << hertz;
    if (filter.FUNCTION(1).symmetry != none) {
        EXPECT_EQ(p.delay, 0.5 * static_cast<double>(taps.size() - 1) / 48e3);
    } else if (std::abs(sum) > 1e-4L * bound) {
        EXPECT_NEAR(p.delay * 48e3, static_cast<double>((weighted / sum).real()), 1e-6) << taps.size() << ' ' << hertz;
    }
}

TEST(FirResponse, IsTheSumInWiderNumbers) {
    std::mt19937 engine(1);
    std::uniform_real_distribution<double> number(-1, 1), frequency(0, 48e3);
    for (const int length : {1, 2, 65, 512, 1025}) {
        for (const auto symmetry : {even, odd, none}) {
            Taps cells(static_cast<std::size_t>(stored_cells(length, symmetry)));
            if (cells.empty() || cells.size() > fir_store) continue;
            for (double& h : cells) h = std::ldexp(number(engine), length / 2);  // of any level
            const FirFilter filter = filter_of(length, symmetry, cells);
            for (const double hertz : {0.0, 12e3, 24e3, 48e3, 1e-3, 23999.999}) expect_sum(filter, hertz);
            for (int k = 0; k < 50; ++k) expect_sum(filter, frequency(engine));
        }
    }
}

// On a zero of the circle the loss is infinite; phase and delay go on from within the band.
TEST(FirResponse, ZerosAreZeros) {
    // clang-format off
    const struct {
        Taps cells;
        int taps;
        FirSymmetry symmetry;
        double turns, phase, delay;
    } cases[] = {
        {{1}, 2, even, 0.5, 90, 0.5}, {{1}, 2, odd, 0, -90, 0.5}, {{1}, 3, odd, 0.5, 90, 1},
        {{1, 0}, 3, even, 0.25, 90, 1}, {{1, 2}, 3, even, 0.5, -180, 1}, {{1, 1}, 3, even, 1 / 3.0, 120, 1},
        {{0, 0}, 2, none, 0.1, 0, 0.5}, {{1, 0.5, 1, 0.5}, 4, none, 0.25, 116.565051, 1.2},
    };
    // clang-format on
    for (const auto& [cells, taps, symmetry, turns, phase, delay] : cases) {
        const double hertz = 48e3 * turns;
        const ResponsePoint p = fir_frequency_response(filter_of(taps, symmetry, cells), 1, {&hertz, 1}).front();
        EXPECT_TRUE(p.loss > 200 && std::fabs(p.phase - phase) < 1e-5 && std::fabs(p.delay * 48e3 - delay) < 1e-12)
            << taps << ' ' << turns;
    }
}

}  // namespace
}  // namespace kavrel
