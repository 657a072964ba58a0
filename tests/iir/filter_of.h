// Digital filters by their roots, random ones among them, and their impulse responses in long numbers.
#pragma once

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <vector>

#include "iir/iir_filter.h"
#include "numeric/long_real.h"
#include "tests/support/numbers.h"

namespace kavrel {

using RootList = std::vector<Complex<double>>;  // one member of each pair, imaginary part above 0

namespace filter_parts {

inline void fill_roots(const RootList& list, Table<double, 51>& re, Table<double, 51>& im, int& count) {
    const auto append = [&](double x, double y) { ++count, re(count) = x, im(count) = y; };
    for (const Complex<double> r : list) {
        append(r.re, r.im);
        if (r.im != 0) append(r.re, -r.im);
    }
}

// Pairs make factors as they come, real roots two by two.
inline void fill_factors(const RootList& list, Table<double, 25>& c1, Table<double, 25>& c2, int& count) {
    const auto append = [&](double a1, double a2) { ++count, c1(count) = a1, c2(count) = a2; };
    std::vector<double> reals;
    for (const Complex<double> r : list) {
        if (r.im != 0) append(-2 * r.re, r.re * r.re + r.im * r.im);
        if (r.im == 0 && r.re != 0) reals.push_back(r.re);
    }
    for (std::size_t i = 0; i + 1 < reals.size(); i += 2) append(-(reals[i] + reals[i + 1]), reals[i] * reals[i + 1]);
    if (reals.size() % 2 == 1) append(-reals.back(), 0);
}

}  // namespace filter_parts

// A filter of 1 Hz: cascade, roots and no other form.
inline IirFilter filter_of(double level, const RootList& zeros, const RootList& poles) {
    IirFilter filter;
    filter.fs = filter.T = 1;
    filter.roots.ZMULT = filter.cascade.CK = level;
    filter_parts::fill_roots(zeros, filter.roots.ZR, filter.roots.ZI, filter.roots.NZ);
    filter_parts::fill_roots(poles, filter.roots.QR, filter.roots.PI, filter.roots.NP);
    filter_parts::fill_factors(zeros, filter.cascade.C1N, filter.cascade.C2N, filter.cascade.NNUM);
    filter_parts::fill_factors(poles, filter.cascade.C1D, filter.cascade.C2D, filter.cascade.NDEN);
    return filter;
}

// ZMULT/PMULT prod(1 - zero z^-1)/prod(1 - pole z^-1) on an impulse, a pair of roots at a time.
inline std::vector<double> direct_impulse(const DigitalRoots& roots, int samples) {
    const auto n = static_cast<std::size_t>(samples);
    std::vector<LongReal> h(n, LongReal(0));
    h[0] = LongReal(roots.ZMULT) / roots.PMULT;
    const auto factors = [&](const Table<double, 51>& re, const Table<double, 51>& im, int count, auto&& pass) {
        for (int i = 1; i <= count; ++i) {
            const LongReal x = re(i), y = im(i);
            im(i) == 0 ? pass(LongReal(-x), LongReal(0)) : pass(LongReal(-2 * x), LongReal(x * x + y * y));
            i += im(i) != 0;
        }
    };
    const auto earlier = [&](std::size_t i, std::size_t back) { return i < back ? LongReal(0) : h[i - back]; };
    factors(roots.ZR, roots.ZI, roots.NZ, [&](const LongReal& c1, const LongReal& c2) {
        for (std::size_t i = n; i-- > 0;) h[i] += c1 * earlier(i, 1) + c2 * earlier(i, 2);
    });
    factors(roots.QR, roots.PI, roots.NP, [&](const LongReal& c1, const LongReal& c2) {
        for (std::size_t i = 0; i < n; ++i) h[i] -= c1 * earlier(i, 1) + c2 * earlier(i, 2);
    });
    std::vector<double> response;
    for (const LongReal& value : h) response.push_back(static_cast<double>(value));
    return response;
}

inline double peak_of(const std::vector<double>& response) {
    double peak = 0;
    for (const double value : response) peak = std::max(peak, std::fabs(value));
    return peak;
}

// Poles inside the circle, up to 0.9, each pair with an angle of its own, of some one or two are real; zeros anywhere
// up to 1.6, some at 0. Its energy is 1/4, which a lattice takes.
inline IirFilter random_filter(RandomNumbers& random, int degree) {
    const auto roots = [&](int count, double least, double reach) {
        RootList list;
        const int reals = count % 2 == 1 ? 1 : random.coin() && count > 0 ? 2 : 0;
        const int pairs = (count - reals) / 2;
        int stride = pairs * 5 / 8;  // those of near angles far from one another, as a cascade has them
        while (pairs > 1 && std::gcd(pairs, stride) > 1) ++stride;
        for (int n = 0; n < pairs; ++n) {
            const double angle = std::numbers::pi * (n * stride % pairs + random.between(0.2, 0.8)) / pairs;
            const double radius = random.between(least, reach);
            list.push_back({radius * std::cos(angle), radius * std::sin(angle)});
        }
        for (int n = 0; n < reals; ++n) {
            list.insert(list.begin() + random.integer(0, pairs), {(n == 0 ? 1 : -1) * random.between(least, reach), 0});
        }
        return list;
    };
    RootList zeros = roots(random.coin() ? degree : random.integer(0, degree), 0.5, 1.2);
    if (!zeros.empty() && zeros.back().im == 0 && random.coin()) zeros.back().re = 0;
    IirFilter filter = filter_of(1, zeros, roots(degree, 0.7, 0.9));
    double energy = 0;
    for (const double value : direct_impulse(filter.roots, 300)) energy += value * value;
    filter.roots.ZMULT = filter.cascade.CK = 0.5 / std::sqrt(energy);
    return filter;
}

}  // namespace kavrel
