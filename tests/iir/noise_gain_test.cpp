#include "iir/noise_gain.h"

#include "iir/section_order.h"
#include "numeric/quantise.h"
#include "tests/iir/scaled_cascades.h"

namespace kavrel {
namespace {

// The reference is a recursion on polynomials at 250 digits: nothing is shared with means over the circle.
TEST(NoiseCore, AgreesWithLongNumbersHoweverNarrow) {
    Unwatched watcher;
    const auto cases = noise_golden();
    EXPECT_EQ(cases.size(), 10U);
    for (const auto& [name, cascade, F, G, decibel] : cases) {
        const CascadeNoise noise = *noiseCore(cascade);
        for (int k = 1; k <= section_count(cascade); ++k) {
            const auto at = static_cast<std::size_t>(k) - 1;
            EXPECT_NEAR(noise.F(k) / F[at], 1, 2e-11) << name << k;
            EXPECT_NEAR(noise.G(k) / G[at], 1, 2e-11) << name << k;
        }
        CascadeForm scaled = cascade;
        rescale(scaled, *l_two_factors(cascade));
        EXPECT_NEAR(*noiseGain(scaled), decibel, 1e-9) << name;
        EXPECT_NEAR(decibel_of(orderSections(cascade, 1, 2, watcher)->natural), decibel, 1e-9) << name;
    }
}

// The output of canonical sections, denominators first.
template <class Arithmetic>
class CanonicalCascade {
public:
    CanonicalCascade(const CascadeForm& cascade, Arithmetic arithmetic) : c_(cascade), in_(arithmetic) {}
    double step(double x) {
        double u = in_.product(c_.CK, x);
        for (int k = 1; k <= c_.NDEN; ++k) {
            const double w = u - in_.product(c_.C1D(k), last_(k)) - in_.product(c_.C2D(k), before_(k));
            u = in_.product(c_.SC(k), w) + in_.product(c_.C1N(k), last_(k)) + in_.product(c_.C2N(k), before_(k));
            before_(k) = last_(k), last_(k) = w;
        }
        return u;
    }

private:
    const CascadeForm& c_;
    Arithmetic in_;
    Table<double, iir_section_limit> last_, before_;  // w of each section one and two samples ago
};

// Zeros off the unit circle: on it SC(k) and C2N(k) are one number, whose two products are rounded alike.
TEST(NoiseGain, IsThatOfRoundedProducts) {
    const WordLength word{.bits = 24, .number_form = NumberForm::fixed_point};
    const double source = std::ldexp(1, -2 * word.bits) / 12;  // power of one rounding
    RandomNumbers random(33);
    for (int pairs = 2; pairs <= 12; ++pairs) {
        RootList zeros, poles;
        for (int k = 1; k <= pairs; ++k) {
            const auto zero = std::polar(random.between(0.6, 0.9), random.between(0.3, 2.8));
            const auto pole = std::polar(random.between(0.7, 0.95), random.between(0.3, 2.8));
            zeros.push_back({zero.real(), zero.imag()}), poles.push_back({pole.real(), pole.imag()});
        }
        CascadeForm scaled = filter_of(0.1, zeros, poles).cascade;
        rescale(scaled, *l_two_factors(scaled));
        CanonicalCascade exact(scaled, Unquantised{});
        CanonicalCascade rounded(scaled, WordArithmetic(word));
        double power = 0;
        constexpr int samples = 40000;
        for (int n = 0; n < samples; ++n) {
            const double x = random.between(-1, 1), error = rounded.step(x) - exact.step(x);
            power += error * error / samples;
        }
        const double gain = *noiseGain(scaled), one_more = decibel_of(std::pow(10, gain / 10) + 1);
        EXPECT_NEAR(decibel_of(power / source), gain, pairs == 2 ? 0.6 : 0.5) << pairs;
        EXPECT_NEAR(decibel_of(power / source), one_more, 0.2) << "with three products at the output";
    }
}

}  // namespace
}  // namespace kavrel
