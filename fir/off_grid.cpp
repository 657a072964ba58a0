#include "fir/off_grid.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <type_traits>
#include <vector>

#include "fir/interpolant.h"
#include "fir/runs.h"
#include "shell/whole_part.h"

namespace kavrel {

namespace {

using Wide = long double;
using Points = std::vector<FirPoint>;

constexpr double least_frequency = 1e-9;  // of a differentiator
constexpr int points_per_function = 12;
constexpr int points_per_band = 32;
constexpr double settled = 1 + 1e-4;   // largest error over its level
constexpr double kept = 1.01;          // the same, up to which the result of the grid is kept
constexpr double nearly = 1.5;         // the same, from which on the level of free regions is worth raising
constexpr double worth_a_climb = 0.5;  // the same, of a sample next to which the error may reach its level
constexpr double rise = 100;           // of the ratio, beyond what the deviation calls for
constexpr int refining_passes = 30;
constexpr int bounded_passes = 120;
constexpr int patience = 40;                // passes after which nothing is expected of a ratio
constexpr double double_deviation = 1e-10;  // the same, below which a ratio is worth no pass in double
constexpr double deep_deviation = 1e-8;     // below this part of the scale passes are made in long double

// Where the passes of a bounded exchange are.
struct Climb {
    Points reference;
    FreeLevel level;
    bool rises;  // its ratio is small to begin with, and rises
};

// One pass in the arithmetic of Real: approximation on the extremal points, then the search for the next.
template <class Real>
class AxisSearch {
public:
    AxisSearch(const FirTask& fir_task, const FirPlan& fir_plan, const Points& on_axis, double scale)
        : task(fir_task),
          plan(fir_plan),
          axis(on_axis),
          rounding(static_cast<Real>(rounding_deviation * scale)),
          flat(4 * std::numeric_limits<Real>::epsilon() * static_cast<Real>(scale)) {}

    [[nodiscard]] bool fit(const Points& reference, FreeLevel level) { return interpolant.fit(reference, level); }
    // The largest error over its level; `reference`, which was fitted, becomes the next one.
    [[nodiscard]] Real search(Points& reference);
    // Whether that much over its level is as little as there can be.
    [[nodiscard]] bool is_settled(Real largest) const {
        return largest <= std::max(static_cast<Real>(settled), 1 + flat / band_level());
    }
    [[nodiscard]] const Interpolant<Real>& approximation() const { return interpolant; }

private:
    struct Sample {
        FirPoint point;
        Real u;  // error over its level
    };
    using Run = ErrorRun<FirPoint, Real>;

    [[nodiscard]] Real band_level() const { return std::max(interpolant.deviation(), rounding); }
    [[nodiscard]] Real error(const FirPoint& p) const {
        const Real level = p.free() ? interpolant.free_error() : band_level();
        return (interpolant(static_cast<Real>(p.X)) - static_cast<Real>(p.DES)) * static_cast<Real>(p.WT) / level;
    }
    [[nodiscard]] std::vector<Sample> samples(const Points& reference) const;
    [[nodiscard]] bool is_peak(const std::vector<Sample>& all, std::size_t i) const;
    void climb(const std::vector<Sample>& all, std::size_t i, Run& run) const;

