#include "fir/best_taps.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "fir/fir_deviation.h"
#include "fir/impulse_response.h"
#include "fir/off_grid.h"
#include "shell/whole_part.h"

namespace kavrel {

namespace {

// Deviation over the leveled one up to which taps pass for the best.
constexpr double missed = 1.1;

// Roundings up to which a filter with zeros around it passes for the best.
constexpr double negligible = 10;

// Lengths that a shorter filter is looked for at.
constexpr int most_tries = 10;

// What all steps of a design go on.
struct Workshop {
    FirTask task;
    FirGrid grid;
    Watcher& watcher;
};

FirTapsVerdict level(Workshop& shop, FirTaps& taps);
FirTapsVerdict shorten(Workshop& shop, FirTaps& taps);
[[nodiscard]] bool take(const Workshop& shop, const ExchangeResult& result, FirTaps& taps);
FirTask as_far_as_the_grid(const Workshop& shop);
FirTaps padded(const FirTaps& from, const FirTaps& to);
double narrowest_transition(const FirTask& task, const FirPlan& plan);
double largest_asked(const FirTask& task, const FirGrid& grid);
bool has_excess(const Workshop& shop, const FirTaps& taps);
bool is_rounding(const Workshop& shop, const FirTaps& taps, double times = 1);
double rounding_of(const FirTask& task, const FirGrid& grid);

}  // namespace

FirTapsVerdict best_taps(const FirTask& task, Watcher& watcher, FirTaps& taps) {
    const auto shop = std::make_unique<Workshop>(Workshop{.task = task, .grid = {}, .watcher = watcher});
    const FirTapsVerdict verdict = level(*shop, taps);
    const bool bounded_to_nothing = taps.bounded && !(taps.approximated > rounding_of(task, shop->grid));
    const bool excessive = has_excess(*shop, taps);
    if (verdict != FirTapsVerdict::made || !(bounded_to_nothing || excessive || !taps.optimal)) return verdict;
    return shorten(*shop, taps);
}

namespace {

// The taps of the length as it is: unbounded, or bounded where that has too much gain and the exchange settles.
FirTapsVerdict level(Workshop& shop, FirTaps& taps) {
    const auto& [task, grid, watcher] = shop;
    FirTaps made;
    if (!plan_fir(task.JTYPE, task.NFILT, made.plan) || !make_grid(task, made.plan, shop.grid)) {
        return FirTapsVerdict::impossible;
    }
    ExchangeResult result;
    switch (exchange(grid, made.plan.NFCNS, watcher, result)) {
        case ExchangeStatus::stopped: return FirTapsVerdict::stopped;
        case ExchangeStatus::not_run:
        case ExchangeStatus::degenerate: return FirTapsVerdict::impossible;
        case ExchangeStatus::converged:
        case ExchangeStatus::deviation_fell:
        case ExchangeStatus::limit_reached: break;
    }
    const ExchangeResult on_grid = result;
    if (!refine(task, made.plan, grid, watcher, result)) return FirTapsVerdict::stopped;
    if (!take(shop, result, made)) return FirTapsVerdict::stopped;
    if (result.DEV != on_grid.DEV) {
        // next to a jump of the desired response the points of the grid may lie better
        FirTaps first = made;
        if (!take(shop, on_grid, first)) return FirTapsVerdict::stopped;
        if (first.approximated < made.approximated) made = first;
    }
    const double bound = most_outside_gain * largest_asked(task, grid);
    if (bound > 0 && (made.outside_gain > bound || !made.optimal)) {
        const auto status = bounded_exchange(task, made.plan, grid, bound, result.DEV, watcher, result);
        if (status == ExchangeStatus::stopped) return FirTapsVerdict::stopped;
        if (status == ExchangeStatus::converged) {
            if (!take(shop, result, made)) return FirTapsVerdict::stopped;
            made.bounded = made.outside_gain > bound / 2;
        }
        made.iterations = result.iterations;
    }
    taps = made;
    return FirTapsVerdict::made;
}

// The shortest length of the same parity whose deviation is rounding; if the search finds none, the one of those tried
// that deviates least. In decibels the deviation falls with the length along a straight line, which a secant follows.
FirTapsVerdict shorten(Workshop& shop, FirTaps& taps) {
    const int whole = shop.task.NFILT;
    const double rounding = rounding_of(shop.task, shop.grid);
    // low deviates by more than rounding, high is too long or as good
    int low = whole % 2 == 0 ? 2 : 3, high = whole;
    double low_db = 0, slope = db_per_tap * narrowest_transition(shop.task, taps.plan);
    const double rounding_db = -20 * std::log10(rounding / largest_asked(shop.task, shop.grid));
    FirTaps best;
    bool found = false;
    int iterations = taps.iterations;
    for (int tries = 0; tries < most_tries && high - low > 2; ++tries) {
        const double step = std::min(std::ceil((rounding_db - low_db) / slope), static_cast<double>(whole));
        const int along = low + whole_part(std::max(step, 1.0));
        const int next = along < high - 1 ? along : (low + high) / 2;
        FirTaps tried;
        shop.task.NFILT = std::clamp(next + (next + whole) % 2, low + 2, high - 2);
        const FirTapsVerdict verdict = level(shop, tried);
        if (verdict == FirTapsVerdict::stopped) return verdict;
        iterations += tried.iterations;
        const bool usable = verdict == FirTapsVerdict::made && tried.optimal && !has_excess(shop, tried);
        const bool rounds = usable && is_rounding(shop, tried);
        if (usable && (!found || rounds || tried.approximated < best.approximated)) best = tried, found = true;
        if (!usable || rounds) {
            high = shop.task.NFILT;
        } else {
            const double db = -20 * std::log10(tried.approximated);
            slope = (db - low_db) / (shop.task.NFILT - low);
            low = shop.task.NFILT;
            low_db = db;
        }
    }
    shop.task.NFILT = whole;
    taps.iterations = iterations;
    if (found) {
        taps = padded(best, taps);
        taps.optimal = is_rounding(shop, taps, negligible);
    }
    return FirTapsVerdict::made;
}

// The first function of a filter, and what it does. False when the watcher stopped it.
bool take(const Workshop& shop, const ExchangeResult& result, FirTaps& taps) {
    const FirPlan& plan = taps.plan;
    FirFilter& filter = taps.filter;
    const HalfResponse H = impulse_response(plan, result.ALPHA);
    filter.NFCNS = plan.NFCNS;
    filter.NODD = plan.NODD;
    filter.NEG = plan.NEG;
    for (int i = 1; i <= plan.NFCNS; ++i) filter.COEF(i) = H(i);
    const FirFunction function{
        .taps = shop.task.NFILT, .symmetry = plan.NEG == 1 ? FirSymmetry::odd : FirSymmetry::even, .asked = true};
    filter.functions = 0;
    static_cast<void>(
        add_function(filter, function, std::span(filter.COEF.cells).first(static_cast<std::size_t>(plan.NFCNS))));
    taps.iterations = result.iterations;
    taps.taps_used = shop.task.NFILT;
    taps.leveled = result.DEV;
    if (!shop.watcher.go_on()) return false;
    taps.deviation = largest_deviation(shop.task, filter, 1).weighted;
    if (!shop.watcher.go_on()) return false;
    taps.outside_gain = largest_outside_gain(shop.task, filter, 1);
    if (!shop.watcher.go_on()) return false;
    taps.approximated = largest_deviation(as_far_as_the_grid(shop), filter, 1).weighted;
    taps.optimal = result.status == ExchangeStatus::converged || taps.approximated <= missed * result.DEV ||
                   is_rounding(shop, taps);
    return true;
}

FirTask as_far_as_the_grid(const Workshop& shop) {
    FirTask task = shop.task;
    BandTable& bands = task.BANDS;
    double& last = bands.EDGE(2 * bands.NBANDS);
    if (task.JTYPE != FirType::differentiator) bands.EDGE(1) = std::max(bands.EDGE(1), shop.grid.GRID(1));
    last = std::min(last, shop.grid.GRID(shop.grid.NGRID));
    return task;
}

// `from` with zeros around it, as long as `to`.
FirTaps padded(const FirTaps& from, const FirTaps& to) {
    FirTaps taps = to;
    const int zeros = to.plan.NFCNS - from.plan.NFCNS;
    for (int i = 1; i <= to.plan.NFCNS; ++i) {
        taps.filter.X(i) = taps.filter.COEF(i) = i <= zeros ? 0 : from.filter.X(i - zeros);
    }
    taps.taps_used = from.taps_used;
    taps.leveled = from.leveled;
    taps.deviation = from.deviation;
    taps.approximated = from.approximated;
    taps.outside_gain = from.outside_gain;
    taps.bounded = true;
    return taps;
}

// Width over which the response goes from band to band, or through a zero of the type.
double narrowest_transition(const FirTask& task, const FirPlan& plan) {
    const BandTable& bands = task.BANDS;
    double narrowest = 0.5;
    const auto note = [&](double width) {
        if (width > 0) narrowest = std::min(narrowest, width);
    };
    if (plan.NEG == 1) note(2 * bands.EDGE(1));
    for (int band = 1; band < bands.NBANDS; ++band) note(bands.EDGE(2 * band + 1) - bands.EDGE(2 * band));
    if (plan.NEG == plan.NODD) note(2 * (0.5 - bands.EDGE(2 * bands.NBANDS)));
    return narrowest;
}

double largest_asked(const FirTask& task, const FirGrid& grid) {
    double largest = 0;
    for (int k = 1; k <= grid.NGRID; ++k) {
        largest = std::max(largest, std::abs(desired(task, grid.GRID(k), grid.BAND(k))));
    }
    return largest;
}

// Whether the gain is above its bound. Where it is held the edges of bands may have more: what the deviation in them
// is.
bool has_excess(const Workshop& shop, const FirTaps& taps) {
    return !taps.bounded && taps.outside_gain > most_outside_gain * largest_asked(shop.task, shop.grid);
}

// Whether the taps deviate as little as doubles can, with that gain outside the bands, or not much more.
bool is_rounding(const Workshop& shop, const FirTaps& taps, double times) {
    const double size = std::max(1.0, taps.outside_gain / largest_asked(shop.task, shop.grid));
    return taps.approximated <= times * rounding_of(shop.task, shop.grid) * size;
}

// A weighted deviation as small as doubles make it.
double rounding_of(const FirTask& task, const FirGrid& grid) {
    double weighted = 0;
    for (int k = 1; k <= grid.NGRID; ++k) weighted = std::max(weighted, weight(task, grid.GRID(k), grid.BAND(k)));
    return rounding_deviation * weighted * largest_asked(task, grid);
}

}  // namespace

}  // namespace kavrel
