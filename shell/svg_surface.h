// A surface that writes a picture in SVG 1.1, for reports and for the console.
//
// Every line and text bears the class of its pen or place: "grid", "tick", "frame", "y1", "y2", "text". Places are
// written in pixels with three decimals, styles as attributes, so that any program that takes SVG shows the same
// picture. Text widths are those of the Helvetica metrics with room for the wider faces that may replace it.
#pragma once

#include <string>

#include "shell/plot.h"

namespace kavrel {

struct SvgSize {
    int width = 960;  // pixels; at least 320 by 240 is drawn
    int height = 600;
};

class SvgSurface : public PlotSurface {
public:
    explicit SvgSurface(SvgSize size);

    [[nodiscard]] double aspect() const override;
    [[nodiscard]] TextSize text_size(std::string_view text, double height) const override;
    void polyline(std::span<const PlotPoint> points, PlotPen pen) override;
    void text(const PlotText& text) override;
    void clear(const PlotArea& box) override;

    // The whole document, under a title that readers of the picture show.
    [[nodiscard]] std::string document(std::string_view title) const;

private:
    SvgSize size_;
    std::string body_;
};

// The picture of a plot window; empty when the window has no plot to draw.
[[nodiscard]] std::string plot_svg(const PlotWindow& window, SvgSize size = {});

}  // namespace kavrel
