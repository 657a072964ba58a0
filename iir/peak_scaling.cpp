#include "iir/peak_scaling.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "iir/circle_mean.h"
#include "iir/roots_loss.h"

namespace kavrel {

namespace {

ScaleFactors peaks(const IirFilter& filter, int sections, const PeakChoices& choices);

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

// The search begins at places that lie even over the band and about all poles and zeros, those of the factors as they
// are.
ScaleFactors peaks(const IirFilter& filter, int sections, const PeakChoices& choices) {
    IirFilter of_factors = filter;
    rootsFromFactors(of_factors);
    Unwatched watcher;  // some milliseconds
    const DigitalBand band(of_factors, peak_band(filter), watcher);
    const CascadeForm& c = filter.cascade;
    const int behind = choices.denominators_first ? 1 : 0;  // the numerator that belongs to denominator k is k - behind
    const auto gain = [&](int first, int last, double hertz) {
        const CirclePoint point = circle_point(2 * std::numbers::pi * hertz / filter.fs);
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
        const double peak = band.highest([&](double hertz) { return gain(first, k, hertz); }).value;
        P(k) = choices.separately && k > 1 ? P(k - 1) * peak : peak;
    }
    return P;
}

}  // namespace

}  // namespace kavrel
