#include "iir/peak_scaling.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "iir/circle_mean.h"
#include "numeric/highest_value.h"

namespace kavrel {

namespace {

ScaleFactors peaks(const IirFilter& filter, int sections, const PeakChoices& choices);
std::vector<double> places_of(const IirFilter& filter);

}  // namespace

ScaleFactors peakScale(const IirFilter& filter, const PeakChoices& choices) {
    const CascadeForm& c = filter.cascade;
    const int sections = std::max(c.NDEN, c.NNUM - (choices.denominators_first ? 1 : 0));
    const ScaleFactors P = peaks(filter, sections, choices);
    ScaleFactors SC = ones<iir_section_limit>();
    if (choices.denominators_first) {
        for (int k = 1; k < sections; ++k) SC(k) = P(k) / P(k + 1);
        SC(sections) = c.CK * P(sections);
    } else {
        for (int k = 2; k < sections; ++k) SC(k) = P(k - 1) / P(k);
        SC(sections) = c.CK * (sections > 1 ? P(sections - 1) : 1);
    }
    return SC;
}

CheckBand peak_band(const IirFilter& filter) {
    const double top = filter.fs / 2;
    if (filter.kind == DigitalKind::band_reject || filter.spectral == SpectralKind::to_bandreject) return {0, top};
    const double from = 0.8 * filter.FLO, to = filter.FHI > 0 ? std::fmin(1.2 * filter.FHI, top) : top;
    return from < to ? CheckBand{from, to} : CheckBand{0, top};
}

namespace {

ScaleFactors peaks(const IirFilter& filter, int sections, const PeakChoices& choices) {
    const CascadeForm& c = filter.cascade;
    const std::vector<double> places = places_of(filter);
    const int behind = choices.denominators_first ? 1 : 0;  // the numerator that belongs to denominator k is k - behind
    const auto gain = [&](int first, int last, double theta) {
        const auto point = circle_point(theta / (2 * std::numbers::pi));
        double square = 1;
        for (int k = first; k <= last; ++k) {
            const int n = k - behind;
            if (n >= 1 && n <= c.NNUM) square *= square_of({1, c.C1N(n), c.C2N(n)}, point);
            if (k <= c.NDEN) square /= square_of({1, c.C1D(k), c.C2D(k)}, point);
        }
        return std::sqrt(square);
    };
    ScaleFactors P = ones<iir_section_limit>();
    for (int k = 1; k <= sections; ++k) {
        const int first = choices.separately ? k : 1;
        const double peak = highest_value(places, [&](double theta) { return gain(first, k, theta); }).value;
        P(k) = choices.separately && k > 1 ? P(k - 1) * peak : peak;
    }
    return P;
}

// 100 even places over the band, and about each pole as much denser as it is closer to the circle: so each peak shows,
// however narrow.
std::vector<double> places_of(const IirFilter& filter) {
    constexpr int even_places = 100;
    constexpr double first_step = 0.2, growth = 1.3;  // in distances from the circle
    const CascadeForm& c = filter.cascade;
    const double radian = 2 * std::numbers::pi / filter.fs;
    const CheckBand band = peak_band(filter);
    const double from = band.from * radian, to = band.to * radian, apart = (to - from) / (even_places - 1);
    std::vector<double> places;
    const auto add = [&](double theta) {
        if (theta >= from && theta <= to) places.push_back(theta);
    };
    for (int i = 0; i + 1 < even_places; ++i) add(from + i * apart);
    places.push_back(to);
    std::vector<SectionFactor> denominators;
    for (int k = 1; k <= c.NDEN; ++k) denominators.push_back({1, c.C1D(k), c.C2D(k)});
    for (const auto& [theta, distance] : poles_of(denominators)) {
        add(theta);
        for (double off = first_step * std::fabs(distance); off > 0 && off < apart; off *= growth) {
            add(theta - off), add(theta + off);
        }
    }
    std::ranges::sort(places);
    return places;
}

}  // namespace

}  // namespace kavrel
