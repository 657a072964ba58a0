#include "fir/exchange.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <eigen3/Eigen/QR>
#include <limits>
#include <numbers>
#include <type_traits>
#include <vector>

namespace kavrel {

namespace {

constexpr int max_extrema = max_fir_functions + 1;

// Passes in which the points climb to the next peak only; after them the whole grid is looked at.
constexpr int climbing_passes = 20;

// Passes that double is given; what has not converged then may be chasing its rounding.
constexpr int double_passes = 30;

// Below this part of the scale of the task a deviation leaves double too few digits: the pass is made in long double.
constexpr double deep_deviation = 1e-8;

// Rounding of a tap, over its size.
constexpr double tap_rounding = std::numeric_limits<double>::epsilon();

// Measured error over deviation from which on the taps are said to miss the best approximation.
constexpr double missed = 1.1;

// Sums over the extrema run in two lanes where the hardware has them, in every build the same.
template <class Real>
struct LanesOf {
    using Type = Real;
    static constexpr std::size_t count = 1;
    static Real sum(Type a) { return a; }
    static Type load(const Real* at) { return *at; }
};
template <>
struct LanesOf<double> {
    using Type = double __attribute__((vector_size(16)));
    static constexpr std::size_t count = 2;
    static double sum(Type a) { return a[0] + a[1]; }
    static Type load(const double* at) { return Type{at[0], at[1]}; }
};

struct Extrema {
    Table<int, max_extrema + 1> at;  // [j] grid index, ascending; [count+1] = NGRID + 1, a sentinel
    int count = 0;                   // NFCNS + 1
};

// A(x) by its values at the extremal abscissae.
template <class Real>
class Interpolant {
public:
    // Deviation and interpolant with equal alternating error on `extrema`. False when points coincide.
    [[nodiscard]] bool fit(const FirGrid& grid, const Extrema& extrema);
    [[nodiscard]] Real operator()(Real x) const;

    [[nodiscard]] Real deviation() const { return dev; }
    [[nodiscard]] int first_sign() const { return nu; }  // sign of the error A - DES at the first point
    [[nodiscard]] int count() const { return nodes; }
    [[nodiscard]] Real abscissa(int j) const { return x_node[static_cast<std::size_t>(j - 1)]; }
    [[nodiscard]] Real ordinate(int j) const { return y[static_cast<std::size_t>(j - 1)]; }

private:
    using Lanes = LanesOf<Real>;
    using Row = std::array<Real, (max_extrema + Lanes::count - 1) / Lanes::count * Lanes::count>;

    void lagrange_weights();
    [[nodiscard]] Real at_node(Real x) const;

    int nodes = 0, nu = 1;
    std::size_t padded = 0;
    Real dev = 0;
    alignas(16) Row x_node{}, ad{}, y{};  // abscissae, Lagrange weights, ordinates; the padding has weight 0
};

// One pass in the arithmetic of Real: deviation and interpolant on the extremal points, then the search for the next.
template <class Real>
class Search {
public:
    Search(const FirGrid& on_grid, Extrema& extrema, double scale)
        : grid(on_grid),
          points(extrema),
          iext(extrema.at),
          nz(extrema.count),
          flat(static_cast<Real>(scale * (std::is_same_v<Real, double> ? 4 : 0.5) * tap_rounding)) {}

    [[nodiscard]] bool fit() { return interpolant.fit(grid, points); }
    [[nodiscard]] bool improve(bool whole_grid);  // false when no error exceeds the deviation
    [[nodiscard]] const Interpolant<Real>& approximation() const { return interpolant; }
    [[nodiscard]] Real rounding() const { return static_cast<Real>(nz) * flat; }  // uncertainty of the deviation

private:
    struct Peak {
        int k;       // grid index, 0: none
        Real value;  // weighted error there
    };
    struct Run {  // neighbouring grid points with errors of one sign
        int k;    // where the error is largest
        int sign;
        Real value;  // its size there
    };

