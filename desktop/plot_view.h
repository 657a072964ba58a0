// The plot on the screen, with its cursor, a mark to measure from, and a closer look by wheel and rubber band.
//
//   move             readout of the point nearest in x
//   left button      the box "Cursor Position" follows the pointer
//   right button     a rubber band: that part is looked at closer (a click opens the menu)
//   wheel            closer or farther, around the pointer
//   middle button    shifts what is seen
#pragma once

#include <QPixmap>
#include <QWidget>
#include <optional>

#include "desktop/palettes.h"
#include "desktop/plot_zoom.h"
#include "shell/plot.h"

namespace kavrel {

class PlotView : public QWidget {
    Q_OBJECT

public:
    explicit PlotView(QWidget* parent = nullptr);

    void show_plot(const PlotWindow& plot);
    void mark_earlier(bool earlier);
    void set_shade(Shade shade);

    // As it is seen now, with its axes and its plot area.
    [[nodiscard]] const PlotWindow& shown() const { return shown_; }
    [[nodiscard]] const CursorReadout& readout() const { return readout_; }

    void zoom_in() { zoom_by(2.0); }
    void zoom_out() { zoom_by(0.5); }
    void show_all();

    // The point under the cursor becomes the one that differences are taken from.
    void mark_here();
    void clear_mark();
    // To the next point of the curves, on the first of them.
    void step_cursor(int points);

    // What is seen, drawn light.
    [[nodiscard]] QImage picture(QSize size) const;
    [[nodiscard]] std::string svg() const;

    // "X = 1.25  Y1 = 3.01" and "dX = 0.25  dY1 = 0.01"; blank where there is nothing to read.
    [[nodiscard]] QString cursor_text() const;
    [[nodiscard]] QString difference_text() const;

    [[nodiscard]] QSize sizeHint() const override { return {820, 560}; }
    [[nodiscard]] QSize minimumSizeHint() const override { return {360, 260}; }

signals:
    void cursor_moved();
    void menu_wanted(const QPoint& at);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    [[nodiscard]] PlotPoint place_of(QPointF pixel) const;
    [[nodiscard]] QPointF pixel_of(PlotPoint place) const;
    void set_zoom(const PlotZoom& zoom);
    void zoom_by(double factor);
    void redraw();
    void move_cursor(QPointF pixel);
    void paint_cursor(QPainter& painter) const;
    void paint_readout_box(QPainter& painter) const;

    Shade shade_ = Shade::light;
    PlotWindow whole_;
    PlotWindow shown_;
    PlotZoom zoom_;
    QPixmap drawing_;
    QPointF pointer_;
    CursorReadout readout_;
    struct Mark {
        double x = 0.0;  // values of the curves there, in their own units
        double y1 = 0.0;
        double y2 = 0.0;
    };
    [[nodiscard]] std::optional<Mark> values_at_cursor() const;
    std::optional<Mark> mark_;
    std::optional<QPointF> band_from_;   // of the rubber band
    std::optional<QPointF> shift_from_;  // where the plot was taken hold of
    bool box_follows_ = false;
};

}  // namespace kavrel
