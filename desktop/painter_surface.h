// A plot on a QPainter, and the clipping that a zoomed plot needs on any surface.
#pragma once

#include <QPainter>

#include "desktop/palettes.h"
#include "shell/plot.h"

namespace kavrel {

class PainterSurface final : public PlotSurface {
public:
    // `box` is the window on the device; heights of text and line widths follow the device's resolution.
    PainterSurface(QPainter& painter, const QRectF& box, const PlotColours& colours);

    [[nodiscard]] double aspect() const override;
    [[nodiscard]] TextSize text_size(std::string_view text, double height) const override;
    void polyline(std::span<const PlotPoint> points, PlotPen pen) override;
    void text(const PlotText& text) override;
    void clear(const PlotArea& box) override;

private:
    [[nodiscard]] QFont font(double height) const;
    [[nodiscard]] QPen pen(PlotPen pen) const;
    [[nodiscard]] QPointF place(PlotPoint point) const;

    QPainter& painter_;
    QRectF box_;
    PlotColours colours_;
    double dots_;  // of the device in a pixel of a screen of 96 dots an inch
};

// Hands everything on to another surface, the curves only as far as they lie in the plot area: a part of a plot that is
// looked at closer has curves that go on beyond it.
class ClippedSurface final : public PlotSurface {
public:
    // `area` is read while curves are drawn: the plot area as it has just been laid out.
    ClippedSurface(PlotSurface& surface, const PlotArea& area) : surface_(surface), area_(area) {}

    [[nodiscard]] double aspect() const override { return surface_.aspect(); }
    [[nodiscard]] TextSize text_size(std::string_view text, double height) const override {
        return surface_.text_size(text, height);
    }
    void polyline(std::span<const PlotPoint> points, PlotPen pen) override;
    void text(const PlotText& text) override { surface_.text(text); }
    void clear(const PlotArea& box) override { surface_.clear(box); }

private:
    PlotSurface& surface_;
    const PlotArea& area_;
};

// Draws a plot window, or a part of one, on a surface. The window keeps its plot area in the first form.
bool draw_plot_clipped(PlotSurface& surface, PlotWindow& window);
bool print_plot_clipped(PlotSurface& surface, const PlotWindow& window);

}  // namespace kavrel