    [[nodiscard]] Real error(int k) const {
        return (interpolant(static_cast<Real>(grid.X(k))) - static_cast<Real>(grid.DES(k))) *
               static_cast<Real>(grid.WT(k));
    }
    [[nodiscard]] int sign_at(int j) const { return j % 2 == 1 ? interpolant.first_sign() : -interpolant.first_sign(); }
    [[nodiscard]] Peak climb(int k, Real value, int step, int stop, int sign) const;
    [[nodiscard]] Peak first_above(Real level, int from, int step, int stop, int sign) const;
    Real move_to_peaks(Real& first_value, Real& last_value);
    bool exchange_ends(int lowest, int highest, Real first_value, Real last_value);
    bool exchange_all();
    [[nodiscard]] std::vector<Run> runs() const;

    const FirGrid& grid;
    Extrema& points;
    Table<int, max_extrema + 1>& iext;
    const int nz;
    const Real flat;  // differences of the error up to this size are rounding
    Interpolant<Real> interpolant;
};

double scale_of(const FirGrid& grid);
Extrema spread_evenly(const FirGrid& grid, int nfcns);
Extrema spread_well(const FirGrid& grid, int nfcns);

using Wide = long double;
template <class Real>
using Series = std::array<Real, max_fir_functions + 2>;

struct Variable {  // x' = aa x + bb runs over -1 to 1 where x runs over the grid
    double aa = 1, bb = 0;
};
template <class Real>
void cosine_series(const FirGrid& grid, const Interpolant<Real>& a, double scale, ExchangeResult& result);
Variable choose_variable(const FirGrid& grid, int nfcns);
template <class Real>
void sample(const Interpolant<Real>& a, Variable v, const Series<Real>& cosine, int nfcns, Series<Real>& values);
template <class Real>
void inverse_transform(const Series<Real>& cosine, const Series<Real>& values, int nfcns, Series<Real>& coefficients);
template <class Real>
void back_to_cosines(Variable v, int nfcns, Series<Real>& coefficients);
template <class Real>
bool reproduces(const FirGrid& grid, const Interpolant<Real>& a, const ExchangeResult& result, double scale);
Series<Wide> least_squares(const Interpolant<Wide>& a);
template <class Real>
Real largest_error(const FirGrid& grid, const ExchangeResult& result, int nfcns);

}  // namespace

ExchangeStatus exchange(const FirGrid& grid, int nfcns, ExchangeWatcher& watcher, ExchangeResult& result) {
    result = {};
    const auto ends_as = [&result](ExchangeStatus status) { return result.status = status; };
    if (nfcns < 1 || nfcns > max_fir_functions || grid.NGRID <= nfcns || grid.NGRID > max_fir_grid) {
        return ends_as(ExchangeStatus::degenerate);
    }

    const double scale = scale_of(grid);
    Extrema extrema = spread_evenly(grid, nfcns);
    Search<double> narrow(grid, extrema, scale);
    Search<Wide> wide(grid, extrema, scale);
    ExchangeStatus status = ExchangeStatus::limit_reached;
    bool distrusted = false, deep = false;  // double found too short, for all passes and for this one
    Wide previous = -1;
    while (status == ExchangeStatus::limit_reached && result.iterations < max_exchange_passes) {
        ++result.iterations;
        if (!watcher.pass(result.iterations)) return ends_as(ExchangeStatus::stopped);
        const auto too_deep = [&] {
            return distrusted || result.iterations > double_passes || !narrow.fit() ||
                   !(narrow.approximation().deviation() >= deep_deviation * scale);
        };
        deep = too_deep();
        if (deep && previous < 0) {
            extrema = spread_well(grid, nfcns);
            deep = too_deep();
        }
        std::copy_n(extrema.at.begin(), extrema.count, result.IEXT.begin());
        if (deep && !wide.fit()) return ends_as(ExchangeStatus::degenerate);
        if (deep && previous < 0 && wide.approximation().deviation() < tap_rounding * scale) {
            // nothing to level: taken as it stands if it is good to a few roundings
            cosine_series(grid, wide.approximation(), scale, result);
            result.measured = static_cast<double>(largest_error<Wide>(grid, result, nfcns));
            if (result.measured < 100 * tap_rounding * scale) {
                result.DEV = static_cast<double>(wide.approximation().deviation());
                return ends_as(ExchangeStatus::deviation_fell);
            }
        }
        const Wide deviation = deep ? wide.approximation().deviation() : narrow.approximation().deviation();
        const bool whole_grid = result.iterations > climbing_passes;
        const bool fell = previous - deviation > (deep ? wide.rounding() : narrow.rounding());
        if (fell && !deep) {
            distrusted = true;
            previous = -1;
            continue;
        }
        if (fell) {
            status = ExchangeStatus::deviation_fell;
        } else if (!(deep ? wide.improve(whole_grid) : narrow.improve(whole_grid))) {
            status = ExchangeStatus::converged;
        }
        previous = deviation;
    }

    result.DEV = static_cast<double>(previous);
    if (deep) {
        cosine_series(grid, wide.approximation(), scale, result);
        result.measured = static_cast<double>(largest_error<Wide>(grid, result, nfcns));
    } else {
        cosine_series(grid, narrow.approximation(), scale, result);
        result.measured = largest_error<double>(grid, result, nfcns);
    }
    if (!std::isfinite(result.measured)) {
        result.ALPHA = {};
        return ends_as(ExchangeStatus::degenerate);
    }
    if (status == ExchangeStatus::converged && result.measured > missed * result.DEV) {
        status = ExchangeStatus::deviation_fell;
    }
    return ends_as(status);
}

HalfResponse impulse_response(const FirPlan& plan, const ExchangeResult& result) {
    const auto& alpha = result.ALPHA;
    const int nfcns = plan.NFCNS, nz = nfcns + 1;
    const auto above = [&](int i) { return i <= nfcns ? alpha(i) : 0.0; };
    HalfResponse h;
    if (plan.NEG == 0 && plan.NODD == 1) {
        for (int j = 1; j < nfcns; ++j) h(j) = 0.5 * alpha(nz - j);
        h(nfcns) = alpha(1);
        return h;
    }
    const double sign = plan.NEG == 0 ? 1 : -1;
    const int apart = plan.NEG == 1 && plan.NODD == 1 ? 2 : 1;
    for (int j = 1; j < nfcns; ++j) h(j) = 0.25 * (alpha(nz - j) + sign * above(nz - j + apart));
    h(nfcns) = 0.5 * alpha(1) + sign * 0.25 * above(1 + apart);
    return h;
}

namespace {

// Size of the numbers that the weighted errors are differences of. The mean, since DES / Q grows beyond all bounds next
// to a zero of Q.
double scale_of(const FirGrid& grid) {
    double sum = 0, weight = 0;
    for (int k = 1; k <= grid.NGRID; ++k) {
        sum += std::abs(grid.DES(k));
        weight = std::max(weight, grid.WT(k));
    }
    return weight * sum / grid.NGRID;
}

Extrema spread_evenly(const FirGrid& grid, int nfcns) {
    Extrema extrema{.at = {}, .count = nfcns + 1};
    const double spacing = static_cast<double>(grid.NGRID - 1) / nfcns;
    for (int j = 1; j <= nfcns; ++j) extrema.at(j) = static_cast<int>((j - 1) * spacing + 1);
    extrema.at(nfcns + 1) = grid.NGRID;
    extrema.at(nfcns + 2) = grid.NGRID + 1;
    return extrema;
}

// Points between which no polynomial can rise much above its values on them (F. Leja, 1957): each is where the product
// of the distances to those before is largest. Evenly spread ones let it rise by up to 2^NFCNS next to the edges of the
// bands, and the deviation on them may lie below all rounding.
Extrema spread_well(const FirGrid& grid, int nfcns) {
    Extrema extrema{.at = {}, .count = nfcns + 1};
    std::vector<double> product(static_cast<std::size_t>(grid.NGRID), 1.0);
    int k = 1;
    for (int j = 1; j <= extrema.count; ++j) {
        extrema.at(j) = k;
        const double normalise = 1 / product[static_cast<std::size_t>(k - 1)], x = grid.X(k);
        double largest = -1;
        for (int i = 1; i <= grid.NGRID; ++i) {
            double& p = product[static_cast<std::size_t>(i - 1)];
            p *= std::abs(grid.X(i) - x) * normalise;
            if (p > largest) largest = p, k = i;
        }
    }
    std::sort(extrema.at.begin(), extrema.at.begin() + extrema.count);
    extrema.at(nfcns + 2) = grid.NGRID + 1;
    return extrema;
}

// ---------------------------------------------------------------------------------------------------- interpolation

template <class Real>
bool Interpolant<Real>::fit(const FirGrid& grid, const Extrema& extrema) {
    nodes = extrema.count;
    const auto n = static_cast<std::size_t>(nodes);
    padded = (n + Lanes::count - 1) / Lanes::count * Lanes::count;
    for (std::size_t j = 0; j < n; ++j) x_node[j] = grid.X(extrema.at(static_cast<int>(j) + 1));
    for (std::size_t j = n; j < padded; ++j) x_node[j] = 4, ad[j] = 0, y[j] = 0;
    lagrange_weights();

    // DES + alternating DEV / WT is a polynomial of degree nodes - 2: its divided difference over all nodes is zero
    Real dnum = 0, dden = 0, sign = 1;
    for (std::size_t j = 0; j < n; ++j, sign = -sign) {
        const int k = extrema.at(static_cast<int>(j) + 1);
        dnum += ad[j] * static_cast<Real>(grid.DES(k));
        dden += sign * ad[j] / static_cast<Real>(grid.WT(k));
    }
    dev = dnum / dden;
    nu = dev > 0 ? -1 : 1;
    dev = -static_cast<Real>(nu) * dev;
    sign = static_cast<Real>(nu);
    for (std::size_t j = 0; j < n; ++j, sign = -sign) {
        const int k = extrema.at(static_cast<int>(j) + 1);
        y[j] = static_cast<Real>(grid.DES(k)) + sign * dev / static_cast<Real>(grid.WT(k));
    }
    return std::isfinite(dev);
}

// ad(k) = 1 / prod 2 (x(k) - x(j)), j not k. The factors are taken in strides, so that near and far ones mix and no
// partial product runs out of range; the factor 2 balances the capacity 1/2 of the interval -1 to 1.
template <class Real>
void Interpolant<Real>::lagrange_weights() {
    const auto n = static_cast<std::size_t>(nodes);
    const std::size_t jet = (n - 2) / 15 + 1;
    std::fill_n(ad.begin(), n, Real{1});
    for (std::size_t first = 0; first < jet; ++first) {
        for (std::size_t j = first; j < n; j += jet) {
            const Real xj = x_node[j];
            for (std::size_t k = 0; k < j; ++k) ad[k] *= 2 * (x_node[k] - xj);
            for (std::size_t k = j + 1; k < n; ++k) ad[k] *= 2 * (x_node[k] - xj);
        }
    }
    for (std::size_t k = 0; k < n; ++k) ad[k] = 1 / ad[k];
}

// A(x) = sum (ad y / (x - x_node)) / sum (ad / (x - x_node))
template <class Real>
Real Interpolant<Real>::operator()(Real x) const {
    typename Lanes::Type num{}, den{};
    for (std::size_t j = 0; j < padded; j += Lanes::count) {
        const auto term = Lanes::load(&ad[j]) / (x - Lanes::load(&x_node[j]));
        den += term;
        num += term * Lanes::load(&y[j]);
    }
    const Real a = Lanes::sum(num) / Lanes::sum(den);
    return std::isfinite(a) ? a : at_node(x);
}

template <class Real>
Real Interpolant<Real>::at_node(Real x) const {
    const auto end = x_node.begin() + nodes;
    const auto node = std::find(x_node.begin(), end, x);
    return node == end ? std::numeric_limits<Real>::quiet_NaN() : y[static_cast<std::size_t>(node - x_node.begin())];
}

// --------------------------------------------------------------------------------------------------------- search

// The points climb to peaks nearby, which costs little. Where that gains nothing, or has gone on for long, the whole
// grid decides.
template <class Real>
bool Search<Real>::improve(bool whole_grid) {
    if (whole_grid) return exchange_all();
    const Extrema before = points;
    const int old_first = iext(1), old_last = iext(nz);
    Real first_value = 0, last_value = 0;
    const bool gained = move_to_peaks(first_value, last_value) > interpolant.deviation() + flat;
    const int lowest = std::min(old_first, iext(1)), highest = std::max(old_last, iext(nz));
    const bool replaced = exchange_ends(lowest, highest, first_value, last_value);
    if (gained || replaced) return true;
    points = before;
    return exchange_all();
}

// Each point climbs from its place to the next peak, upward if the error rises there, else downward, between the new
// place of the point below and the old place of the point above. Returns the highest peak.
template <class Real>
Real Search<Real>::move_to_peaks(Real& first_value, Real& last_value) {
    Real highest = 0;
    for (int j = 1, below = 0; j <= nz; ++j) {
        const int k = iext(j), above = iext(j + 1), sign = sign_at(j);
        Peak peak = climb(k, interpolant.deviation(), +1, above, sign);
        if (peak.k == k) peak = climb(k, interpolant.deviation(), -1, below, sign);
        highest = std::max(highest, peak.value);
        if (j == 1) first_value = peak.value;
        last_value = peak.value;
        below = iext(j) = peak.k;
    }
    return highest;
}

// A further extremum below the first or above the last point replaces the one at the other end, when it is larger than
// that one and larger than the other newcomer.
template <class Real>
bool Search<Real>::exchange_ends(int lowest, int highest, Real first_value, Real last_value) {
    constexpr Real margin = static_cast<Real>(1.00001);
    const Peak low = first_above(last_value * margin + flat, 1, +1, lowest, -sign_at(1));
    const Real rival = low.k != 0 ? std::max(first_value, low.value) : first_value;
    const Peak high = first_above(rival * margin + flat, grid.NGRID, -1, highest, -sign_at(nz));
    if (high.k != 0) {
        for (int j = 1; j < nz; ++j) iext(j) = iext(j + 1);
        iext(nz) = high.k;
    } else if (low.k != 0) {
        for (int j = nz; j > 1; --j) iext(j) = iext(j - 1);
        iext(1) = low.k;
    }
    return high.k != 0 || low.k != 0;
}

// All points at once: the largest error of every run of one sign; too many of them are thinned from the smallest on so
// that the signs go on alternating and the largest stays.
template <class Real>
bool Search<Real>::exchange_all() {
    std::vector<Run> all = runs();
    const auto by_value = [](const Run& a, const Run& b) { return a.value < b.value; };
    if (!(std::max_element(all.begin(), all.end(), by_value)->value > interpolant.deviation() + flat)) return false;
    const auto wanted = static_cast<std::size_t>(nz);
    while (all.size() > wanted) {
        const auto smallest = std::min_element(all.begin(), all.end(), by_value);
        const bool at_end = smallest == all.begin() || smallest + 1 == all.end();
        if (at_end) {
            all.erase(smallest);
        } else if (all.size() == wanted + 1) {
            all.erase(all.front().value < all.back().value ? all.begin() : all.end() - 1);
        } else {
            const auto first = (smallest - 1)->value < (smallest + 1)->value ? smallest - 1 : smallest;
            all.erase(first, first + 2);
        }
    }
    for (int j = 1; j <= nz; ++j) iext(j) = all[static_cast<std::size_t>(j - 1)].k;
    return true;
}

// At least NFCNS + 1 of them: at the extremal points the error is taken as the alternating deviation that it is.
template <class Real>
auto Search<Real>::runs() const -> std::vector<Run> {
    std::vector<Run> all;
    for (int k = 1, j = 1; k <= grid.NGRID; ++k) {
        const bool extremal = j <= nz && iext(j) == k;
        const Real e = extremal ? static_cast<Real>(sign_at(j)) * interpolant.deviation() : error(k);
        const int sign = extremal ? sign_at(j) : (e > 0 ? 1 : -1);
        if (extremal) ++j;
        if (all.empty() || all.back().sign != sign) {
            all.push_back({k, sign, std::abs(e)});
        } else if (std::abs(e) > all.back().value) {
            all.back() = {k, sign, std::abs(e)};
        }
    }
    return all;
}

// From grid point k, where the error is `value`, in direction `step` as long as it rises; `stop` is out of bounds.
template <class Real>
auto Search<Real>::climb(int k, Real value, int step, int stop, int sign) const -> Peak {
    for (int next = k + step; step * (stop - next) > 0; next += step) {
        const Real there = static_cast<Real>(sign) * error(next);
        if (!(there - value > 0)) break;
        k = next;
        value = there;
    }
    return {k, value};
}

// The peak that follows the first error above `level` on the way from `from` to `stop` (exclusive).
template <class Real>
auto Search<Real>::first_above(Real level, int from, int step, int stop, int sign) const -> Peak {
    for (int k = from; step * (stop - k) > 0; k += step) {
        const Real there = static_cast<Real>(sign) * error(k);
        if (there - level > 0) return climb(k, there, step, stop, sign);
    }
    return {0, level};
}

// --------------------------------------------------------------------------------------------------- coefficients

// A is sampled at the NFCNS abscissae x' = cos(2 pi i / n), n = 2 NFCNS - 1, and transformed. Where the grid covers
// only a part of 0 to 0.5, A may be huge in the rest: there x' is the grid's own variable, and its series is rewritten
// in x. Samples between the bands lose as many digits as the attenuation has: what does not lead back to A on the
// extremal points is solved for on them.
template <class Real>
void cosine_series(const FirGrid& grid, const Interpolant<Real>& a, double scale, ExchangeResult& result) {
    const int nfcns = a.count() - 1, n = 2 * nfcns - 1;
    Series<Real> cosine{}, values{}, coefficients{};
    for (int i = 0; i < nfcns; ++i) {
        cosine[static_cast<std::size_t>(i)] = std::cos(2 * std::numbers::pi_v<Real> * static_cast<Real>(i) / n);
    }
    const Variable v = choose_variable(grid, nfcns);
    sample(a, v, cosine, nfcns, values);
    inverse_transform(cosine, values, nfcns, coefficients);
    if (v.aa != 1 || v.bb != 0) back_to_cosines(v, nfcns, coefficients);
    const auto take = [&](const auto& series) {
        for (int i = 1; i <= nfcns; ++i) {
            result.ALPHA(i) = static_cast<double>(series[static_cast<std::size_t>(i - 1)]);
        }
    };
    take(coefficients);
    if (reproduces(grid, a, result, scale)) return;
    if constexpr (std::is_same_v<Real, Wide>) {
        take(least_squares(a));
    } else {
        Extrema extrema{.at = {}, .count = a.count()};
        std::copy_n(result.IEXT.begin(), extrema.count, extrema.at.begin());
        Interpolant<Wide> wide;
        if (wide.fit(grid, extrema)) cosine_series(grid, wide, scale, result);
    }
}

Variable choose_variable(const FirGrid& grid, int nfcns) {
    if (nfcns < 4 || (grid.GRID(1) < 0.01 && grid.GRID(grid.NGRID) > 0.49)) return {};
    const double high = grid.X(1), low = grid.X(grid.NGRID);
    return {.aa = 2 / (high - low), .bb = -(high + low) / (high - low)};
}

// The samples and the extremal abscissae both descend.
template <class Real>
void sample(const Interpolant<Real>& a, Variable v, const Series<Real>& cosine, int nfcns, Series<Real>& values) {
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
void inverse_transform(const Series<Real>& cosine, const Series<Real>& values, int nfcns, Series<Real>& coefficients) {
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
void back_to_cosines(Variable v, int nfcns, Series<Real>& coefficients) {
    const Real aa = static_cast<Real>(v.aa), bb = static_cast<Real>(v.bb), half = static_cast<Real>(0.5);
    Series<Real> b1{}, b2{}, b{};
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

// --------------------------------------------------------------------------------------------------- verification

// sum of ALPHA(i) cos((i-1) w) at x = cos w, by Clenshaw's recurrence, for several abscissae side by side
template <class Real, std::size_t count>
std::array<Real, count> evaluate(const ExchangeResult& result, int nfcns, const std::array<Real, count>& x) {
    using Lanes = LanesOf<Real>;
    using Row = std::array<typename Lanes::Type, count / Lanes::count>;
    Row at{}, twice{}, b1{}, b2{};
    for (std::size_t m = 0; m < at.size(); ++m) at[m] = Lanes::load(&x[m * Lanes::count]), twice[m] = at[m] + at[m];
    for (int i = nfcns; i > 1; --i) {
        const Real c = static_cast<Real>(result.ALPHA(i));
#pragma GCC unroll 4
        for (std::size_t m = 0; m < at.size(); ++m) {
            const auto b = twice[m] * b1[m] + (c - b2[m]);
            b2[m] = b1[m];
            b1[m] = b;
        }
    }
    const Real first = static_cast<Real>(result.ALPHA(1));
    for (std::size_t m = 0; m < at.size(); ++m) b1[m] = first + at[m] * b1[m] - b2[m];
    std::array<Real, count> sums{};
    std::memcpy(sums.data(), b1.data(), sizeof sums);
    return sums;
}

// Do the coefficients lead back to A on the extremal points, as closely as doubles can? Then they do everywhere.
template <class Real>
bool reproduces(const FirGrid& grid, const Interpolant<Real>& a, const ExchangeResult& result, double scale) {
    constexpr std::size_t block = 8;
    const double tolerance = std::max(1e-6 * static_cast<double>(a.deviation()), 2 * tap_rounding * scale);
    for (int j = 1; j <= a.count(); j += static_cast<int>(block)) {
        std::array<Real, block> x{};
        const auto node = [&](std::size_t m) { return std::min(j + static_cast<int>(m), a.count()); };
        for (std::size_t m = 0; m < block; ++m) x[m] = a.abscissa(node(m));
        const auto at = evaluate<Real, block>(result, a.count() - 1, x);
        for (std::size_t m = 0; m < block; ++m) {
            const Real off = std::abs(at[m] - a.ordinate(node(m))) * static_cast<Real>(grid.WT(result.IEXT(node(m))));
            if (!(off <= static_cast<Real>(tolerance))) return false;
        }
    }
    return true;
}

// The coefficients of smallest norm that meet A on the extremal points. The points lie in the bands; a combination of
// cosines that lives between the bands only is not determined by them in finite arithmetic, and is left out.
Series<Wide> least_squares(const Interpolant<Wide>& a) {
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
    Series<Wide> coefficients{};
    std::copy(c.begin(), c.end(), coefficients.begin());
    return coefficients;
}

// Largest weighted error of ALPHA on the grid; not a number when one of them is none.
template <class Real>
Real largest_error(const FirGrid& grid, const ExchangeResult& result, int nfcns) {
    constexpr std::size_t block = 8;
    Real worst = 0;
    for (int k = 1; k <= grid.NGRID; k += static_cast<int>(block)) {
        std::array<Real, block> x{};
        for (std::size_t m = 0; m < block; ++m) x[m] = grid.X(std::min(k + static_cast<int>(m), grid.NGRID));
        const auto a = evaluate<Real, block>(result, nfcns, x);
        for (std::size_t m = 0; m < block; ++m) {
            const int at = std::min(k + static_cast<int>(m), grid.NGRID);
            const Real e = std::abs(a[m] - static_cast<Real>(grid.DES(at))) * static_cast<Real>(grid.WT(at));
            if (!(e <= worst)) worst = e;
        }
        if (std::isnan(worst)) break;
    }
    return worst;
}

}  // namespace

}  // namespace kavrel
