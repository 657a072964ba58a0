#include "iir/iir_filter.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kavrel {

void factorRoots(double c1, double c2, Table<double, 51>& re, Table<double, 51>& im, int& count) {
    const auto append = [&](double x, double y) { ++count, re(count) = x, im(count) = y; };
    if (c2 == 0) return append(-c1, 0);
    const double h = -c1 / 2, d = h * h - c2;
    if (d <= 0) {
        append(h, std::sqrt(-d));
        append(h, -std::sqrt(-d));
    } else {
        // The larger one without cancellation, the other one by their product.
        const double larger = h < 0 ? h - std::sqrt(d) : h + std::sqrt(d);
        append(h < 0 ? c2 / larger : larger, 0);
        append(h < 0 ? larger : c2 / larger, 0);
    }
}

FactorCoefficients numerator_factor(const CascadeForm& cascade, int k) {
    return {cascade.C1N(k) / cascade.SC(k), cascade.C2N(k) / cascade.SC(k)};
}

void rootsFromFactors(IirFilter& filter) {
    const CascadeForm& cascade = filter.cascade;
    DigitalRoots roots;
    roots.ZMULT = cascade.CK;
    for (const double scale : cascade.SC) roots.ZMULT *= scale;
    for (int k = 1; k <= cascade.NNUM; ++k) {
        const auto [c1, c2] = numerator_factor(cascade, k);
        if (c1 != 0 || c2 != 0) factorRoots(c1, c2, roots.ZR, roots.ZI, roots.NZ);
    }
    for (int k = 1; k <= cascade.NDEN; ++k) {
        const double c1 = cascade.C1D(k), c2 = cascade.C2D(k);
        if (c1 != 0 || c2 != 0) factorRoots(c1, c2, roots.QR, roots.PI, roots.NP);
    }
    filter.roots = roots;
}

void unscale(CascadeForm& cascade) {
    for (int k = 1; k <= iir_section_limit; ++k) {
        cascade.CK *= cascade.SC(k);
        cascade.C1N(k) /= cascade.SC(k);
        cascade.C2N(k) /= cascade.SC(k);
        cascade.SC(k) = 1;
    }
    cascade.SCALED = false;
}

void rescale(CascadeForm& cascade, const ScaleFactors& SC) {
    unscale(cascade);
    const int sections = section_count(cascade);
    for (int k = cascade.NNUM + 1; k <= sections; ++k) cascade.C1N(k) = cascade.C2N(k) = 0;
    for (int k = 1; k <= sections; ++k) {
        cascade.SC(k) = SC(k);
        cascade.CK /= SC(k);
        cascade.C1N(k) *= SC(k);
        cascade.C2N(k) *= SC(k);
        if (SC(k) != 1) cascade.NNUM = std::max(cascade.NNUM, k);
    }
    cascade.SCALED = true;
}

void clear_derived_forms(IirFilter& filter) {
    filter.parallel = {};
    filter.direct = {};
    filter.lattice = {};
    filter.allpass = {};
}

bool removeRoot(Complex<double> value, Table<double, 51>& re, Table<double, 51>& im, int& count) {
    constexpr double close = 1e-8, relative = 1e-10;
    double within = std::max(close, relative * std::hypot(value.re, value.im));
    int nearest = 0;
    for (int i = 1; i <= count; ++i) {
        const double distance = std::hypot(re(i) - value.re, im(i) - value.im);
        if (!(nearest == 0 ? distance <= within : distance < within)) continue;
        within = distance;
        nearest = i;
    }
    if (nearest == 0) return false;
    for (int j = nearest; j < count; ++j) re(j) = re(j + 1), im(j) = im(j + 1);
    re(count) = im(count) = 0;
    --count;
    return true;
}

std::string_view z_transform_text(ZTransform transform) {
    constexpr std::array<std::string_view, 5> texts = {"impulse-invariant", "matched", "bilinear", "bilinear",
                                                       "unknown"};
    const int number = static_cast<int>(transform);
    return texts[static_cast<std::size_t>(number >= 1 && number <= 4 ? number - 1 : 4)];
}

std::string_view kind_name(DigitalKind kind) {
    constexpr std::array<std::string_view, 6> names = {"unknown",   "low_pass",    "high_pass",
                                                       "band_pass", "band_reject", "unknown"};
    return names[static_cast<std::size_t>(kind)];
}

std::string_view spectral_name(SpectralKind spectral) {
    constexpr std::array<std::string_view, 5> names = {"none", "lowpass-to-lowpass", "lowpass-to-highpass",
                                                       "lowpass-to-bandpass", "lowpass-to-bandreject"};
    return names[static_cast<std::size_t>(spectral)];
}

}  // namespace kavrel
