#include "shell/plot.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

#include <fmt/format.h>

#include "shell/edit.h"
#include "shell/shown_text.h"
#include "shell/whole_part.h"

namespace kavrel {

namespace {

using std::string_view;

// Layout, in fractions of the window and points.
constexpr double margin = 0.02;  // around the texts
constexpr double gap = 0.005;    // between texts
constexpr double title_height = 12.0;
constexpr double tick_height = 10.0;
constexpr double label_height = 9.0;
constexpr double tick_length = 0.008;
constexpr string_view earlier_title = " (of an earlier filter)";
constexpr double legend_sample = 0.035;  // length of the line beside a legend's text

constexpr double thinning_step = 0.01;
constexpr int cursor_gap = 10;  // pixels

struct Extent {
    double lo = 0.0;
    double hi = 0.0;
};

Extent finite_extent(std::span<const float> values);
PlotAxis make_axis(std::span<const float> values, string_view label, bool is_x, const UnitSet& units,
                   int steps_beside = 0);
void lay_out(const PlotSurface& surface, PlotWindow& window);
void draw_x_axis(PlotSurface& surface, const PlotWindow& window);
void draw_y_axis(PlotSurface& surface, const PlotWindow& window, const PlotAxis& axis, bool at_left);
void draw_labels(PlotSurface& surface, const PlotWindow& window);
void draw_legend(PlotSurface& surface, const PlotWindow& window);
double fitted_height(const PlotSurface& surface, string_view text, double height, double room);

}  // namespace

void PlotSurface::line(PlotPoint from, PlotPoint to, PlotPen pen) {
    const std::array<PlotPoint, 2> ends{from, to};
    polyline(ends, pen);
}

// ---- the window ----

PlotVerdict plot_two(PlotWindow& window, const PlotRequest& request, const UnitSet& units) {
    const std::size_t n = request.x.size();
    const bool has_y2 = !request.y2.empty();
    if (request.y1.size() != n || (has_y2 && request.y2.size() != n)) return plot_messages::lengths_differ;
    if (n < 2) return plot_messages::too_few_points;
    if (n > static_cast<std::size_t>(plot_bound)) return plot_messages::too_many_points;

    PlotWindow fresh;  // the request may look into the old one
    fresh.open = true;
    fresh.print_id = request.print_id;
    fresh.source = request.source;
    fresh.point_count = static_cast<int>(n);
    fresh.has_y2 = has_y2;
    fresh.TITLE.assign(shown_text(request.title));
    fresh.y1_label = request.y1_label;
    std::copy(request.x.begin(), request.x.end(), fresh.X_DATA.begin());
    std::copy(request.y1.begin(), request.y1.end(), fresh.Y1_DATA.begin());
    fresh.x = make_axis(request.x, FixedText<36>(request.x_label).trimmed(), true, units);
    fresh.y1 = make_axis(request.y1, fresh.y1_label.trimmed(), false, units);
    if (has_y2) {
        fresh.y2_label = request.y2_label;
        std::copy(request.y2.begin(), request.y2.end(), fresh.Y2_DATA.begin());
        fresh.y2 = make_axis(request.y2, fresh.y2_label.trimmed(), false, units, fresh.y1.label_count - 1);
    }
    window = fresh;
    return {};
}

// ---- drawing ----

PlotVerdict draw_plot(PlotSurface& surface, PlotWindow& window) {
    if (const PlotVerdict verdict = start_plot_real(surface, window); !verdict.ok()) return verdict;
    plot_data(surface, window, 1);
    if (window.has_y2) {
        plot_data(surface, window, 2);
        draw_legend(surface, window);
    }
    return {};
}

PlotVerdict print_plot(PlotSurface& page, const PlotWindow& window) {
    PlotWindow copy = window;
    return draw_plot(page, copy);
}

PlotVerdict start_plot_real(PlotSurface& surface, PlotWindow& window) {
    if (window.x.label_count < 2) return plot_messages::few_x_labels;
    if (window.y1.label_count < 2) return plot_messages::few_y1_labels;
    if (window.has_y2 && window.y2.label_count < 2) return plot_messages::few_y2_labels;

    lay_out(surface, window);
    draw_x_axis(surface, window);
    draw_y_axis(surface, window, window.y1, true);
    if (window.has_y2) draw_y_axis(surface, window, window.y2, false);

    const PlotArea& area = window.area;
    const std::array<PlotPoint, 4> frame{
        {{area.left, area.top}, {area.left, area.bottom}, {area.right, area.bottom}, {area.right, area.top}}};
    surface.polyline(frame, PlotPen::frame);
    draw_labels(surface, window);
    return {};
}

void plot_data(PlotSurface& surface, const PlotWindow& window, int curve) {
    const auto& values = curve == 2 ? window.Y2_DATA : window.Y1_DATA;
    const PlotAxis& axis = curve == 2 ? window.y2 : window.y1;
    const PlotPen pen = curve == 2 ? PlotPen::y2 : PlotPen::y1;

    Table<PlotPoint, plot_bound> PLOT_DATA;
    std::size_t count = 0;
    const auto draw_run = [&] {
        std::span<PlotPoint> run = std::span(PLOT_DATA.cells).first(count);
        if (is_dashed(pen)) {
            run =
                run.first(thin_dashed(run, window.area.right - window.area.left, window.area.bottom - window.area.top));
        }
        if (run.size() == 1) {
            surface.line(run[0], run[0], pen);  // a point on its own
        } else if (!run.empty()) {
            surface.polyline(run, pen);
        }
        count = 0;
    };
    for (int i = 1; i <= window.point_count; ++i) {
        const auto x = static_cast<double>(window.X_DATA(i));
        const auto y = static_cast<double>(values(i));
        if (std::isfinite(x) && std::isfinite(y)) {
            PLOT_DATA.cells[count++] = {place_x(window, x), place_y(window, axis, y)};
        } else {
            draw_run();
        }
    }
    draw_run();
}

std::size_t thin_dashed(std::span<PlotPoint> points, double span_x, double span_y) {
    if (points.size() < 3) return points.size();
    std::size_t kept = 1;
    double path = 0.0;
    PlotPoint before = points[0];
    for (std::size_t i = 1; i < points.size(); ++i) {
        const PlotPoint here = points[i];
        path += std::max(std::abs(here.x - before.x) / span_x, std::abs(here.y - before.y) / span_y);
        before = here;
        if (path > thinning_step || i + 1 == points.size()) {
            points[kept++] = here;
            path = 0.0;
        }
    }
    return kept;
}

double place_x(const PlotWindow& window, double value) {
    const PlotArea& area = window.area;
    return area.left + (value - window.x.lo) / window.x.span * (area.right - area.left);
}

double place_y(const PlotWindow& window, const PlotAxis& axis, double value) {
    const PlotArea& area = window.area;
    return area.bottom - (value - axis.lo) / axis.span * (area.bottom - area.top);
}

// ---- cursor ----

CursorReadout read_cursor(const PlotWindow& window, PlotPoint pointer) {
    CursorReadout readout;
    const PlotArea& area = window.area;
    if (!window.open || pointer.x < area.left || pointer.x > area.right) return readout;

    const double x = window.x.lo + (pointer.x - area.left) / (area.right - area.left) * window.x.span;
    double nearest = std::numeric_limits<double>::infinity();
    for (int i = 1; i <= window.point_count; ++i) {
        const double distance = std::abs(static_cast<double>(window.X_DATA(i)) - x);
        if (distance < nearest) {
            nearest = distance;
            readout.point = i;
        }
    }
    if (readout.point == 0) return readout;

    const auto near_curve = [&](double value, const PlotAxis& axis) {
        const double height = axis.lo + (area.bottom - pointer.y) / (area.bottom - area.top) * axis.span;
        return std::abs(height - value) <= axis.snap;
    };
    const auto y1 = static_cast<double>(window.Y1_DATA(readout.point));
    const auto y2 = static_cast<double>(window.Y2_DATA(readout.point));
    readout.shown = true;
    readout.x = window.x.shown(static_cast<double>(window.X_DATA(readout.point)));
    readout.x_text.assign(fmt::format(" X = {:.7g}", readout.x));
    if (near_curve(y1, window.y1)) {
        readout.y1_shown = true;
        readout.y1 = window.y1.shown(y1);
        readout.y1_text.assign(fmt::format(" Y1 = {:.7g}", readout.y1));
    }
    if (window.has_y2 && near_curve(y2, window.y2)) {
        readout.y2_shown = true;
        readout.y2 = window.y2.shown(y2);
        readout.y2_text.assign(fmt::format(" Y2 = {:.7g}", readout.y2));
    }
    return readout;
}

PixelPoint place_cursor_box(PixelPoint pointer, PixelSize box, PixelSize window) {
    const auto along = [](int at, int length, int room) {
        if (at + cursor_gap + length <= room) return at + cursor_gap;
        return std::max(0, at - cursor_gap - length);
    };
    return {along(pointer.x, box.width, window.width), along(pointer.y, box.height, window.height)};
}

namespace {

// ---- steps of the window ----

Extent finite_extent(std::span<const float> values) {
    Extent extent{std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};
    for (const float value : values) {
        if (!std::isfinite(value)) continue;
        extent.lo = std::min(extent.lo, static_cast<double>(value));
        extent.hi = std::max(extent.hi, static_cast<double>(value));
    }
    return extent.lo <= extent.hi ? extent : Extent{};
}

PlotAxis make_axis(std::span<const float> values, string_view label, bool is_x, const UnitSet& units,
                   int steps_beside) {
    const Extent extent = finite_extent(values);
    PlotAxis axis = scale_text(extent.lo, extent.hi, 0, steps_beside);
    axis.data_min = extent.lo;
    axis.data_max = extent.hi;
    axis.label.assign(axis_label(label, axis, is_x, units));
    return axis;
}

// ---- steps of the drawing ----

// The widest tick label, at least that of "-9.00".
double tick_width(const PlotSurface& surface, const PlotAxis& axis) {
    double width = surface.text_size("-9.00", tick_height).width;
    for (int i = 1; i <= axis.label_count; ++i) {
        width = std::max(width, surface.text_size(trim(axis.LABELS(i).padded()), tick_height).width);
    }
    return width;
}

void lay_out(const PlotSurface& surface, PlotWindow& window) {
    const double label_line = surface.text_size("Trial legend", label_height).height;
    const double tick_line = surface.text_size("-9.00", tick_height).height;
    double ticks = tick_width(surface, window.y1);
    if (window.has_y2) ticks = std::max(ticks, tick_width(surface, window.y2));

    PlotArea& area = window.area;
    area.top = surface.text_size("Trial legend", title_height).height + margin + gap;
    area.left = ticks + label_line / surface.aspect() + margin + 2.0 * gap;
    area.right = 1.0 - area.left;
    area.bottom = 1.0 - tick_line - label_line - margin - 2.0 * gap;
}

// The labels of an axis that are written: every one, or so many that none touches its neighbour, 0 among them.
struct WrittenLabels {
    int first = 0;
    int stride = 1;

