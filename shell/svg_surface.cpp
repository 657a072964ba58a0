#include "shell/svg_surface.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <fmt/format.h>

#include "shell/shown_text.h"
#include "shell/utf8.h"

namespace kavrel {

namespace {

constexpr double pixels_per_point = 4.0 / 3.0;
constexpr double line_height = 1.4;      // of a text's box, in heights of its type
constexpr double ascent = 1.06;          // from the top of the box to the base line
constexpr double half_capital = 0.36;    // from the middle of a capital to the base line
constexpr double stand_in_width = 1.15;  // of the faces that may replace it, against the metrics
constexpr std::string_view faces = "Arial, Helvetica, 'Liberation Sans', 'DejaVu Sans', sans-serif";

// Widths of the Helvetica characters ' ' to '~', in thousandths of the type's height.
constexpr std::array<int, 95> character_widths = {
    278,  278, 355, 556, 556, 889, 667, 191, 333, 333, 389, 584, 278, 333, 278, 278,  //  !"#$%&'()*+,-./
    556,  556, 556, 556, 556, 556, 556, 556, 556, 556, 278, 278, 584, 584, 584, 556,  // 0123456789:;<=>?
    1015, 667, 667, 722, 722, 667, 611, 778, 722, 278, 500, 667, 556, 833, 722, 778,  // @ABCDEFGHIJKLMNO
    667,  778, 722, 667, 611, 722, 667, 944, 667, 667, 611, 278, 278, 278, 469, 556,  // PQRSTUVWXYZ[\]^_
    333,  556, 556, 500, 556, 556, 278, 556, 556, 222, 222, 500, 222, 833, 556, 556,  // `abcdefghijklmno
    556,  556, 333, 500, 278, 556, 500, 722, 500, 500, 500, 334, 260, 334, 584};      // pqrstuvwxyz{|}~
constexpr int other_width = 700;

struct PenStyle {
    std::string_view name;
    std::string_view style;
};

PenStyle style_of(PlotPen pen);
std::string_view colour_of(PlotInk ink);
std::string escaped(std::string_view text);
std::string pixels(double value);

}  // namespace

std::string plot_svg(const PlotWindow& window, SvgSize size) {
    if (!window.open || window.point_count < 2) return {};
    SvgSurface surface(size);
    if (!print_plot(surface, window).ok()) return {};
    return surface.document(plot_window_title);
}

SvgSurface::SvgSurface(SvgSize size) : size_{std::max(size.width, 320), std::max(size.height, 240)} {}

double SvgSurface::aspect() const { return static_cast<double>(size_.width) / size_.height; }

TextSize SvgSurface::text_size(std::string_view text, double height) const {
    int width = 0;
    for (const char c : text) {
        if (c >= ' ' && c <= '~') {
            width += character_widths[static_cast<std::size_t>(c - ' ')];
        } else if (utf8_starts(c)) {
            width += other_width;
        }
    }
    const double type = height * pixels_per_point;
    return {width / 1000.0 * type * stand_in_width / size_.width, type * line_height / size_.height};
}

void SvgSurface::polyline(std::span<const PlotPoint> points, PlotPen pen) {
    if (points.empty()) return;
    const PenStyle style = style_of(pen);
    body_ += fmt::format("<polyline class=\"{}\" {} points=\"", style.name, style.style);
    const char* separator = "";
    for (const PlotPoint& point : points) {
        body_ += fmt::format("{}{},{}", separator, pixels(point.x * size_.width), pixels(point.y * size_.height));
        separator = " ";
    }
    body_ += "\"/>\n";
}

void SvgSurface::text(const PlotText& text) {
    if (text.text.empty()) return;
    const double type = text.height * pixels_per_point;
    const double x = text.at.x * size_.width;
    const double y = text.at.y * size_.height;

    // Level text moves to its base line downwards; text that runs upwards moves to it rightwards, and its ends lie
    // along y.
    double base = 0.0;
    std::string_view anchor = "middle";
    if (text.upwards) {
        base = text.across == Across::left    ? ascent * type
               : text.across == Across::right ? -(line_height - ascent) * type
                                              : half_capital * type;
        anchor = text.along == Along::top ? "end" : text.along == Along::bottom ? "start" : "middle";
        body_ +=
            fmt::format("<text class=\"text\" transform=\"translate({},{}) rotate(-90)\"", pixels(x + base), pixels(y));
    } else {
        base = text.along == Along::top      ? ascent * type
               : text.along == Along::bottom ? -(line_height - ascent) * type
                                             : half_capital * type;
        anchor = text.across == Across::right ? "end" : text.across == Across::left ? "start" : "middle";
        body_ += fmt::format("<text class=\"text\" x=\"{}\" y=\"{}\"", pixels(x), pixels(y + base));
    }
    body_ += fmt::format(" font-size=\"{:.4g}\" text-anchor=\"{}\" fill=\"{}\">{}</text>\n", type, anchor,
                         colour_of(text.ink), escaped(text.text));
}

void SvgSurface::clear(const PlotArea& box) {
    body_ += fmt::format("<rect class=\"paper\" x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\" fill=\"#ffffff\"/>\n",
                         pixels(box.left * size_.width), pixels(box.top * size_.height),
                         pixels((box.right - box.left) * size_.width), pixels((box.bottom - box.top) * size_.height));
}

std::string SvgSurface::document(std::string_view title) const {
    return fmt::format(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<svg xmlns=\"http://www.w3.org/2000/svg\" version=\"1.1\" width=\"{0}\" height=\"{1}\" viewBox=\"0 0 {0} "
        "{1}\"\n"
        "     font-family=\"{2}\">\n"
        "<title>{3}</title>\n"
        "<rect class=\"paper\" width=\"{0}\" height=\"{1}\" fill=\"#ffffff\"/>\n"
        "{4}</svg>\n",
        size_.width, size_.height, faces, escaped(title), body_);
}

namespace {

PenStyle style_of(PlotPen pen) {
    switch (pen) {
        case PlotPen::grid: return {"grid", R"(fill="none" stroke="#d4d8dd" stroke-width="0.75")"};
        case PlotPen::tick: return {"tick", R"(fill="none" stroke="#5c6670" stroke-width="0.75")"};
        case PlotPen::frame: return {"frame", R"(fill="none" stroke="#2b3137" stroke-width="1")"};
        case PlotPen::y1:
            return {
                "y1",
                R"(fill="none" stroke="#1b5fa8" stroke-width="1.5" stroke-linejoin="round" stroke-linecap="round")"};
        case PlotPen::y2: break;
    }
    return {
        "y2",
        R"(fill="none" stroke="#c0341d" stroke-width="1.5" stroke-linejoin="round" stroke-linecap="round" stroke-dasharray="6 4.5")"};
}

std::string_view colour_of(PlotInk ink) {
    switch (ink) {
        case PlotInk::y1: return "#1b5fa8";
        case PlotInk::y2: return "#c0341d";
        case PlotInk::plain: break;
    }
    return "#1f2328";
}

// As XML takes it: its own characters as entities.
std::string escaped(std::string_view text) {
    std::string out;
    for (const char c : shown_text(text)) {
        if (c == '&') {
            out += "&amp;";
        } else if (c == '<') {
            out += "&lt;";
        } else if (c == '>') {
            out += "&gt;";
        } else {
            out += c;
        }
    }
    return out;
}

// Three decimals, without the zeros at the end.
std::string pixels(double value) {
    std::string text = fmt::format("{:.3f}", value);
    while (text.back() == '0') text.pop_back();
    if (text.back() == '.') text.pop_back();
    return text;
}

}  // namespace

}  // namespace kavrel
