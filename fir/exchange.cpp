#include "fir/exchange.h"

#include <algorithm>
#include <cmath>
#include <type_traits>
#include <vector>

#include "fir/cosine_series.h"
#include "fir/interpolant.h"
#include "fir/runs.h"
#include "shell/whole_part.h"

namespace kavrel {

namespace {

using Wide = long double;

// Passes in which the points climb to the next peak only; after them the whole grid is looked at.
constexpr int climbing_passes = 20;

// Passes that double is given; what has not converged then may be chasing its rounding.
constexpr int double_passes = 30;

// Below this part of the scale of the task a deviation leaves double too few digits: the pass is made in long double.
constexpr double deep_deviation = 1e-8;

// Measured error over deviation from which on the taps are said to miss the best approximation.
constexpr double missed = 1.1;

struct Extrema {
    Table<int, max_fir_extrema + 1> at;  // [j] grid index, ascending; [count+1] = NGRID + 1, a sentinel
    int count = 0;                       // NFCNS + 1

    [[nodiscard]] std::vector<FirPoint> points(const FirGrid& grid) const {
        std::vector<FirPoint> all;
        for (int j = 1; j <= count; ++j) all.push_back(grid.point(at(j)));
        return all;
    }
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

    [[nodiscard]] bool fit() { return interpolant.fit(points.points(grid)); }
    [[nodiscard]] bool improve(bool whole_grid);  // false when no error exceeds the deviation
    [[nodiscard]] const Interpolant<Real>& approximation() const { return interpolant; }
    [[nodiscard]] Real rounding() const { return static_cast<Real>(nz) * flat; }  // uncertainty of the deviation

private:
    struct Peak {
        int k;       // grid index, 0: none
        Real value;  // weighted error there
    };
    using Run = ErrorRun<int, Real>;  // of neighbouring grid points

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
    Table<int, max_fir_extrema + 1>& iext;
    const int nz;
    const Real flat;  // differences of the error up to this size are rounding
    Interpolant<Real> interpolant;
};

Extrema spread_evenly(const FirGrid& grid, int nfcns);
Extrema spread_well(const FirGrid& grid, int nfcns);

}  // namespace

ExchangeStatus exchange(const FirGrid& grid, int nfcns, Watcher& watcher, ExchangeResult& result) {
    result = {};
    const auto ends_as = [&result](ExchangeStatus status) { return result.status = status; };
    if (nfcns < 1 || nfcns > max_fir_functions || grid.NGRID <= nfcns || grid.NGRID > max_fir_grid) {
        return ends_as(ExchangeStatus::degenerate);
    }

    const double scale = scale_of(grid);
    Extrema extrema = spread_evenly(grid, nfcns);
    Search<double> narrow(grid, extrema, scale);
    Search<Wide> wide(grid, extrema, scale);
    const auto series = [&](const auto& search) {
        Extrema fitted{.at = {}, .count = extrema.count};
        std::copy_n(result.IEXT.begin(), extrema.count, fitted.at.begin());
        return cosine_series({grid.point(1), grid.point(grid.NGRID)}, fitted.points(grid), search.approximation(),
                             scale);
    };
    ExchangeStatus status = ExchangeStatus::limit_reached;
    bool distrusted = false, deep = false;  // double found too short, for all passes and for this one
    Wide previous = -1;
    while (status == ExchangeStatus::limit_reached && result.iterations < max_exchange_passes) {
        ++result.iterations;
        if (!watcher.go_on()) return ends_as(ExchangeStatus::stopped);
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
        if (deep && !watcher.go_on()) return ends_as(ExchangeStatus::stopped);  // in long double a pass is long
        if (deep && !wide.fit()) return ends_as(ExchangeStatus::degenerate);
        if (deep && previous < 0 && wide.approximation().deviation() < tap_rounding * scale) {
            // nothing to level: taken as it is if it is good to a few roundings
            const CosineSeries alpha = series(wide);
            const auto measured = static_cast<double>(largest_error<Wide>(grid, alpha, nfcns));
            if (measured < 100 * tap_rounding * scale) {
                result.ALPHA = alpha;
                result.measured = measured;
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
        if (deep && !watcher.go_on()) return ends_as(ExchangeStatus::stopped);
        if (fell) {
            status = ExchangeStatus::deviation_fell;
        } else if (!(deep ? wide.improve(whole_grid) : narrow.improve(whole_grid))) {
            status = ExchangeStatus::converged;
        }
        previous = deviation;
    }

    if (!watcher.go_on()) return ends_as(ExchangeStatus::stopped);
    result.DEV = static_cast<double>(previous);
    if (deep) {
        result.ALPHA = series(wide);
        result.measured = static_cast<double>(largest_error<Wide>(grid, result.ALPHA, nfcns));
    } else {
        result.ALPHA = series(narrow);
        result.measured = largest_error<double>(grid, result.ALPHA, nfcns);
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

namespace {

Extrema spread_evenly(const FirGrid& grid, int nfcns) {
    Extrema extrema{.at = {}, .count = nfcns + 1};
    const double spacing = static_cast<double>(grid.NGRID - 1) / nfcns;
    for (int j = 1; j <= nfcns; ++j) extrema.at(j) = whole_part((j - 1) * spacing + 1);
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

// ---------------------------------------------------------------------------------------------------------------------

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

// All points at once: the largest error of every run of one sign.
template <class Real>
bool Search<Real>::exchange_all() {
    std::vector<Run> all = runs();
    const auto by_value = [](const Run& a, const Run& b) { return a.value < b.value; };
    if (!(std::max_element(all.begin(), all.end(), by_value)->value > interpolant.deviation() + flat)) return false;
    thin_runs(all, static_cast<std::size_t>(nz));
    for (int j = 1; j <= nz; ++j) iext(j) = all[static_cast<std::size_t>(j - 1)].at;
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

}  // namespace

}  // namespace kavrel
