#include "desktop/icons.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <algorithm>

namespace kavrel {

namespace {

constexpr double side = 24.0;  // of the square that the pictures are drawn in
constexpr QRgb accent = 0xff2f80d0;

struct ToolbarPicture {
    int item_id;
    void (*draw)(QPainter& painter);
};

void draw_text_page(QPainter& p);
void draw_stored_filter(QPainter& p);
void draw_sign(QPainter& p, const QString& sign);
void draw_new_design(QPainter& p);
void draw_units(QPainter& p);
void draw_page(QPainter& p);
QPainterPath response(double left, double top, double width, double height);
void draw_folder(QPainter& p);

constexpr ToolbarPicture pictures[] = {
    {129, draw_text_page},  {130, draw_stored_filter}, {142, [](QPainter& p) { draw_sign(p, "i"); }},
    {166, draw_new_design}, {143, draw_units},         {159, [](QPainter& p) { draw_sign(p, "?"); }},
};

template <class Draw>
QPixmap drawn(int pixels, const Draw& draw) {
    QPixmap picture(pixels, pixels);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(pixels / side, pixels / side);
    draw(painter);
    return picture;
}

}  // namespace

QIcon toolbar_icon(int item_id, const QColor& ink) {
    const auto found = std::ranges::find(pictures, item_id, &ToolbarPicture::item_id);
    QIcon icon;
    for (const int pixels : {24, 48}) {
        icon.addPixmap(drawn(pixels, [&](QPainter& painter) {
            painter.setPen(QPen(ink, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
            found == std::end(pictures) ? draw_page(painter) : found->draw(painter);
        }));
    }
    return icon;
}

QIcon program_icon() {
    QIcon icon;
    for (const int pixels : {16, 32, 48, 128}) {
        icon.addPixmap(drawn(pixels, [](QPainter& painter) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(QColor(0x17324d));
            painter.drawRoundedRect(QRectF(1, 1, 22, 22), 4, 4);
            painter.setBrush(Qt::NoBrush);
            painter.setPen(QPen(QColor(0x5d7894), 1.0));
            painter.drawPolyline(QPolygonF({{4.5, 4.5}, {4.5, 19.5}, {20, 19.5}}));
            painter.setPen(QPen(QColor(0x7fd1ff), 2.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
            painter.drawPath(response(6, 7, 13.5, 9.5));
        }));
    }
    return icon;
}

namespace {

void draw_text_page(QPainter& p) {
    draw_page(p);
    for (const double y : {11.0, 14.0, 17.0}) p.drawLine(QPointF(8, y), QPointF(16, y));
}

void draw_stored_filter(QPainter& p) {
    draw_folder(p);
    p.setPen(QPen(QColor(accent), 1.8));
    p.drawPath(response(8.5, 13, 9.5, 4.5));
}

void draw_sign(QPainter& p, const QString& sign) {
    p.drawEllipse(QPointF(12, 12), 9.2, 9.2);
    QFont font = p.font();
    font.setPixelSize(14);
    font.setBold(true);
    p.setFont(font);
    p.setPen(QColor(accent));
    p.drawText(QRectF(0, 0, side, side), Qt::AlignCenter, sign);
}

void draw_new_design(QPainter& p) {
    p.drawPolyline(QPolygonF({{3, 3}, {3, 21}, {21, 21}}));
    p.setPen(QPen(QColor(accent), 2.0));
    p.drawPath(response(5, 6, 15, 11));
}

void draw_units(QPainter& p) {
    p.drawPolygon(QPolygonF({{2, 8.5}, {22, 8.5}, {22, 16}, {2, 16}}));
    for (int i = 1; i < 8; ++i) p.drawLine(QPointF(2 + 2.5 * i, 8.5), QPointF(2 + 2.5 * i, i % 2 == 0 ? 13.0 : 11.0));
}

void draw_page(QPainter& p) {
    p.drawPolygon(QPolygonF({{5, 2.5}, {14.5, 2.5}, {19, 7}, {19, 21.5}, {5, 21.5}}));
    p.drawPolyline(QPolygonF({{14.5, 2.5}, {14.5, 7}, {19, 7}}));
}

// The loss of a low-pass: a flat pass band, the step, ripples of the stopband.
QPainterPath response(double left, double top, double width, double height) {
    QPainterPath path(QPointF(left, top));
    path.lineTo(left + 0.38 * width, top);
    path.cubicTo(left + 0.50 * width, top, left + 0.52 * width, top + 0.35 * height, left + 0.58 * width, top + height);
    path.quadTo(left + 0.68 * width, top + 0.45 * height, left + 0.78 * width, top + height);
    path.quadTo(left + 0.88 * width, top + 0.55 * height, left + width, top + 0.9 * height);
    return path;
}

void draw_folder(QPainter& p) {
    p.drawPolyline(QPolygonF({{3, 19}, {3, 5}, {9, 5}, {11, 8}, {19, 8}, {19, 11}}));
    p.drawPolygon(QPolygonF({{3, 19}, {6.5, 11}, {22, 11}, {18.5, 19}}));
}

}  // namespace

}  // namespace kavrel
