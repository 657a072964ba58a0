#include "iir/from_outside.h"

#include <cmath>

#include "iir/cascade_pairing.h"
#include "iir/roots_loss.h"

namespace kavrel {

namespace {

using Coefficients = Table<double, iir_section_limit>;

double take(std::span<const GivenFactor> factors, Coefficients& c1, Coefficients& c2, int& count);
HalfRoots given(std::span<const Complex<double>> roots);
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
    DigitalFunction function;
    set_zeros(given(zeros), function);
    set_poles(given(poles), function);
    take_function(function, filter);
    const double loss = least_loss_of_pass_band(filter);
    if (std::isfinite(loss)) filter.cascade.CK = filter.roots.ZMULT = std::pow(10, loss / 20);
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

// But for powers of z.
HalfRoots given(std::span<const Complex<double>> roots) {
    HalfRoots list;
    for (const Complex<double> root : roots) {
        if (root.re == 0 && root.im == 0) continue;
        list.push_back({.root = {root.re, std::fabs(root.im)}, .pair = root.im != 0});
    }
    return list;
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
