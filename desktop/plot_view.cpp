#include "desktop/plot_view.h"

#include <QKeyEvent>
#include <QPainter>
#include <QWheelEvent>
#include <cmath>

#include "desktop/painter_surface.h"
#include "desktop/text.h"
#include "shell/svg_surface.h"

namespace kavrel {

namespace {

constexpr double wheel_factor = 1.6;  // of a notch
constexpr double notch = 120.0;
constexpr double least_band = 6.0;  // pixels: a shorter rubber band is a click
constexpr double mark_radius = 4.5;
constexpr SvgSize svg_size{1200, 750};

QString with_digits(double value) { return QString::number(value, 'g', 7); }

}  // namespace

PlotView::PlotView(QWidget* parent) : QWidget(parent) {
    setObjectName("plot");
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::CrossCursor);
}

void PlotView::show_plot(const PlotWindow& plot) {
    whole_ = plot;
    mark_.reset();
    readout_ = {};
    set_zoom({});
}

void PlotView::mark_earlier(bool earlier) {
    if (whole_.earlier == earlier) return;
    whole_.earlier = shown_.earlier = earlier;
    redraw();
}

void PlotView::set_shade(Shade shade) {
    shade_ = shade;
    redraw();
}

void PlotView::show_all() { set_zoom({}); }

void PlotView::mark_here() {
    mark_ = values_at_cursor();
    update();
    emit cursor_moved();
}

void PlotView::clear_mark() {
    mark_.reset();
    update();
    emit cursor_moved();
}

void PlotView::step_cursor(int points) {
    if (!shown_.open) return;
    const int from = readout_.shown ? readout_.point : points > 0 ? 0 : shown_.point_count + 1;
    const int point = std::clamp(from + points, 1, shown_.point_count);
    move_cursor(pixel_of({place_x(shown_, static_cast<double>(shown_.X_DATA(point))),
                          place_y(shown_, shown_.y1, static_cast<double>(shown_.Y1_DATA(point)))}));
}

QImage PlotView::picture(QSize size) const {
    QImage image(size, QImage::Format_RGB32);
    // The texts keep their share of the picture.
    const int dots_per_meter = qRound(96.0 * size.width() / std::max(width(), 1) / 0.0254);
    image.setDotsPerMeterX(dots_per_meter);
    image.setDotsPerMeterY(dots_per_meter);
    const PlotColours colours = plot_colours(Shade::light);
    image.fill(colours.paper);
    QPainter painter(&image);
    PainterSurface surface(painter, image.rect(), colours);
    print_plot_clipped(surface, shown_);
    return image;
}

std::string PlotView::svg() const {
    SvgSurface surface(svg_size);
    return print_plot_clipped(surface, shown_) ? surface.document(plot_window_title) : std::string{};
}

QString PlotView::cursor_text() const {
    if (!readout_.shown) return {};
    QString text;
    for (const auto* one : {&readout_.x_text, &readout_.y1_text, &readout_.y2_text})
        text += ' ' + qt_text(one->trimmed());
    return text.simplified().replace(" Y", "   Y");
}

QString PlotView::difference_text() const {
    const auto here = values_at_cursor();
    if (!here || !mark_) return {};
    QString text = "dX = " + with_digits(shown_.x.shown(here->x - mark_->x)) +
                   "   dY1 = " + with_digits(shown_.y1.shown(here->y1 - mark_->y1));
    if (shown_.has_y2) text += "   dY2 = " + with_digits(shown_.y2.shown(here->y2 - mark_->y2));
    return text;
}

void PlotView::paintEvent(QPaintEvent*) {
    if (drawing_.isNull()) redraw();
    QPainter painter(this);
    painter.drawPixmap(0, 0, drawing_);
    if (!shown_.open) return;
    painter.setRenderHint(QPainter::Antialiasing);
    paint_cursor(painter);
    if (band_from_) {
        const QColor ink = plot_colours(shade_).cursor;
        painter.setPen(QPen(ink, 1.0, Qt::DashLine));
        painter.setBrush(QColor(ink.red(), ink.green(), ink.blue(), 30));
        painter.drawRect(QRectF(*band_from_, pointer_).normalized());
    }
    if (box_follows_ && readout_.shown) paint_readout_box(painter);
}