    const FirTask& task;
    const FirPlan& plan;
    const Points& axis;
    const Real rounding;  // level that counts as good as any below it
    const Real flat;      // differences of the error up to this size are rounding of Real
    Interpolant<Real> interpolant;
};

Points lay_out(const FirTask& task, const FirPlan& plan, const FirGrid& grid, bool with_free_regions);
std::vector<double> band_points(double low, double high, double step);
void add_corners(const FirTask& task, int band, std::vector<double>& points);
Points spread_evenly(const Points& axis, int nfcns);
Points in_bands(const Points& axis, const Points& extremal);
template <class Real>
ExchangeResult taken(const AxisSearch<Real>& search, const Points& axis, const Points& fitted, double scale,
                     ExchangeResult result);
template <class Real>
bool refine_in(const FirTask& task, const FirPlan& plan, const FirGrid& grid, double scale, Watcher& watcher,
               ExchangeResult& result);
template <class Real>
ExchangeStatus bounded_in(const FirTask& task, const FirPlan& plan, const Points& axis, double scale, Climb& way,
                          Watcher& watcher, ExchangeResult& result);

}  // namespace

bool refine(const FirTask& task, const FirPlan& plan, const FirGrid& grid, Watcher& watcher, ExchangeResult& result) {
    const double scale = scale_of(grid);
    if (!(result.DEV > rounding_deviation * scale)) return true;
    const auto refined = result.DEV < deep_deviation * scale ? refine_in<Wide> : refine_in<double>;
    return refined(task, plan, grid, scale, watcher, result);
}

ExchangeStatus bounded_exchange(const FirTask& task, const FirPlan& plan, const FirGrid& grid, double gain,
                                double least, Watcher& watcher, ExchangeResult& result) {
    const double scale = scale_of(grid);
    const Points axis = lay_out(task, plan, grid, true);
    double most = 0;  // what A = 0 deviates
    for (const FirPoint& p : axis) most = std::max(most, std::abs(p.DES * p.WT));
    ExchangeStatus status = ExchangeStatus::limit_reached;
    if (least > rounding_deviation * scale) {
        Climb down{spread_evenly(axis, plan.NFCNS), {gain, gain / least}, false};
        status = bounded_in<double>(task, plan, axis, scale, down, watcher, result);
    }
    if (status != ExchangeStatus::limit_reached) return status;
    Climb up{spread_evenly(axis, plan.NFCNS), {gain, gain / most}, true};
    status = bounded_in<double>(task, plan, axis, scale, up, watcher, result);
    if (status == ExchangeStatus::limit_reached) {
        status = bounded_in<Wide>(task, plan, axis, scale, up, watcher, result);
    }
    return status;
}

namespace {

template <class Real>
bool refine_in(const FirTask& task, const FirPlan& plan, const FirGrid& grid, double scale, Watcher& watcher,
               ExchangeResult& result) {
    const Points axis = lay_out(task, plan, grid, false);
    Points next;
    for (int j = 1; j <= plan.NFCNS + 1; ++j) next.push_back(grid.point(result.IEXT(j)));
    AxisSearch<Real> search(task, plan, axis, scale);
    for (int pass = 1; pass <= refining_passes; ++pass) {
        if (pass > 1) ++result.iterations;
        if (!watcher.go_on()) return false;
        const Points fitted = next;
        if (!search.fit(fitted, {})) return true;
        const Real largest = search.search(next);
        if (!std::isfinite(largest) || (pass == 1 && largest <= static_cast<Real>(kept))) return true;
        if (search.is_settled(largest)) {
            if (!watcher.go_on()) return false;
            const Points judged = in_bands(axis, fitted);
            const auto before = static_cast<double>(largest_error<Real>(judged, result.ALPHA, plan.NFCNS));
            if (!watcher.go_on()) return false;
            const ExchangeResult refined = taken(search, axis, fitted, scale, result);
            if (!(refined.measured >= before)) result = refined;
            return true;
        }
    }
    return true;
}

// Passes with the free regions, on which `way` goes on. As long as the bound leaves the bands no deviation, free points
// have the level of the bands times a ratio, which rises.
template <class Real>
ExchangeStatus bounded_in(const FirTask& task, const FirPlan& plan, const Points& axis, double scale, Climb& way,
                          Watcher& watcher, ExchangeResult& result) {
    constexpr bool is_wide = std::is_same_v<Real, Wide>;
    AxisSearch<Real> search(task, plan, axis, scale);
    for (int pass = 1, risen = 0; pass <= std::min(bounded_passes, risen + patience); ++pass) {
        ++result.iterations;
        if (!watcher.go_on()) return ExchangeStatus::stopped;
        const Points fitted = way.reference;
        if (!search.fit(fitted, way.level)) return ExchangeStatus::limit_reached;
        const Real largest = search.search(way.reference);
        if (!std::isfinite(largest)) return ExchangeStatus::limit_reached;
        const auto deviation = static_cast<double>(search.approximation().deviation());
        if (way.rises && largest < static_cast<Real>(nearly)) {
            if (!is_wide && deviation < double_deviation * scale) return ExchangeStatus::limit_reached;
            const double ratio = way.level.bound / deviation;
            if (ratio > way.level.ratio * settled) {
                way.level.ratio = rise * ratio;
                way.reference = fitted;
                risen = pass;
                continue;
            }
        }
        if (search.is_settled(largest)) {
            result = taken(search, axis, fitted, scale, result);
            return result.status;
        }
    }
    return ExchangeStatus::limit_reached;
}

// Points that an error is judged at.
Points in_bands(const Points& axis, const Points& extremal) {
    Points points;
    for (const Points& from : {axis, extremal}) {
        std::copy_if(from.begin(), from.end(), std::back_inserter(points), [](const auto& p) { return !p.free(); });
    }
    return points;
}

// `result` with the approximation in place of its own.
template <class Real>
ExchangeResult taken(const AxisSearch<Real>& search, const Points& axis, const Points& fitted, double scale,
                     ExchangeResult result) {
    const int nfcns = static_cast<int>(fitted.size()) - 1;
    result.DEV = static_cast<double>(search.approximation().deviation());
    result.ALPHA = cosine_series({axis.front(), axis.back()}, fitted, search.approximation(), scale);
    result.measured = static_cast<double>(largest_error<Real>(in_bands(axis, fitted), result.ALPHA, nfcns));
    result.status = ExchangeStatus::converged;
    return result;
}

// ---------------------------------------------------------------------------------------------------------------------

// The bands as far as the grid goes, which leaves out the zeros of the type, but a differentiator's, whose error has a
// limit at 0; and what lies between them, without their edges.
Points lay_out(const FirTask& task, const FirPlan& plan, const FirGrid& grid, bool with_free_regions) {
    const double step = 0.5 / (points_per_function * plan.NFCNS);
    const double lowest = plan.NEG == 1 ? grid.DELF : 0;
    const double highest = plan.NEG == plan.NODD ? 0.5 - grid.DELF : 0.5;
    const BandTable& bands = task.BANDS;
    Points axis;
    const auto add = [&](double f, int band) { axis.push_back(folded_point(task, plan, f, band)); };
    const auto add_free = [&](double low, double high, int band) {
        const double from = std::max(low, lowest), to = std::min(high, highest);
        if (!with_free_regions || !(to - from > step)) return;
        const int steps = whole_part(std::ceil((to - from) / step));
        for (int k = from > low || low == 0 ? 0 : 1; k < steps; ++k) add(from + (to - from) * k / steps, band);
        if (to < high || high == 0.5) add(to, band);
    };
    double below = 0;
    for (int band = 1; band <= bands.NBANDS; ++band) {
        add_free(below, bands.EDGE(2 * band - 1), 1 - band);
        const bool from_zero = task.JTYPE == FirType::differentiator;
        const double low = std::max(bands.EDGE(2 * band - 1), from_zero ? least_frequency : grid.GRID(1));
        const double high = below = bands.EDGE(2 * band);
        const double to = std::min(high, grid.GRID(grid.NGRID));
        std::vector<double> points = band_points(low, to, step);
        add_corners(task, band, points);
        for (const double f : points) add(f, band);
    }
    add_free(below, 0.5, -bands.NBANDS);
    return axis;
}

// Extrema crowd at the edges of a band, and so do the points: within a few steps of it their distance falls.
std::vector<double> band_points(double low, double high, double step) {
    constexpr int crowded = 9;  // steps with twice as many points
    const double width = high - low;
    std::vector<double> points;
    if (!(width > 0)) {
        if (width == 0) points.push_back(low);
    } else if (width < std::max(points_per_band, 2 * crowded) * step) {
        for (int k = 0; k <= points_per_band; ++k) {
            points.push_back(low + width * (1 - std::cos(fir_pi * k / points_per_band)) / 2);
        }
    } else {
        const int steps = whole_part(std::ceil(width / step));
        const auto place = [&](int k) { return width / steps * crowded * (k * k) / (4.0 * crowded * crowded); };
        for (int k = 0; k < 2 * crowded; ++k) points.push_back(low + place(k));
        for (int k = crowded; k <= steps - crowded; ++k) points.push_back(low + width * k / steps);
        for (int k = 2 * crowded - 1; k >= 0; --k) points.push_back(high - place(k));
    }
    return points;
}

// The corners of a shape, at which the error has peaks that are no parabolas.
void add_corners(const FirTask& task, int band, std::vector<double>& points) {
    constexpr double smooth = 1e-9;
    if (points.empty()) return;
    const double low = points.front(), high = points.back();
    for (int i = 1; i <= task.SHAPE.count; ++i) {
        const auto f = static_cast<double>(task.SHAPE.FIR_FREQ(i));
        const double jump = desired(task, f, band) - desired(task, std::nextafter(f, 0), band);
        if (f > low && f < high && std::abs(jump) < smooth) points.push_back(f);
    }
    std::sort(points.begin(), points.end());
    points.erase(std::unique(points.begin(), points.end()), points.end());
}

Points spread_evenly(const Points& axis, int nfcns) {
    Points reference;
    const double spacing = static_cast<double>(axis.size() - 1) / nfcns;
    for (int j = 0; j <= nfcns; ++j) reference.push_back(axis[whole_part<std::size_t>(std::round(j * spacing))]);
    return reference;
}

// ---------------------------------------------------------------------------------------------------------------------

// The largest error of each run of one sign that reaches its level, the extremal points of this pass among them.
template <class Real>
Real AxisSearch<Real>::search(Points& reference) {
    const std::vector<Sample> all = samples(reference);
    std::vector<Run> runs;
    Real largest = 0;
    for (std::size_t i = 0; i < all.size(); ++i) {
        const Real u = all[i].u, size = std::abs(u);
        if (std::isnan(u)) return u;
        if (!(size >= static_cast<Real>(worth_a_climb))) continue;
        Run found{all[i].point, u > 0 ? 1 : -1, size};
        if (is_peak(all, i)) climb(all, i, found);
        if (!(found.value >= 1)) continue;
        largest = std::max(largest, found.value);
        if (runs.empty() || runs.back().sign != found.sign) {
            runs.push_back(found);
        } else if (found.value > runs.back().value) {
            runs.back() = found;
        }
    }
    thin_runs(runs, reference.size());
    for (std::size_t j = 0; j < reference.size(); ++j) reference[j] = runs[j].at;
    return largest;
}

template <class Real>
bool AxisSearch<Real>::is_peak(const std::vector<Sample>& all, std::size_t i) const {
    const auto lower = [&](std::size_t k) {
        return k >= all.size() || all[k].point.band != all[i].point.band ||
               (all[i].u > 0 ? all[k].u <= all[i].u : all[k].u >= all[i].u);
    };
    return lower(i - 1) && lower(i + 1);
}

// Axis and extremal points together; at these the error is taken as the alternating level that it is.
template <class Real>
auto AxisSearch<Real>::samples(const Points& reference) const -> std::vector<Sample> {
    std::vector<Sample> all;
    all.reserve(axis.size() + reference.size());
    Real level = static_cast<Real>(interpolant.first_sign());
    auto next = reference.begin();
    const auto take_reference = [&] { all.push_back({*next++, level}), level = -level; };
    for (const FirPoint& p : axis) {
        const auto before = [&](const FirPoint& q) { return q.f < p.f; };
        while (next != reference.end() && before(*next)) take_reference();
        if (next != reference.end() && next->X == p.X && next->band == p.band) continue;
        all.push_back({p, error(p)});
    }
    while (next != reference.end()) take_reference();
    return all;
}

// To the vertex of the parabola through the sample and its neighbours in the same band, at an edge through the next
// two.
template <class Real>
void AxisSearch<Real>::climb(const std::vector<Sample>& all, std::size_t i, Run& run) const {
    constexpr double too_close = 0.1;  // of the distance to the other neighbour
    const auto inside = [&](std::size_t k) { return k < all.size() && all[k].point.band == all[i].point.band; };
    const auto f = [&](std::size_t k) { return all[k].point.f; };
    if (!inside(i - 1) && !inside(i + 1)) return;
    std::size_t low = i, high = i;
    if (inside(i - 1)) low = i - 1;
    if (inside(i + 1)) high = i + 1;
    const double widest = std::max(f(i) - f(low), f(high) - f(i));
    if (low < i && f(i) - f(low) < too_close * widest && inside(low - 1)) --low;
    if (high > i && f(high) - f(i) < too_close * widest && inside(high + 1)) ++high;
    if (low == i) {
        low = high;
        if (!inside(++high)) return;
    } else if (high == i) {
        high = low;
        if (!inside(--low)) return;
    }
    const auto value = [&](std::size_t k) { return static_cast<double>(static_cast<Real>(run.sign) * all[k].u); };
    const double a = f(low) - f(i), b = f(high) - f(i);
    const double rise_a = value(low) - value(i), rise_b = value(high) - value(i);
    const double vertex = f(i) + (rise_a * b * b - rise_b * a * a) / (rise_a * b - rise_b * a) / 2;
    const double least = std::min({f(i), f(low), f(high)}), most = std::max({f(i), f(low), f(high)});
    if (!(vertex > least && vertex < most)) return;
    const FirPoint there = folded_point(task, plan, vertex, run.at.band);
    const Real u = static_cast<Real>(run.sign) * error(there);
    if (u > run.value) run = {there, run.sign, u};
}

}  // namespace

}  // namespace kavrel
