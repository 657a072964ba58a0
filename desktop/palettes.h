// Light and dark: the colours of the windows and of plots. What goes to paper is always drawn light.
#pragma once

#include <QColor>
#include <QPalette>

namespace kavrel {

enum class Shade { light, dark };

[[nodiscard]] QPalette window_palette(Shade shade);
[[nodiscard]] bool is_dark(const QPalette& palette);

// Colours and line widths (pixels of a screen of 96 dots an inch) of a plot.
struct PlotColours {
    QColor paper;
    QColor text;
    QColor frame;
    QColor tick;
    QColor grid;
    QColor y1;
    QColor y2;
    QColor cursor;
    double curve_width = 1.7;
    double line_width = 1.0;
};

[[nodiscard]] PlotColours plot_colours(Shade shade);

// Of what must not pass unseen: an entry that is no number, a search without a hit.
[[nodiscard]] QColor alarm_paper(const QPalette& palette);
[[nodiscard]] QColor alarm_text(const QPalette& palette);

// Of what is as it should be.
[[nodiscard]] QColor good_paper(const QPalette& palette);
[[nodiscard]] QColor good_text(const QPalette& palette);

}  // namespace kavrel
