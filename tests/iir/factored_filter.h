// Digital filters by the factors of their cascade, and their H by cascade and by roots.
#pragma once

#include <algorithm>
#include <cmath>
#include <complex>
#include <initializer_list>
#include <numbers>
#include <utility>

#include "iir/iir_filter.h"
#include "tests/support/numbers.h"

namespace kavrel {

using Factors = std::initializer_list<std::pair<double, double>>;
using Point = std::complex<long double>;  // z^-1

// A filter by the factors of its cascade.
inline IirFilter factored_filter(double fs, double front, Factors numerators, Factors denominators) {
    IirFilter filter;
    filter.fs = fs;
    filter.T = 1 / fs;
    CascadeForm& c = filter.cascade;
    c.CK = front;
    for (const auto& [c1, c2] : numerators) ++c.NNUM, c.C1N(c.NNUM) = c1, c.C2N(c.NNUM) = c2;
    for (const auto& [c1, c2] : denominators) ++c.NDEN, c.C1D(c.NDEN) = c1, c.C2D(c.NDEN) = c2;
    rootsFromFactors(filter);
    return filter;
}

// Zeros on the circle and poles within, real ones among them.
inline IirFilter random_cascade(RandomNumbers& random, int sections) {
    IirFilter filter;
    filter.fs = random.spread(1e2, 1e6);
    filter.T = 1 / filter.fs;
    CascadeForm& c = filter.cascade;
    c.CK = random.spread(1e-3, 10);
    c.NNUM = random.integer(0, sections);
    c.NDEN = sections;
    const auto pair = [&](double radius, double& c1, double& c2) {
        const bool real = random.integer(0, 3) == 0;
        const double other = radius * random.between(-1, 1);
        const double angle = random.between(0.1, 3);
        c1 = real ? -radius - other : -2 * radius * std::cos(angle);
        c2 = real ? radius * other : radius * radius;
        if (random.integer(0, 4) == 0) c1 = -radius, c2 = 0;
    };
    for (int k = 1; k <= c.NNUM; ++k) pair(1, c.C1N(k), c.C2N(k));
    for (int k = 1; k <= c.NDEN; ++k) pair(random.between(0.2, 0.98), c.C1D(k), c.C2D(k));
    rootsFromFactors(filter);
    return filter;
}

// Puts scale factors into the sections; H stays.
inline void scale(IirFilter& filter, RandomNumbers& random) {
    CascadeForm& c = filter.cascade;
    for (int k = 1; k <= c.NNUM; ++k) {
        c.SC(k) = random.spread(0.1, 10);
        c.C1N(k) *= c.SC(k), c.C2N(k) *= c.SC(k);
        c.CK /= c.SC(k);
    }
    c.SCALED = true;
}

inline Point point_at(long double part_of_fs) {
    return std::polar(1.0L, -2 * std::numbers::pi_v<long double> * part_of_fs);
}

// c0 + c1 x + c2 x^2.
inline Point quadratic(long double c0, long double c1, long double c2, Point x) { return c0 + x * (c1 + x * c2); }

// H at a point z^-1.
inline Point h_of_cascade(const IirFilter& filter, Point x) {
    const CascadeForm& c = filter.cascade;
    Point h = c.CK;
    for (int k = 1; k <= section_count(c); ++k) {
        if (k <= c.NNUM) h *= quadratic(c.SC(k), c.C1N(k), c.C2N(k), x);
        if (k <= c.NDEN) h /= quadratic(1, c.C1D(k), c.C2D(k), x);
    }
    return h;
}
inline Point h_of_roots(const IirFilter& filter, Point x) {
    const DigitalRoots& r = filter.roots;
    Point h = r.ZMULT / r.PMULT;
    for (int i = 1; i <= r.NZ; ++i) h *= 1.0L - x * Point(r.ZR(i), r.ZI(i));
    for (int i = 1; i <= r.NP; ++i) h /= 1.0L - x * Point(r.QR(i), r.PI(i));
    return h;
}

// The largest difference of two functions on the unit circle, in units of the largest magnitude of the first.
template <class First, class Second>
double largest_gap(const First& first, const Second& second) {
    long double gap = 0, peak = 0;
    for (int i = 0; i <= 200; ++i) {
        const Point x = point_at(i / 400.0L);
        const Point value = first(x);
        gap = std::max(gap, std::abs(value - second(x)));
        peak = std::max(peak, std::abs(value));
    }
    return static_cast<double>(gap / peak);
}

// What the last digits of the coefficients may come to: they matter where the terms of a denominator nearly cancel.
inline double rounding(const IirFilter& filter) {
    const CascadeForm& c = filter.cascade;
    long double sum = 1;
    for (int k = 1; k <= c.NDEN; ++k) {
        long double least = 1;
        for (int i = 0; i <= 200; ++i)
            least = std::min(least, std::abs(quadratic(1, c.C1D(k), c.C2D(k), point_at(i / 400.0L))));
        sum += (1 + std::fabs(c.C1D(k)) + std::fabs(c.C2D(k))) / least;
    }
    return static_cast<double>(1e-15L * sum);
}

inline double roots_against_cascade(const IirFilter& filter) {
    return largest_gap([&](Point x) { return h_of_cascade(filter, x); },
                       [&](Point x) { return h_of_roots(filter, x); });
}

}  // namespace kavrel
