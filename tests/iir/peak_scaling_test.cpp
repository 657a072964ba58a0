#include "iir/peak_scaling.h"

#include "numeric/peak.h"
#include "tests/iir/scaled_cascades.h"

namespace kavrel {
namespace {

// The largest level behind section k of a scaled cascade, or at its delays, over the band: the best of even frequencies
// and of those within a width of each pole, closed in on.
double largest_level(const IirFilter& filter, const PeakChoices& choices, int k) {
    const CascadeForm& c = filter.cascade;
    const CheckBand band = peak_band(filter);
    const auto level_at = [&](double hertz) {
        const Point x = std::polar(1.0L, -2 * std::numbers::pi_v<long double> * hertz);
        const int first = choices.separately ? k : 1;
        Point level = first == 1 ? c.CK : 1;
        for (int m = first; m <= k; ++m) {
            const int n = m - (choices.denominators_first ? 1 : 0);
            if (n >= 1) level *= quadratic(c.SC(n), c.C1N(n), c.C2N(n), x);
            level /= quadratic(1, c.C1D(m), c.C2D(m), x);
        }
        return static_cast<double>(std::abs(level));
    };
    double largest = 0, from = 0, to = 0;
    const auto scan = [&](double centre, double width, int points) {
        const double step = width / points;
        for (int i = -points; i <= points; ++i) {
            const double hertz = std::clamp(centre + i * step, band.from, band.to), level = level_at(hertz);
            if (level > largest)
                largest = level, from = std::max(hertz - step, band.from), to = std::min(hertz + step, band.to);
        }
    };
    scan((band.from + band.to) / 2, (band.to - band.from) / 2, 500);
    const DigitalRoots& r = filter.roots;
    for (int i = 1; i <= r.NP; ++i)
        scan(std::atan2(r.PI(i), r.QR(i)) / (2 * std::numbers::pi), 1 - std::hypot(r.PI(i), r.QR(i)), 100);
    return std::max(largest, peak_between(from, to, 50, level_at).value);
}

TEST(PeakScaling, LevelsAreOneAndTheFilterStays) {
    IirFilter filter = factored_filter(1, -0.01, {{0, -1}}, {{-1.2, 0.9}});
    filter.kind = DigitalKind::band_reject, filter.FLO = 0.1, filter.FHI = 0.05;
    EXPECT_TRUE(peak_band(filter).from == 0 && peak_band(filter).to == 0.5);
    std::vector<IirFilter> filters{filter};
    filter.kind = DigitalKind::unknown;
    for (const NoiseCase& one : noise_golden()) {
        if (one.name == "25_equal" || one.name == "bandpass_12_hair") continue;
        const bool narrow = one.name.starts_with("bandpass_24");
        filter.FLO = narrow ? 0.2475 : one.name == "bandpass_50" ? 0.0995 : 0;
        filter.FHI = narrow ? 0.2525 : one.name == "bandpass_50" ? 0.1005 : one.name == "lowpass_24" ? 0.2 : 0;
        if (one.name == "lowpass_12_narrow") filter.FHI = 0.0005;
        filter.cascade = one.cascade;
        rootsFromFactors(filter);
        filters.push_back(filter);
    }
    for (const IirFilter& before : filters) {
        for (int choice = 0; choice < 4; ++choice) {
            const PeakChoices choices{choice % 2 == 1, choice / 2 == 1};
            IirFilter scaled = before;
            const CascadeForm& c = scaled.cascade;
            rescale(scaled.cascade, peakScale(before, choices));
            const int sections = std::max(c.NDEN, before.cascade.NNUM - choice / 2);
            const int levels = sections - (choices.denominators_first ? 0 : 1);
            for (int k = 1; k <= levels; ++k) EXPECT_NEAR(largest_level(scaled, choices, k), 1, 1e-6) << choice << k;
            EXPECT_LT(roots_against_cascade(scaled), 1e-9) << choice;
            EXPECT_EQ(c.SC(1) == 1, sections > 1 && !choices.denominators_first);
            for (int k = c.NNUM + 1; k <= 25; ++k) EXPECT_EQ(c.SC(k), 1);
        }
    }
}

}  // namespace
}  // namespace kavrel
