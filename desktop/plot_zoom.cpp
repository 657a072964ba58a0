#include "desktop/plot_zoom.h"

#include <algorithm>
#include <string>

namespace kavrel {

namespace {

PlotAxis part_of_axis(const PlotAxis& whole, AxisRange range, std::string_view label, bool is_x);
std::string_view bare_label(const PlotAxis& axis);
void keep_seen_points(PlotWindow& window);
AxisRange part_of(const PlotAxis& axis, double from, double to);
AxisRange within(AxisRange range, const PlotAxis& whole);
PlotZoom within(PlotZoom zoom, const PlotWindow& whole);
AxisRange range_of(const PlotAxis& axis);

}  // namespace

PlotWindow zoomed_plot(const PlotWindow& whole, const PlotZoom& zoom) {
    PlotWindow window = whole;
    if (!zoom.on) return window;
    window.x = part_of_axis(whole.x, zoom.x, bare_label(whole.x), true);
    window.y1 = part_of_axis(whole.y1, zoom.y1, whole.y1_label.trimmed(), false);
    if (whole.has_y2) window.y2 = part_of_axis(whole.y2, zoom.y2, whole.y2_label.trimmed(), false);
    keep_seen_points(window);
    return window;
}

PlotZoom zoom_to(const PlotWindow& shown, const PlotWindow& whole, const PlotArea& box) {
    const PlotArea& area = shown.area;
    const auto across = [&](double x) { return std::clamp((x - area.left) / (area.right - area.left), 0.0, 1.0); };
    const auto upwards = [&](double y) { return std::clamp((area.bottom - y) / (area.bottom - area.top), 0.0, 1.0); };
    PlotZoom zoom;
    zoom.x = part_of(shown.x, across(box.left), across(box.right));
    zoom.y1 = part_of(shown.y1, upwards(box.bottom), upwards(box.top));
    zoom.y2 = part_of(shown.y2, upwards(box.bottom), upwards(box.top));
    return within(zoom, whole);
}

PlotZoom zoom_about(const PlotWindow& shown, const PlotWindow& whole, PlotPoint centre, double factor) {
    const PlotArea& area = shown.area;
    const double across = std::clamp((centre.x - area.left) / (area.right - area.left), 0.0, 1.0);
    const double upwards = std::clamp((area.bottom - centre.y) / (area.bottom - area.top), 0.0, 1.0);
    const auto about = [factor](const PlotAxis& axis, double at) {
        return part_of(axis, at - at / factor, at + (1.0 - at) / factor);
    };
    return within(
        {.on = true, .x = about(shown.x, across), .y1 = about(shown.y1, upwards), .y2 = about(shown.y2, upwards)},
        whole);
}

PlotZoom zoom_shifted(const PlotWindow& shown, double right, double down) {
    const auto shifted = [](const PlotAxis& axis, double by) {
        AxisRange range = range_of(axis);
        range.lo += by * axis.span;
        range.hi += by * axis.span;
        return range;
    };
    return {.on = true, .x = shifted(shown.x, right), .y1 = shifted(shown.y1, -down), .y2 = shifted(shown.y2, -down)};
}

namespace {

PlotAxis part_of_axis(const PlotAxis& whole, AxisRange range, std::string_view label, bool is_x) {
    PlotAxis axis = scale_text(range.lo, range.hi);
    axis.data_min = whole.data_min;
    axis.data_max = whole.data_max;
    axis.label.assign(axis_label(label, axis, is_x, UnitSet{}));
    return axis;
}

// The label behind an axis before scale factor and offset were added.
std::string_view bare_label(const PlotAxis& axis) {
    const std::string_view label = axis.label.trimmed();
    return label.substr(0, std::min(label.find(" xE"), label.find(", F0 = ")));
}

void keep_seen_points(PlotWindow& window) {
    const auto seen = [&](int i) {
        const auto x = static_cast<double>(window.X_DATA(i));
        return x >= window.x.lo && x <= window.x.hi;
    };
    int first = 0;
    int last = 0;
    for (int i = 1; i <= window.point_count; ++i) {
        if (!seen(i)) continue;
        if (first == 0) first = i;
        last = i;
    }
    if (first == 0) return;  // between two points
    first = std::max(1, first - 1);
    last = std::min(window.point_count, last + 1);
    for (auto* column : {&window.X_DATA, &window.Y1_DATA, &window.Y2_DATA}) {
        const auto begin = column->begin() + (first - 1);
        std::copy(begin, begin + (last - first + 1), column->begin());
    }
    window.point_count = last - first + 1;
}

AxisRange part_of(const PlotAxis& axis, double from, double to) {
    return {axis.lo + from * axis.span, axis.lo + to * axis.span};
}

// Not below the deepest zoom, and not above the whole.
AxisRange within(AxisRange range, const PlotAxis& whole) {
    const double least = whole.span / deepest_zoom;
    if (range.span() < least) {
        const double middle = 0.5 * (range.lo + range.hi);
        range = {middle - 0.5 * least, middle + 0.5 * least};
    }
    return {std::max(range.lo, whole.lo), std::min(range.hi, whole.hi)};
}

PlotZoom within(PlotZoom zoom, const PlotWindow& whole) {
    zoom.x = within(zoom.x, whole.x);
    zoom.y1 = within(zoom.y1, whole.y1);
    if (whole.has_y2) zoom.y2 = within(zoom.y2, whole.y2);
    const auto is_whole = [](const AxisRange& range, const PlotAxis& axis) {
        return range.span() >= 0.999 * axis.span;
    };
    zoom.on =
        !is_whole(zoom.x, whole.x) || !is_whole(zoom.y1, whole.y1) || (whole.has_y2 && !is_whole(zoom.y2, whole.y2));
    return zoom;
}

AxisRange range_of(const PlotAxis& axis) { return {axis.lo, axis.hi}; }

}  // namespace

}  // namespace kavrel
