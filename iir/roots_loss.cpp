#include "iir/roots_loss.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kavrel {

namespace {

using Real = long double;
using Roots = Table<double, 51>;

constexpr double pi = std::numbers::pi;

Real squared_distances(const Roots& re, const Roots& im, int count, Complex<double> z);

}  // namespace

double loss_of_roots(const IirFilter& filter, double hertz) {
    const DigitalRoots& r = filter.roots;
    const double theta = 2 * pi * hertz / filter.fs;
    const Complex<double> z{std::cos(theta), std::sin(theta)};
    const Real poles = squared_distances(r.QR, r.PI, r.NP, z);
    const Real zeros = squared_distances(r.ZR, r.ZI, r.NZ, z);
    return static_cast<double>(10 * std::log10(poles) - 10 * std::log10(zeros)) -
           20 * std::log10(std::fabs(r.ZMULT / r.PMULT));
}

double largest_pole_radius(const DigitalRoots& roots) {
    double largest = 0;
    for (int i = 1; i <= roots.NP; ++i) largest = std::max(largest, std::hypot(roots.QR(i), roots.PI(i)));
    return largest;
}

DigitalBand::DigitalBand(const IirFilter& filter, CheckBand band, Watcher& watcher)
    : DigitalBand(filter.roots, filter.fs, band, watcher) {}

DigitalBand::DigitalBand(const DigitalRoots& r, double fs, CheckBand band, Watcher& watcher)
    : watcher_(watcher), band_(band) {
    constexpr int even_places = 128;
    const double hertz = fs / (2 * pi);
    if (!(band.from <= band.to)) return;
    for (int i = 0; i <= even_places; ++i) {
        add((band.from + band.to) / 2 - (band.to - band.from) / 2 * std::cos(pi * i / even_places));
    }
    places_.front() = band.from, places_.back() = band.to;
    for (int i = 1; i <= r.NP; ++i) {
        const double width = std::fabs(1 - std::hypot(r.QR(i), r.PI(i)));
        for (const double widths : {-1.5, -0.6, 0.0, 0.6, 1.5}) {
            add((std::atan2(r.PI(i), r.QR(i)) + widths * width) * hertz);
        }
    }
    std::vector<double> zeros;
    for (int i = 1; i <= r.NZ; ++i) {
        if (r.ZI(i) >= 0 && (r.ZR(i) != 0 || r.ZI(i) != 0)) zeros.push_back(std::atan2(r.ZI(i), r.ZR(i)) * hertz);
    }
    std::ranges::sort(zeros);
    for (std::size_t i = 0; i < zeros.size(); ++i) {
        add(zeros[i]);
        if (i > 0) add((zeros[i - 1] + zeros[i]) / 2);
    }
    std::ranges::sort(places_);
}

void DigitalBand::add(double hertz) {
    if (hertz >= band_.from && hertz <= band_.to) places_.push_back(hertz);
}

namespace {

// A product of 50 squared distances may be beyond a double.
Real squared_distances(const Roots& re, const Roots& im, int count, Complex<double> z) {
    Real product = 1;
    for (int i = 1; i <= count; ++i) {
        const Real x = static_cast<Real>(z.re) - static_cast<Real>(re(i));
        const Real y = static_cast<Real>(z.im) - static_cast<Real>(im(i));
        product *= x * x + y * y;
    }
    return product;
}

}  // namespace

}  // namespace kavrel