void PlotView::resizeEvent(QResizeEvent*) { redraw(); }

void PlotView::mousePressEvent(QMouseEvent* event) {
    switch (event->button()) {
        case Qt::LeftButton: box_follows_ = true; break;
        case Qt::RightButton: band_from_ = event->position(); break;
        case Qt::MiddleButton: shift_from_ = event->position(); break;
        default: break;
    }
    move_cursor(event->position());
}

void PlotView::mouseMoveEvent(QMouseEvent* event) {
    if (shift_from_ && zoom_.on) {
        const PlotPoint from = place_of(*shift_from_);
        const PlotPoint to = place_of(event->position());
        const PlotArea& area = shown_.area;
        set_zoom(zoom_shifted(shown_, (from.x - to.x) / (area.right - area.left),
                              (from.y - to.y) / (area.bottom - area.top)));
        shift_from_ = event->position();
    }
    move_cursor(event->position());
}

void PlotView::mouseReleaseEvent(QMouseEvent* event) {
    box_follows_ = false;
    shift_from_.reset();
    if (band_from_ && event->button() == Qt::RightButton) {
        const QRectF band = QRectF(*band_from_, event->position()).normalized();
        band_from_.reset();
        if (band.width() < least_band && band.height() < least_band) {
            emit menu_wanted(event->globalPosition().toPoint());
        } else if (band.width() >= least_band && band.height() >= least_band) {
            const PlotPoint first = place_of(band.topLeft());
            const PlotPoint last = place_of(band.bottomRight());
            set_zoom(zoom_to(shown_, whole_, {.left = first.x, .right = last.x, .top = first.y, .bottom = last.y}));
        }
    }
    update();
}

void PlotView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) mark_here();
}

void PlotView::enterEvent(QEnterEvent* event) { move_cursor(event->position()); }

void PlotView::leaveEvent(QEvent*) {
    readout_ = {};
    update();
    emit cursor_moved();
}

void PlotView::wheelEvent(QWheelEvent* event) {
    const double turned = event->angleDelta().y() / notch;
    if (turned == 0.0 || !shown_.open) return;
    set_zoom(zoom_about(shown_, whole_, place_of(event->position()), std::pow(wheel_factor, turned)));
    move_cursor(event->position());
    event->accept();
}

void PlotView::keyPressEvent(QKeyEvent* event) {
    const int stride = (event->modifiers() & Qt::ControlModifier) != 0 ? 10 : 1;
    switch (event->key()) {
        case Qt::Key_Left: step_cursor(-stride); break;
        case Qt::Key_Right: step_cursor(stride); break;
        case Qt::Key_M: mark_here(); break;
        case Qt::Key_Plus:
        case Qt::Key_Equal: zoom_in(); break;
        case Qt::Key_Minus: zoom_out(); break;
        case Qt::Key_0: show_all(); break;
        case Qt::Key_Escape: mark_ ? clear_mark() : show_all(); break;
        default: QWidget::keyPressEvent(event);
    }
}

PlotPoint PlotView::place_of(QPointF pixel) const {
    return {pixel.x() / std::max(1, width()), pixel.y() / std::max(1, height())};
}

QPointF PlotView::pixel_of(PlotPoint place) const { return {place.x * width(), place.y * height()}; }

void PlotView::set_zoom(const PlotZoom& zoom) {
    zoom_ = zoom;
    shown_ = zoomed_plot(whole_, zoom_);
    redraw();
    emit cursor_moved();
}

void PlotView::zoom_by(double factor) {
    if (!shown_.open) return;
    const PlotArea& area = shown_.area;
    const PlotPoint middle{0.5 * (area.left + area.right), 0.5 * (area.top + area.bottom)};
    set_zoom(zoom_about(shown_, whole_, readout_.shown ? place_of(pointer_) : middle, factor));
}

