// Digital filters that tests make, random ones among them, and their H: by cascade, by roots, by impulse response.
#pragma once

#include <algorithm>
#include <cmath>
#include <complex>
#include <initializer_list>
#include <numbers>
#include <numeric>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "iir/direct_form.h"
#include "iir/lattice_form.h"
#include "iir/parallel_form.h"
#include "iir/sampled_response.h"
#include "numeric/long_real.h"
#include "tests/support/numbers.h"

namespace kavrel {

using RootList = std::vector<Complex<double>>;  // one member of each pair, imaginary part above 0
using Factors = std::initializer_list<std::pair<double, double>>;
using Point = std::complex<long double>;  // z^-1

// A filter by the factors of its cascade.
inline IirFilter factored_filter(double fs, double front, Factors numerators, Factors denominators) {
    IirFilter filter;
    filter.fs = fs, filter.T = 1 / fs;
    CascadeForm& c = filter.cascade;
    c.CK = front;
    for (const auto& [c1, c2] : numerators) ++c.NNUM, c.C1N(c.NNUM) = c1, c.C2N(c.NNUM) = c2;
    for (const auto& [c1, c2] : denominators) ++c.NDEN, c.C1D(c.NDEN) = c1, c.C2D(c.NDEN) = c2;
    rootsFromFactors(filter);
    return filter;
}

// A filter of 1 Hz by its roots; pairs make factors as they come, real roots two by two.
inline IirFilter filter_of(double level, const RootList& zeros, const RootList& poles) {
    IirFilter filter;
    filter.fs = filter.T = 1;
    filter.roots.ZMULT = filter.cascade.CK = level;
    const auto fill = [](const RootList& list, auto& re, auto& im, int& count, auto& c1, auto& c2, int& factors) {
        int open = 0;  // the factor of a real root without a partner
        for (const auto& [x, y] : list) {
            ++count, re(count) = x, im(count) = y;
            if (y != 0) ++count, re(count) = x, im(count) = -y;
            if (y != 0) ++factors, c1(factors) = -2 * x, c2(factors) = x * x + y * y;
            if (y != 0 || x == 0) continue;
            if (open != 0) c2(open) = -c1(open) * x, c1(open) -= x;
            if (open == 0) ++factors, c1(factors) = -x;
            open = open == 0 ? factors : 0;
        }
    };
    DigitalRoots& r = filter.roots;
    CascadeForm& c = filter.cascade;
    fill(zeros, r.ZR, r.ZI, r.NZ, c.C1N, c.C2N, c.NNUM);
    fill(poles, r.QR, r.PI, r.NP, c.C1D, c.C2D, c.NDEN);
    return filter;
}

// ZMULT/PMULT prod(1 - zero z^-1)/prod(1 - pole z^-1) on an impulse, in long numbers, a pair of roots at a time.
inline std::vector<double> direct_impulse(const DigitalRoots& roots, int samples) {
    std::vector<LongReal> h(static_cast<std::size_t>(samples), LongReal(0));
    h[0] = LongReal(roots.ZMULT) / roots.PMULT;
    const auto pass = [&](const auto& re, const auto& im, int count, bool poles) {
        for (int i = 1; i <= count; i += im(i) == 0 ? 1 : 2) {
            const LongReal x = re(i), y = im(i), c1 = x * (y == 0 ? -1 : -2), c2 = y == 0 ? y : LongReal(x * x + y * y);
            for (std::size_t k = 1; k < h.size(); ++k) {
                const std::size_t n = poles ? k : h.size() - k;
                LongReal sum = c1 * h[n - 1];
                if (n >= 2) sum += c2 * h[n - 2];
                h[n] += poles ? LongReal(-sum) : sum;
            }
        }
    };
    pass(roots.ZR, roots.ZI, roots.NZ, false), pass(roots.QR, roots.PI, roots.NP, true);
    std::vector<double> response;
    for (const LongReal& value : h) response.push_back(static_cast<double>(value));
    return response;
}

inline double peak_of(const std::vector<double>& response) {
    const auto [least, largest] = std::ranges::minmax(response);
    return std::max(largest, -least);
}

// Poles inside the circle, up to 0.9, each pair with an angle of its own, of some one or two are real; zeros anywhere
// up to 1.2, some at 0. Its energy is 1/4, which a lattice takes.
inline IirFilter random_filter(RandomNumbers& random, int degree) {
    const auto roots = [&](int count, double least, double reach) {
        RootList list;
        const int reals = count % 2 == 1 ? 1 : random.coin() && count > 0 ? 2 : 0;
        const int pairs = (count - reals) / 2;
        int stride = pairs * 5 / 8;  // those of near angles far from one another, as a cascade has them
        while (pairs > 1 && std::gcd(pairs, stride) > 1) ++stride;
        for (int n = 0; n < pairs; ++n) {
            const double angle = std::numbers::pi * (n * stride % pairs + random.between(0.2, 0.8)) / pairs;
            const auto root = std::polar(random.between(least, reach), angle);
            list.push_back({root.real(), root.imag()});
        }
        for (int n = 0; n < reals; ++n)
            list.insert(list.begin() + random.integer(0, pairs), {(n == 0 ? 1 : -1) * random.between(least, reach), 0});
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

inline void make_forms(IirFilter& filter) {
    EXPECT_EQ(makeParallel(filter).text + makeDirect(filter).text, "");
    EXPECT_TRUE(makeLattice(filter).outcome == LatticeOutcome::made);
}

// Puts scale factors into the sections; H stays.
inline void scale(IirFilter& filter, RandomNumbers& random) {
    CascadeForm& c = filter.cascade;
    for (int k = 1; k <= c.NNUM; ++k) {
        c.SC(k) = random.spread(0.1, 10);
        c.C1N(k) *= c.SC(k), c.C2N(k) *= c.SC(k), c.CK /= c.SC(k);
    }
    c.SCALED = true;
}

// The largest deviation of a form's impulse response from the true one, over its peak.
inline double deviation(const IirFilter& filter, Implementation form, const std::vector<double>& truth) {
    Unwatched watcher;
    const int late = form == Implementation::lattice ? 1 : 0;
    const auto samples = static_cast<long long>(truth.size());
    const SampleGrid grid{.first = 1, .last = samples, .every = 1};
    const TimeRows rows = sampled_response(filter, form, AllpassOutput::filter, {}, grid, watcher).rows;
    double worst = rows.count == samples ? 0 : HUGE_VAL;
    for (int i = 1; i + late <= rows.count; ++i) {
        const double gap = std::fabs(rows.impulse(i + late) - truth[static_cast<std::size_t>(i) - 1]);
        worst = gap <= worst ? worst : gap;  // a gap that is no number too
    }
    return worst / peak_of(truth);
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
        const Point x = std::polar(1.0L, std::numbers::pi_v<long double> * i / -200);
        const Point value = first(x);
        gap = std::max(gap, std::abs(value - second(x)));
        peak = std::max(peak, std::abs(value));
    }
    return static_cast<double>(gap / peak);
}
inline double roots_against_cascade(const IirFilter& filter) {
    return largest_gap([&](Point x) { return h_of_cascade(filter, x); },
                       [&](Point x) { return h_of_roots(filter, x); });
}

}  // namespace kavrel
