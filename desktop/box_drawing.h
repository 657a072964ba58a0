// Box drawing characters as lines on the pixel grid. The glyphs of a font leave gaps between rows at many sizes,
// because rows begin at whole pixels; lines from edge to edge of a cell always meet.
#pragma once

#include <QChar>
#include <QPainter>
#include <QRect>

namespace kavrel {

// Whether the character is one of the light lines, corners and crossings.
[[nodiscard]] bool is_box_line(QChar character);

// Draws one into its cell, over whatever the cell holds.
void draw_box_line(QPainter& painter, const QRect& cell, QChar character, const QColor& ink, const QColor& paper);

}  // namespace kavrel