void PlotView::redraw() {
    const double ratio = devicePixelRatioF();
    drawing_ = QPixmap(size() * ratio);
    drawing_.setDevicePixelRatio(ratio);
    const PlotColours colours = plot_colours(shade_);
    drawing_.fill(colours.paper);
    if (shown_.open && !size().isEmpty()) {
        QPainter painter(&drawing_);
        PainterSurface surface(painter, rect(), colours);
        draw_plot_clipped(surface, shown_);
    }
    update();
}

void PlotView::move_cursor(QPointF pixel) {
    pointer_ = pixel;
    readout_ = read_cursor(shown_, place_of(pixel));
    update();
    emit cursor_moved();
}

std::optional<PlotView::Mark> PlotView::values_at_cursor() const {
    if (!readout_.shown || readout_.point < 1 || readout_.point > shown_.point_count) return std::nullopt;
    return Mark{.x = static_cast<double>(shown_.X_DATA(readout_.point)),
                .y1 = static_cast<double>(shown_.Y1_DATA(readout_.point)),
                .y2 = static_cast<double>(shown_.Y2_DATA(readout_.point))};
}

void PlotView::paint_cursor(QPainter& painter) const {
    const PlotColours colours = plot_colours(shade_);
    const PlotArea& area = shown_.area;
    painter.save();
    painter.setClipRect(QRectF(pixel_of({area.left, area.top}), pixel_of({area.right, area.bottom})));
    const auto paint_point = [&](const Mark& at, const QPen& line, bool on_y1, bool on_y2) {
        const double x = place_x(shown_, at.x);
        painter.setPen(line);
        painter.setBrush(Qt::NoBrush);
        painter.drawLine(pixel_of({x, area.top}), pixel_of({x, area.bottom}));
        const auto ring = [&](const PlotAxis& axis, double y, const QColor& ink) {
            painter.setPen(QPen(ink, 1.6));
            painter.setBrush(colours.paper);
            painter.drawEllipse(pixel_of({x, place_y(shown_, axis, y)}), mark_radius, mark_radius);
        };
        if (on_y1) ring(shown_.y1, at.y1, colours.y1);
        if (on_y2) ring(shown_.y2, at.y2, colours.y2);
    };
    if (mark_) paint_point(*mark_, QPen(colours.cursor, 1.2, Qt::DashLine), true, shown_.has_y2);
    if (const auto here = values_at_cursor()) {
        paint_point(*here, QPen(colours.cursor, 1.0), readout_.y1_shown, readout_.y2_shown);
    }
    painter.restore();
}

void PlotView::paint_readout_box(QPainter& painter) const {
    QStringList lines{qt_text(cursor_box_title)};
    for (const auto* one : {&readout_.x_text, &readout_.y1_text, &readout_.y2_text}) {
        if (!one->is_blank()) lines.append(qt_text(trim(one->padded())));
    }
    if (!difference_text().isEmpty()) lines.append(difference_text().split("   "));
    const QFontMetrics metrics = fontMetrics();
    int widest = 0;
    for (const QString& line : lines) widest = std::max(widest, metrics.horizontalAdvance(line));
    const PixelSize box{widest + 16, static_cast<int>(lines.size()) * metrics.height() + 12};
    const PixelPoint corner = place_cursor_box({qRound(pointer_.x()), qRound(pointer_.y())}, box, {width(), height()});

    painter.setPen(palette().color(QPalette::Mid));
    painter.setBrush(palette().color(QPalette::ToolTipBase));
    painter.drawRect(QRectF(corner.x + 0.5, corner.y + 0.5, box.width, box.height));
    painter.setPen(palette().color(QPalette::ToolTipText));
    int y = corner.y + 6 + metrics.ascent();
    for (const QString& line : lines) {
        QFont type = font();
        type.setBold(line == lines.first());
        painter.setFont(type);
        painter.drawText(corner.x + 8, y, line);
        y += metrics.height();
    }
}

}  // namespace kavrel
