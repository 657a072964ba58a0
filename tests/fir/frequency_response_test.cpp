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

FirFilter filter_of(const Taps& taps, FirSymmetry symmetry) {
    FirFilter filter;
    filter.sampling_frequency = 48e3;
    const auto half = symmetry == FirSymmetry::none ? taps : half_of(taps, symmetry);
    EXPECT_TRUE(add_function(filter, {.taps = static_cast<int>(taps.size()), .symmetry = symmetry}, half));
    return filter;
}

TEST(FirResponse, IsTheSumInWiderNumbers) {
    std::mt19937 engine(1);
    std::uniform_real_distribution<double> number(-1, 1), frequency(0, 48e3);
    for (const int length : {1, 2, 3, 64, 65, 511, 512, 518, 1025, 1026}) {
        for (const auto symmetry : {FirSymmetry::even, FirSymmetry::odd, FirSymmetry::none}) {
            if (stored_cells(length, symmetry) < 1 || stored_cells(length, symmetry) > fir_store) continue;
            Taps cells(static_cast<std::size_t>(stored_cells(length, symmetry)));
            for (double& h : cells) h = std::ldexp(number(engine), length / 2);  // of any level
            FirFilter filter;
            filter.sampling_frequency = 48e3;
            ASSERT_TRUE(add_function(filter, {.taps = length, .symmetry = symmetry}, cells));
            Taps hertz{0, 12e3, 24e3, 48e3, 1e-3, 23999.999};
            while (hertz.size() < 101) hertz.push_back(frequency(engine));
            const Taps taps = full_response(filter, 1);
            const auto points = fir_frequency_response(filter, 1, hertz);
            Wide bound = 0;
            for (const double h : taps) bound += std::fabs(static_cast<Wide>(h));
            for (std::size_t k = 0; k < hertz.size(); ++k) {
                std::complex<Wide> sum, weighted;
                const Wide theta = 2 * std::numbers::pi_v<Wide> * static_cast<Wide>(hertz[k] / 48e3);
                for (std::size_t i = 0; i < taps.size(); ++i) {
                    const auto term = static_cast<Wide>(taps[i]) * std::polar(Wide{1}, -theta * static_cast<Wide>(i));
                    sum += term, weighted += static_cast<Wide>(i) * term;
                }
                const ResponsePoint& p = points[k];
                const auto found = std::polar(std::pow(Wide{10}, -static_cast<Wide>(p.loss) / 20),
                                              -static_cast<Wide>(p.phase) * std::numbers::pi_v<Wide> / 180);
                ASSERT_LT(std::abs(found - sum) / bound, 1e-12) << length << ' ' << hertz[k];
                if (symmetry != FirSymmetry::none) {
                    ASSERT_EQ(p.delay, 0.5 * (length - 1) / 48e3);
                } else if (std::abs(sum) > 1e-4L * bound) {
                    ASSERT_NEAR(p.delay * 48e3, static_cast<double>((weighted / sum).real()), 1e-8 * length)
                        << hertz[k];
                }
            }
        }
    }
}

// On a zero of the circle the loss is infinite; phase and delay go on from within the band.
TEST(FirResponse, ZerosAreZeros) {
    struct Case {
        Taps taps;
        FirSymmetry symmetry;
        double turns, phase, delay;
    };
    constexpr auto even = FirSymmetry::even, odd = FirSymmetry::odd, none = FirSymmetry::none;
    const Case cases[] = {
        {{1, 1}, even, 0.5, 90, 0.5},
        {{1, -1}, odd, 0, -90, 0.5},
        {{1, 0, -1}, odd, 0.5, 90, 1},
        {{1, 0, 1}, even, 0.25, 90, 1},
        {{1, 2, 1}, even, 0.5, -180, 1},
        {{1, 1, 1}, even, 1 / 3.0, 120, 1},
        {{1, 0.5, 1, 0.5}, none, 0.25, 116.565051, 1.2},
        {{0, 0, 0}, even, 0.1, 0, 1},
        {{0, 0}, none, 0.1, 0, 0.5},
    };
    for (const auto& [taps, symmetry, turns, phase, delay] : cases) {
        const double hertz = 48e3 * turns;
        const ResponsePoint p = fir_frequency_response(filter_of(taps, symmetry), 1, {&hertz, 1}).front();
        EXPECT_GT(p.loss, 200) << taps.size() << ' ' << turns;
        EXPECT_NEAR(p.phase, phase, 1e-5) << taps.size() << ' ' << turns;
        EXPECT_NEAR(p.delay * 48e3, delay, 1e-12) << taps.size() << ' ' << turns;
    }
}

}  // namespace
}  // namespace kavrel
