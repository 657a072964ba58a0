// A closer look at a plot: the same curves over a part of the axes. The plot itself stays as the logic made it.
#pragma once

#include "shell/plot.h"

namespace kavrel {

struct AxisRange {
    double lo = 0.0;
    double hi = 0.0;

    [[nodiscard]] double span() const { return hi - lo; }
};

struct PlotZoom {
    bool on = false;  // otherwise the whole plot is shown
    AxisRange x;
    AxisRange y1;
    AxisRange y2;
};

// How much closer than the whole an axis can be looked at.
inline constexpr double deepest_zoom = 2000.0;

// The plot with its axes over the zoom's ranges, made round as those of the whole are. Of the curves those points stay
// that are seen, and one more on each side.
[[nodiscard]] PlotWindow zoomed_plot(const PlotWindow& whole, const PlotZoom& zoom);

// The ranges that a rectangle of the window, as it is shown now, spans.
[[nodiscard]] PlotZoom zoom_to(const PlotWindow& shown, const PlotWindow& whole, const PlotArea& box);

// The ranges around a point of the window, which keeps its place: `factor` above 1 looks closer. Back at the whole plot
// or beyond, the zoom is off.
[[nodiscard]] PlotZoom zoom_about(const PlotWindow& shown, const PlotWindow& whole, PlotPoint centre, double factor);

// The ranges shifted by fractions of the plot area.
[[nodiscard]] PlotZoom zoom_shifted(const PlotWindow& shown, double right, double down);

}  // namespace kavrel
