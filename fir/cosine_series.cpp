#include "fir/cosine_series.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <numbers>
#include <type_traits>

#include <Eigen/QR>

#include "numeric/lanes.h"

namespace kavrel {

namespace {

using Wide = long double;
template <class Real>
using Samples = std::array<Real, max_fir_functions + 2>;

struct Variable {  // x' = aa x + bb runs over -1 to 1 where x runs over the grid
    double aa = 1, bb = 0;
};

Variable choose_variable(const FirRange& range, int nfcns);
template <class Real>
void sample(const Interpolant<Real>& a, Variable v, const Samples<Real>& cosine, int nfcns, Samples<Real>& values);
template <class Real>
void inverse_transform(const Samples<Real>& cosine, const Samples<Real>& values, int nfcns,
                       Samples<Real>& coefficients);
template <class Real>
void back_to_cosines(Variable v, int nfcns, Samples<Real>& coefficients);
template <class Real>
CosineSeries rounded(const Samples<Real>& coefficients, int nfcns);
template <class Real>
bool reproduces(std::span<const FirPoint> extremal, const Interpolant<Real>& a, const CosineSeries& alpha,
                double scale);
Samples<Wide> least_squares(const Interpolant<Wide>& a);
template <class Real, std::size_t count>
std::array<Real, count> evaluate(const CosineSeries& alpha, int nfcns, const std::array<Real, count>& x);

// Largest error at point(1) to point(count).
template <class Real, class Point>
Real largest_of(int count, const Point& point, const CosineSeries& alpha, int nfcns) {
    constexpr std::size_t block = 8;
    Real worst = 0;
    for (int k = 1; k <= count; k += static_cast<int>(block)) {
        std::array<Real, block> x{};
        const auto at = [&](std::size_t m) { return point(std::min(k + static_cast<int>(m), count)); };
        for (std::size_t m = 0; m < block; ++m) x[m] = at(m).X;
        const auto a = evaluate<Real, block>(alpha, nfcns, x);
        for (std::size_t m = 0; m < block; ++m) {
            const FirPoint p = at(m);
            const Real e = std::abs(a[m] - static_cast<Real>(p.DES)) * static_cast<Real>(p.WT);
            if (!(e <= worst)) worst = e;
        }
        if (std::isnan(worst)) break;
    }
    return worst;
}

}  // namespace

// A is sampled at the NFCNS abscissae x' = cos(2 pi i / n), n = 2 NFCNS - 1, and transformed. Where the grid covers
// only a part of 0 to 0.5, A may be huge in the rest: there x' is the grid's own variable, and its series is rewritten
// in x. Samples between the bands lose as many digits as the attenuation has: what does not lead back to A on the
// extremal points is solved for on them.
template <class Real>
CosineSeries cosine_series(const FirRange& range, std::span<const FirPoint> extremal, const Interpolant<Real>& a,
                           double scale) {
    const int nfcns = a.count() - 1, n = 2 * nfcns - 1;
    Samples<Real> cosine{}, values{}, coefficients{};
    for (int i = 0; i < nfcns; ++i) {
        cosine[static_cast<std::size_t>(i)] = std::cos(2 * std::numbers::pi_v<Real> * static_cast<Real>(i) / n);
    }
    const Variable v = choose_variable(range, nfcns);
    sample(a, v, cosine, nfcns, values);
    inverse_transform(cosine, values, nfcns, coefficients);
    if (v.aa != 1 || v.bb != 0) back_to_cosines(v, nfcns, coefficients);
    const CosineSeries transformed = rounded(coefficients, nfcns);
    if (reproduces(extremal, a, transformed, scale)) return transformed;
    if constexpr (std::is_same_v<Real, Wide>) {
        return rounded(least_squares(a), nfcns);
    } else {
        Interpolant<Wide> wide;
        return wide.fit(extremal, a.free_level()) ? cosine_series(range, extremal, wide, scale) : transformed;
    }
}

template <class Real>
Real largest_error(const FirGrid& grid, const CosineSeries& alpha, int nfcns) {
    return largest_of<Real>(
        grid.NGRID, [&grid](int k) { return grid.point(k); }, alpha, nfcns);
}

template <class Real>
Real largest_error(std::span<const FirPoint> points, const CosineSeries& alpha, int nfcns) {
    const auto point = [&points](int k) { return points[static_cast<std::size_t>(k - 1)]; };
    return largest_of<Real>(static_cast<int>(points.size()), point, alpha, nfcns);
}

template CosineSeries cosine_series(const FirRange&, std::span<const FirPoint>, const Interpolant<double>&, double);
template CosineSeries cosine_series(const FirRange&, std::span<const FirPoint>, const Interpolant<Wide>&, double);
template double largest_error(const FirGrid&, const CosineSeries&, int);
template Wide largest_error(const FirGrid&, const CosineSeries&, int);
template double largest_error(std::span<const FirPoint>, const CosineSeries&, int);
template Wide largest_error(std::span<const FirPoint>, const CosineSeries&, int);

namespace {

Variable choose_variable(const FirRange& range, int nfcns) {
    if (nfcns < 4 || (range.first.f < 0.01 && range.last.f > 0.49)) return {};
    const double high = range.first.X, low = range.last.X;
    return {.aa = 2 / (high - low), .bb = -(high + low) / (high - low)};
}

// The samples and the extremal abscissae both descend.
template <class Real>
void sample(const Interpolant<Real>& a, Variable v, const Samples<Real>& cosine, int nfcns, Samples<Real>& values) {
    constexpr Real coincidence = static_cast<Real>(1.0e-12);
    int j = 1;
    for (std::size_t i = 0; i < static_cast<std::size_t>(nfcns); ++i) {
        const Real x = (cosine[i] - static_cast<Real>(v.bb)) / static_cast<Real>(v.aa);
        while (j < a.count() && a.abscissa(j) - x >= coincidence) ++j;
        values[i] = std::abs(a.abscissa(j) - x) < coincidence ? a.ordinate(j) : a(x);
    }
}

// c(k) = (2 / n) (v(0) + 2 sum of v(i) cos(2 pi i k / n), i = 1..NFCNS-1), half of it for k = 0
template <class Real>
void inverse_transform(const Samples<Real>& cosine, const Samples<Real>& values, int nfcns,
                       Samples<Real>& coefficients) {
    const int n = 2 * nfcns - 1;
    for (int k = 0; k < nfcns; ++k) {
        Real sum = 0;
        for (int i = 1, m = k; i < nfcns; ++i) {  // m = i k modulo n; cos(2 pi m / n) is even about n / 2
            sum += values[static_cast<std::size_t>(i)] * cosine[static_cast<std::size_t>(std::min(m, n - m))];
            m += k;
            if (m >= n) m -= n;
        }
        const Real scale = k == 0 ? 1 : 2;
        coefficients[static_cast<std::size_t>(k)] = scale * (2 * sum + values[0]) / static_cast<Real>(n);
    }
}

// Clenshaw's recurrence b(k) = c(k) + 2 x' b(k+1) - b(k+2) with x' = aa x + bb and the b held as cosine series in x,
// where x cos(i w) = (cos((i+1) w) + cos((i-1) w)) / 2. The sum is c(0) + x' b(1) - b(2).
template <class Real>
void back_to_cosines(Variable v, int nfcns, Samples<Real>& coefficients) {
    const Real aa = static_cast<Real>(v.aa), bb = static_cast<Real>(v.bb), half = static_cast<Real>(0.5);
    Samples<Real> b1{}, b2{}, b{};
    for (int k = nfcns - 1; k >= 0; --k) {
        const Real twice = k == 0 ? 1 : 2;
        const auto degree = static_cast<std::size_t>(nfcns - 1 - k);  // of the new b; b1 and b2 are 0 from there on
        for (std::size_t i = 0; i <= degree; ++i) {
            const Real lower = i == 0 ? 0 : (i == 1 ? 2 : 1) * b1[i - 1];
            b[i] = twice * (half * aa * (lower + b1[i + 1]) + bb * b1[i]) - b2[i];
        }
        b[0] += coefficients[static_cast<std::size_t>(k)];
        b2 = b1;
        b1 = b;
    }
    coefficients = b1;
}

template <class Real>
CosineSeries rounded(const Samples<Real>& coefficients, int nfcns) {
    CosineSeries alpha;
    for (int i = 1; i <= nfcns; ++i) alpha(i) = static_cast<double>(coefficients[static_cast<std::size_t>(i - 1)]);
    return alpha;
}

// Do the coefficients lead back to A on the extremal points, as closely as doubles can? Then they do everywhere.
template <class Real>
bool reproduces(std::span<const FirPoint> extremal, const Interpolant<Real>& a, const CosineSeries& alpha,
                double scale) {
    constexpr std::size_t block = 8;
    const double tolerance = std::max(1e-6 * static_cast<double>(a.deviation()), 2 * tap_rounding * scale);
    for (int j = 1; j <= a.count(); j += static_cast<int>(block)) {
        std::array<Real, block> x{};
        const auto node = [&](std::size_t m) { return std::min(j + static_cast<int>(m), a.count()); };
        for (std::size_t m = 0; m < block; ++m) x[m] = a.abscissa(node(m));
        const auto at = evaluate<Real, block>(alpha, a.count() - 1, x);
        for (std::size_t m = 0; m < block; ++m) {
            const double weight = extremal[static_cast<std::size_t>(node(m) - 1)].WT;
            const Real off = std::abs(at[m] - a.ordinate(node(m))) * static_cast<Real>(weight);
            if (!(off <= static_cast<Real>(tolerance))) return false;
        }
    }
    return true;
}

// The coefficients of smallest norm that meet A on the extremal points. The points lie in the bands; a combination of
// cosines that lives between the bands only is not determined by them in finite arithmetic, and is left out.
Samples<Wide> least_squares(const Interpolant<Wide>& a) {
    using Matrix = Eigen::Matrix<Wide, Eigen::Dynamic, Eigen::Dynamic>;
    using Vector = Eigen::Matrix<Wide, Eigen::Dynamic, 1>;
    Matrix cosines(a.count(), a.count() - 1);
    Vector y(a.count());
    for (int j = 0; j < a.count(); ++j) {
        const Wide w = std::acos(a.abscissa(j + 1));
        y(j) = a.ordinate(j + 1);
        for (int k = 0; k < a.count() - 1; ++k) cosines(j, k) = std::cos(static_cast<Wide>(k) * w);
    }
    Eigen::CompleteOrthogonalDecomposition<Matrix> decomposition(a.count(), a.count() - 1);
    decomposition.setThreshold(1e-18L);
    decomposition.compute(cosines);
    const Vector c = decomposition.solve(y);
    Samples<Wide> coefficients{};
    std::copy(c.begin(), c.end(), coefficients.begin());
    return coefficients;
}

// sum of ALPHA(i) cos((i-1) w) at x = cos w, by Clenshaw's recurrence, for several abscissae side by side
template <class Real, std::size_t count>
std::array<Real, count> evaluate(const CosineSeries& alpha, int nfcns, const std::array<Real, count>& x) {
    using Lanes = LanesOf<Real>;
    using Row = std::array<typename Lanes::Type, count / Lanes::count>;
    Row at{}, twice{}, b1{}, b2{};
    for (std::size_t m = 0; m < at.size(); ++m) at[m] = Lanes::load(&x[m * Lanes::count]), twice[m] = at[m] + at[m];
    for (int i = nfcns; i > 1; --i) {
        const Real c = static_cast<Real>(alpha(i));
#pragma GCC unroll 4
        for (std::size_t m = 0; m < at.size(); ++m) {
            const auto b = twice[m] * b1[m] + (c - b2[m]);
            b2[m] = b1[m];
            b1[m] = b;
        }
    }
    const Real first = static_cast<Real>(alpha(1));
    for (std::size_t m = 0; m < at.size(); ++m) b1[m] = first + at[m] * b1[m] - b2[m];
    std::array<Real, count> sums{};
    std::memcpy(sums.data(), b1.data(), sizeof sums);
    return sums;
}

}  // namespace

}  // namespace kavrel
