#include "iir/peak_scaling.h"

#include "tests/iir/scaled_cascades.h"

namespace kavrel {
namespace {

IirFilter filter_with(const CascadeForm& cascade, double from, double to) {
    IirFilter filter;
    filter.cascade = cascade;
    filter.fs = filter.T = 1, filter.FLO = from, filter.FHI = to;
    rootsFromFactors(filter);
    return filter;
}

// The largest level behind section k of a scaled cascade, or at its delays, over the band: the best of
// even frequencies and of those within a width of each pole, closed in on.
double largest_level(const IirFilter& filter, const PeakChoices& choices, int k) {
    const CascadeForm& c = filter.cascade;
    const CheckBand band = peak_band(filter);
    const int behind = choices.denominators_first ? 1 : 0;
    const auto level_at = [&](long double hertz) {
        const Point x = std::polar(1.0L, -2 * std::numbers::pi_v<long double> * hertz);
        const int first = choices.separately ? k : 1;
        Point level = first == 1 ? c.CK : 1;
        for (int m = first; m <= k; ++m) {
            const int n = m - behind;
            if (n >= 1) level *= n <= c.NNUM ? quadratic(c.SC(n), c.C1N(n), c.C2N(n), x) : c.SC(n);
            if (m <= c.NDEN) level /= quadratic(1, c.C1D(m), c.C2D(m), x);
        }
        return std::abs(level);
    };
    long double largest = 0;
    double at = 0;
    const auto scan = [&](double centre, double width, int points) {
        for (int i = -points; i <= points; ++i) {
            const double hertz = centre + width * i / points;
            if (hertz < band.from || hertz > band.to || !(level_at(hertz) > largest)) continue;
            largest = level_at(hertz), at = hertz;
        }
    };
    scan((band.from + band.to) / 2, (band.to - band.from) / 2, 1000);
    for (int i = 1; i <= filter.roots.NP; ++i) {
        const double width = 1 - std::hypot(filter.roots.PI(i), filter.roots.QR(i));
        scan(std::atan2(filter.roots.PI(i), filter.roots.QR(i)) / (2 * std::numbers::pi), width, 100);
    }
    for (double width = (band.to - band.from) / 1000; width > 1e-12; width /= 20) scan(at, width, 30);
    return static_cast<double>(largest);
}

TEST(PeakScaling, LevelsAreOneAndTheFilterStays) {
    std::vector<IirFilter> filters;
    for (const NoiseCase& one : noise_golden()) {
        if (one.name == "bandpass_24_shuffled") filters.push_back(filter_with(one.cascade, 0.2475, 0.2525));
        if (one.name == "bandpass_50") filters.push_back(filter_with(one.cascade, 0.0995, 0.1005));
        if (one.name == "lowpass_24") filters.push_back(filter_with(one.cascade, 0, 0.2));
        if (one.name == "zeros_first") filters.push_back(filter_with(one.cascade, 0.1, 0));
        if (one.name == "poles_alone") filters.push_back(filter_with(one.cascade, 0, 0));
    }
    filters.push_back(factored_filter(1, -0.01, {{0, -1}}, {{-1.2, 0.9}}));
    filters.back().kind = DigitalKind::band_reject, filters.back().FLO = 0.1, filters.back().FHI = 0.05;
    for (const IirFilter& filter : filters) {
        for (int choice = 0; choice < 4; ++choice) {
            const PeakChoices choices{choice % 2 == 1, choice / 2 == 1};
            IirFilter scaled = filter;
            rescale(scaled.cascade, peakScale(filter, choices));
            CascadeForm& c = scaled.cascade;
            const int sections = std::max(c.NDEN, filter.cascade.NNUM - choice / 2);
            const int levels = sections - (choices.denominators_first ? 0 : 1);
            for (int k = 1; k <= levels; ++k) EXPECT_NEAR(largest_level(scaled, choices, k), 1, 1e-6) << choice << k;
            double front = c.CK;
            for (int k = 1; k <= 25; ++k) front *= c.SC(k);
            EXPECT_NEAR(front / filter.cascade.CK, 1, 1e-13);
            EXPECT_LT(roots_against_cascade(scaled), 1e-9) << choice;
            EXPECT_EQ(c.SC(1) == 1, sections > 1 && !choices.denominators_first);
            for (int k = c.NNUM + 1; k <= 25; ++k) EXPECT_EQ(c.SC(k), 1);
        }
    }
    EXPECT_EQ(peak_band(filters.back()).to, 0.5);
}

}  // namespace
}  // namespace kavrel
