#include "desktop/painter_surface.h"

#include <QFontMetricsF>
#include <QPaintDevice>
#include <algorithm>
#include <array>
#include <optional>
#include <vector>

#include "desktop/text.h"

namespace kavrel {

namespace {

constexpr double pixels_per_inch = 96.0;
constexpr double points_per_inch = 72.0;

struct Segment {
    PlotPoint from;
    PlotPoint to;
};

std::optional<Segment> clipped(Segment line, const PlotArea& area);

}  // namespace

PainterSurface::PainterSurface(QPainter& painter, const QRectF& box, const PlotColours& colours)
    : painter_(painter), box_(box), colours_(colours), dots_(painter.device()->logicalDpiY() / pixels_per_inch) {
    painter_.setRenderHint(QPainter::Antialiasing);
}

double PainterSurface::aspect() const { return box_.width() / box_.height(); }

TextSize PainterSurface::text_size(std::string_view text, double height) const {
    const QFontMetricsF metrics(font(height), painter_.device());
    return {metrics.horizontalAdvance(qt_text(text)) / box_.width(), metrics.height() / box_.height()};
}

void PainterSurface::polyline(std::span<const PlotPoint> points, PlotPen pen_kind) {
    QPolygonF line;
    line.reserve(static_cast<qsizetype>(points.size()));
    for (const PlotPoint& point : points) line.append(place(point));
    painter_.setPen(pen(pen_kind));
    painter_.drawPolyline(line);
}

void PainterSurface::text(const PlotText& text) {
    const QFont type = font(text.height);
    const QFontMetricsF metrics(type, painter_.device());
    const QString letters = qt_text(text.text);
    const double width = metrics.horizontalAdvance(letters);
    const double height = metrics.height();
    // The box as it is drawn, turned or not, by its two anchors.
    const QSizeF box = text.upwards ? QSizeF(height, width) : QSizeF(width, height);
    QPointF corner = place(text.at);
    if (text.across != Across::left) corner.rx() -= text.across == Across::right ? box.width() : 0.5 * box.width();
    if (text.along != Along::top) corner.ry() -= text.along == Along::bottom ? box.height() : 0.5 * box.height();

    painter_.save();
    painter_.setFont(type);
    painter_.setPen(text.ink == PlotInk::y1 ? colours_.y1 : text.ink == PlotInk::y2 ? colours_.y2 : colours_.text);
    if (text.upwards) {
        painter_.translate(corner.x(), corner.y() + box.height());
        painter_.rotate(-90.0);
    } else {
        painter_.translate(corner);
    }
    painter_.drawText(QPointF(0.0, metrics.ascent()), letters);
    painter_.restore();
}

void PainterSurface::clear(const PlotArea& box) {
    painter_.fillRect(QRectF(place({box.left, box.top}), place({box.right, box.bottom})), colours_.paper);
}

QFont PainterSurface::font(double height) const {
    QFont type;
    type.setFamilies({"Arial", "Liberation Sans", "DejaVu Sans", "sans-serif"});
    type.setStyleHint(QFont::SansSerif);
    type.setPixelSize(std::max(1, qRound(height * painter_.device()->logicalDpiY() / points_per_inch)));
    return type;
}

QPen PainterSurface::pen(PlotPen pen) const {
    const auto line = [&](const QColor& colour, double width) {
        return QPen(colour, width * dots_, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    };
    switch (pen) {
        case PlotPen::frame: return line(colours_.frame, colours_.line_width);
        case PlotPen::tick: return line(colours_.tick, colours_.line_width);
        case PlotPen::grid: return line(colours_.grid, colours_.line_width);
        case PlotPen::y1: return line(colours_.y1, colours_.curve_width);
        case PlotPen::y2: break;
    }
    QPen dashed = line(colours_.y2, colours_.curve_width);
    dashed.setCapStyle(Qt::FlatCap);
    dashed.setDashPattern({4.0, 2.6});
    return dashed;
}

QPointF PainterSurface::place(PlotPoint point) const {
    return {box_.left() + point.x * box_.width(), box_.top() + point.y * box_.height()};
}

void ClippedSurface::polyline(std::span<const PlotPoint> points, PlotPen pen) {
    if (pen != PlotPen::y1 && pen != PlotPen::y2) {
        surface_.polyline(points, pen);
        return;
    }
    std::vector<PlotPoint> run;
    const auto draw_run = [&] {
        if (run.size() > 1) surface_.polyline(run, pen);
        run.clear();
    };
    for (std::size_t i = 1; i < points.size(); ++i) {
        const auto part = clipped({points[i - 1], points[i]}, area_);
        if (!part) {
            draw_run();
            continue;
        }
        if (run.empty() || !(run.back() == part->from)) {
            draw_run();
            run.push_back(part->from);
        }
        run.push_back(part->to);
    }
    draw_run();
}

bool draw_plot_clipped(PlotSurface& surface, PlotWindow& window) {
    ClippedSurface inside(surface, window.area);
    return draw_plot(inside, window).ok();
}

bool print_plot_clipped(PlotSurface& surface, const PlotWindow& window) {
    PlotWindow copy = window;
    return draw_plot_clipped(surface, copy);
}

namespace {

// The part of a straight line that lies in a rectangle (Liang and Barsky 1984).
std::optional<Segment> clipped(Segment line, const PlotArea& area) {
    const double dx = line.to.x - line.from.x;
    const double dy = line.to.y - line.from.y;
    const std::array<std::array<double, 2>, 4> edges{{{-dx, line.from.x - area.left},
                                                      {dx, area.right - line.from.x},
                                                      {-dy, line.from.y - area.top},
                                                      {dy, area.bottom - line.from.y}}};
    double enters = 0.0;
    double leaves = 1.0;
    for (const auto& [step, room] : edges) {
        if (step == 0.0) {
            if (room < 0.0) return std::nullopt;
        } else if (step < 0.0) {
            enters = std::max(enters, room / step);
        } else {
            leaves = std::min(leaves, room / step);
        }
    }
    if (enters > leaves) return std::nullopt;
    const auto at = [&](double t) { return PlotPoint{line.from.x + t * dx, line.from.y + t * dy}; };
    return Segment{enters > 0.0 ? at(enters) : line.from, leaves < 1.0 ? at(leaves) : line.to};
}

}  // namespace

}  // namespace kavrel
