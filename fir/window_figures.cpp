#include "fir/window_figures.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <ranges>

#include "fir/fir_deviation.h"
#include "fir/window_design.h"
#include "fir/windows.h"
#include "numeric/highest_value.h"
#include "shell/whole_part.h"

namespace kavrel {

namespace {

constexpr int points_per_lobe = 16;  // of 1/taps

// The gain of a function from a frequency on, up or down the axis, in cycles per sample.
struct Fall {
    double level = 0;            // the gain where it begins
    std::optional<double> edge;  // where the gain is half of that
    std::optional<double> null;  // where it ceases to fall behind the edge, or is further off than the reach
};
class Gain {
public:
    explicit Gain(const FirFilter& filter) : filter_(filter) {}

    double operator()(double f) const { return std::fabs(amplitude(filter_, 1, f)); }
    [[nodiscard]] Fall fall(double from, double to, double reach = 1) const;
    [[nodiscard]] Peak<double> highest(double low, double high) const;

private:
    [[nodiscard]] std::vector<double> places(double from, double to) const;

    const FirFilter& filter_;
};

// Of the window: how far the first null is from the peak, and the highest side lobe behind it.
struct MainLobe {
    double reach = 1;
    std::optional<double> sidelobe;  // dB
};
MainLobe main_lobe(const FirFilter& filter);
std::optional<double> loss_between(const Gain& gain, double level, double a, double b);
void fill_edges(const FirFilter& filter, double reach, WindowFigures& figures);

}  // namespace

bool has_window(const FirFilter& filter) {
    return filter.functions > 0 && filter.FUNCTION(1).asked && filter.origin == FirOrigin::windowed;
}

WindowFigures window_figures(const FirFilter& filter) {
    WindowFigures figures;
    const MainLobe lobe = main_lobe(filter);
    figures.sidelobe = lobe.sidelobe;
    fill_edges(filter, lobe.reach, figures);
    return figures;
}

namespace {

// The window is a symmetric response like any other.
MainLobe main_lobe(const FirFilter& filter) {
    const WindowTask task{filter.FUNCTION(1).taps, filter.request.parameter};
    WindowCosines cosines = filter.WINDOW;
    WindowValues w;
    const int index = static_cast<int>(filter.request.window_type) - 1;
    if (compute_window(index, task, cosines, w) != WindowVerdict::computed) return {};
    std::vector<double> half(w.begin(), w.begin() + task.half());
    std::ranges::reverse(half);
    const auto window = std::make_unique<FirFilter>();
    if (!add_function(*window, {.taps = task.length}, half)) return {};

    const Gain gain(*window);
    const Peak<double> peak = gain.highest(0, 0.5);
    const Fall fall = gain.fall(peak.at, 0.5);
    if (!fall.null) return {};
    return {*fall.null - peak.at, loss_between(gain, peak.value, *fall.null, 0.5)};
}

// In the stopband the gain has a null before the window's main lobe has left the edge. Where it has none, as with a
// window whose transform is nowhere negative, the stopband begins there.
void fill_edges(const FirFilter& filter, double reach, WindowFigures& figures) {
    const FirRequest& request = filter.request;
    const Gain gain(filter);
    const auto [lower, upper] = windowed_edges(request);
    const double middle = (lower + upper) / 2 / request.sampling_frequency;
    if (!(middle >= 0 && middle <= 0.5)) return;
    std::optional<Fall> down, up;  // the axis
    switch (request.filter_type) {
        case FirFilterType::low_pass: up = gain.fall(0, 0.5, reach); break;
        case FirFilterType::high_pass: down = gain.fall(0.5, 0, reach); break;
        case FirFilterType::band_pass: down = gain.fall(middle, 0, reach), up = gain.fall(middle, 0.5, reach); break;
        case FirFilterType::band_reject: up = gain.fall(0, 0.5, reach), down = gain.fall(0.5, 0, reach); break;
        case FirFilterType::unchosen: return;
    }
    const bool between = request.filter_type == FirFilterType::band_reject;  // lies the stopband
    const auto note = [&](const std::optional<Fall>& fall, std::optional<double> end) {
        if (!fall || !fall->edge) return;
        figures.edges_6db.push_back(*fall->edge * filter.sampling_frequency);
        if (!fall->null || !end) return;
        const auto loss = loss_between(gain, fall->level, *fall->null, *end);
        if (loss) figures.stopband_loss = std::min(*loss, figures.stopband_loss.value_or(*loss));
    };
    note(down, between ? up->null : 0.0);
    note(up, between ? down->null : 0.5);
    std::ranges::sort(figures.edges_6db);
}

// The least loss between two frequencies in either order.
std::optional<double> loss_between(const Gain& gain, double level, double a, double b) {
    const double highest = gain.highest(std::min(a, b), std::max(a, b)).value;
    if (!(highest > 0)) return {};
    return 20 * std::log10(level / highest);
}

Fall Gain::fall(double from, double to, double reach) const {
    Fall fall{.level = (*this)(from), .edge = {}, .null = {}};
    if (!(fall.level > 0)) return fall;
    const std::vector<double> at = places(from, to);
    double before = std::numeric_limits<double>::infinity(), here = fall.level;
    for (std::size_t k = 1; k < at.size(); ++k) {
        const double next = (*this)(at[k]);
        if (!fall.edge && next <= fall.level / 2) {
            double passes = at[k - 1], stops = at[k];
            for (int halving = 0; halving < std::numeric_limits<double>::digits; ++halving) {
                const double f = (passes + stops) / 2;
                ((*this)(f) > fall.level / 2 ? passes : stops) = f;
            }
            fall.edge = stops;
        } else if (fall.edge && here <= before && here <= next) {
            fall.null = peak_between(at[k - 2], at[k], 40, [this](double f) { return -(*this)(f); }).at;
            break;
        } else if (fall.edge && std::fabs(at[k] - *fall.edge) >= reach) {
            fall.null = *fall.edge + (to > from ? reach : -reach);
            break;
        }
        before = here;
        here = next;
    }
    return fall;
}

Peak<double> Gain::highest(double low, double high) const { return highest_value(places(low, high), *this); }

// Evenly from one frequency to the other.
std::vector<double> Gain::places(double from, double to) const {
    const int steps = whole_part(std::ceil(std::fabs(to - from) * points_per_lobe * filter_.FUNCTION(1).taps)) + 1;
    std::vector<double> places;
    for (int k = 0; k < steps; ++k) places.push_back(from + (to - from) * k / steps);
    places.push_back(to);
    return places;
}

}  // namespace

}  // namespace kavrel
