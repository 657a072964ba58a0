#include "iir/from_outside.h"

#include <cmath>

#include "iir/cascade_pairing.h"
#include "iir/roots_loss.h"

namespace kavrel {

namespace {

using Coefficients = Table<double, iir_section_limit>;

double take(std::span<const GivenFactor> factors, Coefficients& c1, Coefficients& c2, int& count);
void append(std::span<const Complex<double>> roots, Table<double, 51>& re, Table<double, 51>& im, int& count);
double least_loss_of_pass_band(const IirFilter& filter);

}  // namespace

void take_factors(std::span<const GivenFactor> numerator, std::span<const GivenFactor> denominator, IirFilter& filter) {
    CascadeForm& cascade = filter.cascade;
    const double numerator_level = take(numerator, cascade.C1N, cascade.C2N, cascade.NNUM);
    const double denominator_level = take(denominator, cascade.C1D, cascade.C2D, cascade.NDEN);
    cascade.CK = numerator_level / denominator_level;
    rootsFromFactors(filter);
}

void take_roots(std::span<const Complex<double>> zeros, std::span<const Complex<double>> poles, IirFilter& filter) {
    DigitalRoots& roots = filter.roots;
    append(zeros, roots.ZR, roots.ZI, roots.NZ);
    append(poles, roots.QR, roots.PI, roots.NP);
    const double loss = least_loss_of_pass_band(filter);
    if (std::isfinite(loss)) roots.ZMULT = std::pow(10, loss / 20);
    pair_roots(filter);
}

namespace {

// The product of the leading coefficients.
double take(std::span<const GivenFactor> factors, Coefficients& c1, Coefficients& c2, int& count) {
    double level = 1;
    for (const GivenFactor& f : factors) {
        const double lead = f.quadratic != 0 ? f.quadratic : f.linear != 0 ? f.linear : f.constant;
        const double next = f.quadratic != 0 ? f.linear : f.linear != 0 ? f.constant : 0;
        const double last = f.quadratic != 0 ? f.constant : 0;
        level *= lead;
        if (next == 0 && last == 0) continue;
        ++count;
        c1(count) = next / lead;
        c2(count) = last / lead;
    }
    return level;
}

void append(std::span<const Complex<double>> roots, Table<double, 51>& re, Table<double, 51>& im, int& count) {
    for (const Complex<double> root : roots) {
        if (root.re == 0 && root.im == 0) continue;  // a power of z
        ++count, re(count) = root.re, im(count) = std::fabs(root.im);
        if (root.im == 0) continue;
        ++count, re(count) = root.re, im(count) = -std::fabs(root.im);
    }
}

double least_loss_of_pass_band(const IirFilter& filter) {
    const double top = filter.fs / 2;
    Unwatched watcher;  // some hundred frequencies
    const auto least = [&](double from, double to) {
        return DigitalBand(filter, {from, to}, watcher)
            .least([&](double hertz) { return loss_of_roots(filter, hertz); })
            .value;
    };
    const double lower = filter.FLO, upper = filter.FHI;
    switch (filter.kind) {
        case DigitalKind::low_pass: return least(0, upper > 0 ? upper : top);
        case DigitalKind::high_pass: return least(lower, top);
        case DigitalKind::band_pass: return least(lower, upper > 0 ? upper : top);
        case DigitalKind::band_reject:
            if (upper > 0) return std::fmin(least(0, lower), least(upper, top));
            break;
        default: break;
    }
    return least(0, top);
}

}  // namespace

}  // namespace kavrel