    [[nodiscard]] bool has(int i) const { return i >= first && (i - first) % stride == 0; }
};

WrittenLabels written_labels(const PlotAxis& axis, double label_size, double axis_length) {
    const int steps = axis.label_count - 1;
    WrittenLabels written;
    written.stride = std::max(1, whole_part(std::ceil(label_size * steps / axis_length)));
    const double to_zero = -axis.first * steps / (axis.last - axis.first);  // steps from the first label
    if (to_zero > 0.0 && to_zero < 1e6) written.first = whole_part(std::round(to_zero)) % written.stride;
    return written;
}

void draw_x_axis(PlotSurface& surface, const PlotWindow& window) {
    const PlotAxis& axis = window.x;
    const PlotArea& area = window.area;
    const WrittenLabels written = written_labels(axis, tick_width(surface, axis) + 2.0 * gap, area.right - area.left);
    for (int i = 0; i < axis.label_count; ++i) {
        const double x = place_x(window, axis.tick(i));
        surface.line({x, area.top}, {x, area.bottom}, PlotPen::grid);
        surface.line({x, area.bottom}, {x, area.bottom - tick_length * surface.aspect()}, PlotPen::tick);
        if (!written.has(i)) continue;
        surface.text({.text = trim(axis.LABELS(i + 1).padded()),
                      .at = {x, area.bottom + gap},
                      .height = tick_height,
                      .across = Across::middle,
                      .along = Along::top});
    }
}

void draw_y_axis(PlotSurface& surface, const PlotWindow& window, const PlotAxis& axis, bool at_left) {
    const PlotArea& area = window.area;
    const double edge = at_left ? area.left : area.right;
    const double inwards = at_left ? 1.0 : -1.0;
    const double line_height = surface.text_size("-9.00", tick_height).height;
    const WrittenLabels written = written_labels(axis, line_height, area.bottom - area.top);
    for (int i = 0; i < axis.label_count; ++i) {
        const double y = place_y(window, axis, axis.tick(i));
        if (at_left) surface.line({area.left, y}, {area.right, y}, PlotPen::grid);
        surface.line({edge, y}, {edge + inwards * tick_length, y}, PlotPen::tick);
        if (!written.has(i)) continue;
        surface.text({.text = trim(axis.LABELS(i + 1).padded()),
                      .at = {edge - inwards * gap, y},
                      .height = tick_height,
                      .across = at_left ? Across::right : Across::left,
                      .along = Along::middle});
    }
}

void draw_labels(PlotSurface& surface, const PlotWindow& window) {
    const PlotArea& area = window.area;
    const double middle = 0.5 * (area.left + area.right);
    const double level_room = 1.0 - 2.0 * margin;
    const double upright_room = (area.bottom - area.top) / surface.aspect();
    const auto write = [&](string_view text, PlotPoint at, double height, Along along) {
        surface.text({.text = text,
                      .at = at,
                      .height = fitted_height(surface, text, height, level_room),
                      .across = Across::middle,
                      .along = along});
    };
    const auto write_upwards = [&](string_view text, double x, Across across, PlotInk ink) {
        surface.text({.text = text,
                      .at = {x, 0.5 * (area.top + area.bottom)},
                      .height = fitted_height(surface, text, label_height, upright_room),
                      .across = across,
                      .along = Along::middle,
                      .ink = ink,
                      .upwards = true});
    };
    std::string title(trim(window.TITLE.padded()));
    if (window.earlier) title += earlier_title;
    write(title, {middle, margin}, title_height, Along::top);
    write(window.x.label.trimmed(), {middle, 1.0 - margin}, label_height, Along::bottom);
    write_upwards(window.y1.label.trimmed(), margin, Across::left, window.has_y2 ? PlotInk::y1 : PlotInk::plain);
    if (window.has_y2) write_upwards(window.y2.label.trimmed(), 1.0 - margin, Across::right, PlotInk::y2);
}

// A text too long for its room becomes smaller.
double fitted_height(const PlotSurface& surface, string_view text, double height, double room) {
    const double width = surface.text_size(text, height).width;
    return width <= room ? height : height * room / width;
}

// ---- steps of the legend ----

// Whether a curve runs through a box, by its places at most a two-hundredth of the window apart; of a line far longer
// than the window they are wider.
bool curves_cross(const PlotWindow& window, const PlotArea& box) {
    constexpr double most_parts = 1e4;
    for (const bool is_y2 : {false, true}) {
        const auto& values = is_y2 ? window.Y2_DATA : window.Y1_DATA;
        const PlotAxis& axis = is_y2 ? window.y2 : window.y1;
        PlotPoint before{};
        for (int i = 1; i <= window.point_count; ++i) {
            const PlotPoint here{place_x(window, static_cast<double>(window.X_DATA(i))),
                                 place_y(window, axis, static_cast<double>(values(i)))};
            if (i == 1) before = here;
            const double length = std::hypot(here.x - before.x, here.y - before.y);
            const int parts = std::isfinite(length) ? 1 + whole_part(std::min(length / 0.005, most_parts)) : 0;
            for (int k = 1; k <= parts; ++k) {
                const double t = static_cast<double>(k) / parts;
                const double x = before.x + t * (here.x - before.x);
                const double y = before.y + t * (here.y - before.y);
                if (x >= box.left && x <= box.right && y >= box.top && y <= box.bottom) return true;
            }
            before = here;
        }
    }
    return false;
}

// The first corner or edge of the plot area that the curves leave free, or none.
std::optional<PlotArea> legend_box(const PlotWindow& window, TextSize size) {
    const PlotArea& area = window.area;
    const double inset = 2.0 * tick_length;
    const double rights[] = {area.right - inset, area.left + inset + size.width,
                             0.5 * (area.left + area.right + size.width)};
    const double tops[] = {area.top + inset, area.bottom - inset - size.height,
                           0.5 * (area.top + area.bottom - size.height)};
    for (const double top : tops) {
        for (const double right : rights) {
            const PlotArea box{right - size.width, right, top, top + size.height};
            if (!curves_cross(window, box)) return box;
        }
    }
    return std::nullopt;
}

// Below each label of the y axes the line of its curve, where the label leaves room for it.
void draw_samples_at_labels(PlotSurface& surface, const PlotWindow& window) {
    const PlotArea& area = window.area;
    const double column = surface.text_size("Trial legend", label_height).height / surface.aspect();
    const auto draw = [&](string_view label, double x, PlotPen pen) {
        const double text = surface.text_size(label, label_height).width * surface.aspect();
        const double top = 0.5 * (area.top + area.bottom + text) + 2.0 * gap;
        const double bottom = top + legend_sample * surface.aspect();
        if (bottom <= area.bottom) surface.line({x, top}, {x, bottom}, pen);
    };
    draw(window.y1.label.trimmed(), margin + 0.5 * column, PlotPen::y1);
    draw(window.y2.label.trimmed(), 1.0 - margin - 0.5 * column, PlotPen::y2);
}

void draw_legend(PlotSurface& surface, const PlotWindow& window) {
    const string_view names[] = {window.y1_label.trimmed(), window.y2_label.trimmed()};
    const PlotPen pens[] = {PlotPen::y1, PlotPen::y2};
    const PlotInk inks[] = {PlotInk::y1, PlotInk::y2};
    const double pad = 2.0 * gap;
    const double beside = pad + legend_sample + pad + pad;  // all but the text
    const double room = window.area.right - window.area.left - 4.0 * tick_length - beside;
    double height = label_height;
    for (const string_view name : names) height = std::min(height, fitted_height(surface, name, height, room));

    const double text_width =
        std::max(surface.text_size(names[0], height).width, surface.text_size(names[1], height).width);
    const double line_height = surface.text_size("Trial legend", height).height + gap;
    const auto box = legend_box(window, {beside + text_width, 2.0 * line_height + 2.0 * gap});
    if (!box) {
        draw_samples_at_labels(surface, window);
        return;
    }

    surface.clear(*box);
    const std::array<PlotPoint, 5> border{{{box->left, box->top},
                                           {box->right, box->top},
                                           {box->right, box->bottom},
                                           {box->left, box->bottom},
                                           {box->left, box->top}}};
    surface.polyline(border, PlotPen::tick);
    for (std::size_t i = 0; i < 2; ++i) {
        const double y = box->top + gap + (static_cast<double>(i) + 0.5) * line_height;
        const double x = box->left + pad;
        surface.line({x, y}, {x + legend_sample, y}, pens[i]);
        surface.text({.text = names[i],
                      .at = {x + legend_sample + pad, y},
                      .height = height,
                      .along = Along::middle,
                      .ink = inks[i]});
    }
}

}  // namespace

}  // namespace kavrel
