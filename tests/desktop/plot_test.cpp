// The plot window: the cursor reads the data, a closer look shows the same curves, pictures are what is seen.
#include <QClipboard>
#include <QLabel>
#include <QMenuBar>
#include <QMimeData>
#include <QWheelEvent>
#include <cmath>

#include "desktop/painter_surface.h"
#include "desktop/plot_view.h"
#include "desktop/plot_viewer.h"
#include "tests/desktop/desktop_run.h"

namespace kavrel {
namespace {

constexpr int points = 301;

PlotWindow two_curves() {
    std::vector<float> x(points);
    std::vector<float> y1(points);
    std::vector<float> y2(points);
    for (std::size_t i = 0; i < points; ++i) {
        x[i] = 10.0F * static_cast<float>(i);
        y1[i] = 60.0F / (1.0F + std::exp((1500.0F - x[i]) / 60.0F));
        y2[i] = 0.001F * std::sin(x[i] / 300.0F);
    }
    PlotWindow window;
    EXPECT_TRUE(plot_two(window,
                         {.x = x,
                          .y1 = y1,
                          .y2 = y2,
                          .x_label = "Frequency Hz",
                          .y1_label = "Loss (dB)",
                          .y2_label = "Delay (sec)",
                          .title = "<New Filter>",
                          .print_id = 162},
                         UnitSet{})
                    .ok());
    return window;
}

struct Plot : testing::Test {
    DesktopRun run;
    PlotWindow plot = two_curves();
    PlotViewer& viewer = run.window.plot();
    PlotView& view = viewer.view();

    Plot() {
        viewer.resize(900, 640);
        run.window.show_plot(plot);
        EXPECT_TRUE(wait_for(viewer));
    }

    [[nodiscard]] QPoint pixel(int point, int curve = 1) const {
        const PlotWindow& shown = view.shown();
        const double y = static_cast<double>(curve == 1 ? shown.Y1_DATA(point) : shown.Y2_DATA(point));
        return {qRound(place_x(shown, static_cast<double>(shown.X_DATA(point))) * view.width()),
                qRound(place_y(shown, curve == 1 ? shown.y1 : shown.y2, y) * view.height())};
    }
    // Windows of a screen without a screen lie one upon the other: its moves are sent directly.
    void point_at(QPoint at, Qt::MouseButtons buttons = Qt::NoButton) {
        QMouseEvent event(QEvent::MouseMove, at, view.mapToGlobal(at), Qt::NoButton, buttons, Qt::NoModifier);
        QApplication::sendEvent(&view, &event);
    }
    void wheel(QPoint at, int turned) {
        QWheelEvent event(at, view.mapToGlobal(at), {}, {0, turned}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                          false);
        QApplication::sendEvent(&view, &event);
    }
};

TEST_F(Plot, TheCursorReadsTheDataWithSnapping) {
    for (const int point : {2, 50, 149, 150, 152, 230, points - 1}) {
        point_at(pixel(point));
        ASSERT_TRUE(view.readout().shown);
        EXPECT_EQ(view.readout().point, point);
        EXPECT_EQ(view.readout().x, plot.x.shown(static_cast<double>(plot.X_DATA(point))));
        ASSERT_TRUE(view.readout().y1_shown) << point;
        EXPECT_EQ(view.readout().y1, plot.y1.shown(static_cast<double>(plot.Y1_DATA(point))));
        point_at(pixel(point, 2));
        ASSERT_TRUE(view.readout().y2_shown) << point;
        EXPECT_EQ(view.readout().y2, plot.y2.shown(static_cast<double>(plot.Y2_DATA(point))));
        EXPECT_TRUE(view.cursor_text().contains("Y2 = " + QString::number(view.readout().y2, 'g', 7))) << point;
    }
    point_at(pixel(20) - QPoint(0, view.height() / 4));
    EXPECT_FALSE(view.readout().y1_shown) << "far from the curve";
    EXPECT_TRUE(viewer.findChild<QLabel*>("cursor")->text().startsWith("X = "));
    point_at(QPoint(2, 200));
    EXPECT_FALSE(view.readout().shown);
}

TEST_F(Plot, KeysMoveTheCursorAndAMarkGivesDifferences) {
    point_at(pixel(100));
    press(view, Qt::Key_M);
    press(view, Qt::Key_Right, Qt::ControlModifier);
    press(view, Qt::Key_Left);
    EXPECT_EQ(view.readout().point, 109);
    const double dx = plot.x.shown(static_cast<double>(plot.X_DATA(109)) - static_cast<double>(plot.X_DATA(100)));
    EXPECT_TRUE(view.difference_text().startsWith("dX = " + QString::number(dx, 'g', 7) + "   dY1 = "))
        << utf8_text(view.difference_text());
    const double dy = plot.y2.shown(static_cast<double>(plot.Y2_DATA(109)) - static_cast<double>(plot.Y2_DATA(100)));
    EXPECT_TRUE(view.difference_text().endsWith("   dY2 = " + QString::number(dy, 'g', 7)))
        << utf8_text(view.difference_text());
    press(view, Qt::Key_Escape);
    EXPECT_TRUE(view.difference_text().isEmpty());
}

TEST_F(Plot, WheelAndRubberBandLookCloserAndTheLogicsPlotStaysAsItWas) {
    const QPoint at = pixel(150);
    const double before = view.shown().x.span;
    wheel(at, 240);
    EXPECT_LT(view.shown().x.span, before);
    point_at(pixel(1));
    for (int i = 1; i <= view.shown().point_count; ++i) {
        const double x = static_cast<double>(view.shown().X_DATA(i));
        const int same = qRound(x / 10.0) + 1;
        ASSERT_EQ(view.shown().Y1_DATA(i), plot.Y1_DATA(same)) << "the same points";
    }
    wheel(at, -1200);
    EXPECT_EQ(view.shown().x.span, before) << "no farther than the whole";

    const QPoint from = pixel(120) + QPoint(0, -30);
    const QPoint to = pixel(170) + QPoint(0, 30);
    const double lo = static_cast<double>(plot.X_DATA(120));
    const double hi = static_cast<double>(plot.X_DATA(170));
    QTest::mousePress(&view, Qt::RightButton, {}, {from.x(), std::min(from.y(), to.y())});
    point_at(to);
    QTest::mouseRelease(&view, Qt::RightButton, {}, {to.x(), std::max(from.y(), to.y())});
    EXPECT_LE(view.shown().x.lo, lo + 5.0);
    EXPECT_GE(view.shown().x.hi, hi - 5.0);
    EXPECT_LT(view.shown().x.span, 2.0 * (hi - lo));
    EXPECT_EQ(utf8_text(QString::fromStdString(std::string(view.shown().x.label.trimmed()))).substr(0, 12),
              "Frequency Hz");
    const double closer = view.shown().x.span;
    press(view, Qt::Key_Minus);
    EXPECT_EQ(view.shown().x.span, 2.5 * closer) << "twice, to whole steps";
    press(view, Qt::Key_0);
    EXPECT_EQ(view.shown().x.span, before);
}

TEST_F(Plot, TheValuesUnderThePointerStayThere) {
    const PlotArea& area = view.shown().area;
    for (const double share : {0.2, 0.4, 0.9}) {
        const PlotPoint at{area.left + share * (area.right - area.left),
                           area.bottom - share * (area.bottom - area.top)};
        const PlotZoom zoom = zoom_about(view.shown(), plot, at, 2);
        for (const auto& [range, axis] : {std::pair{zoom.x, plot.x}, {zoom.y1, plot.y1}, {zoom.y2, plot.y2}}) {
            EXPECT_NEAR(range.span(), axis.span / 2, 1e-9 * axis.span);
            EXPECT_NEAR(range.lo + share * range.span(), axis.lo + share * axis.span, 1e-9 * axis.span);
        }
    }
}

TEST_F(Plot, TheDeepestLookHasAnEnd) {
    for (int i = 0; i < 60; ++i) wheel(pixel(std::min(150, view.shown().point_count)), 480);
    EXPECT_GE(view.shown().x.span, 0.5 * plot.x.span / deepest_zoom);
    EXPECT_GE(view.shown().x.label_count, 2);
    const double middle = (plot.area.left + plot.area.right) / 2;
    const AxisRange deepest = zoom_about(plot, plot, {middle, plot.area.bottom}, 1e9).x;
    EXPECT_NEAR(deepest.span() * deepest_zoom, plot.x.span, 1e-6 * plot.x.span);
    EXPECT_NEAR(deepest.lo + deepest.hi, plot.x.lo + plot.x.hi, 1e-9 * plot.x.span);
}

// A surface that keeps the curves' points.
struct KeptLines : PlotSurface {
    std::vector<PlotPoint> kept;
    [[nodiscard]] double aspect() const override { return 1.5; }
    [[nodiscard]] TextSize text_size(std::string_view text, double height) const override {
        return {0.006 * static_cast<double>(text.size()), height / 500.0};
    }
    void polyline(std::span<const PlotPoint> line, PlotPen pen) override {
        if (pen == PlotPen::y1 || pen == PlotPen::y2) kept.insert(kept.end(), line.begin(), line.end());
    }
    void text(const PlotText&) override {}
    void clear(const PlotArea&) override {}
};

TEST_F(Plot, ACloserLookDrawsNothingOutsideThePlotArea) {
    PlotWindow part = zoomed_plot(plot, {.on = true, .x = {1400, 1600}, .y1 = {20, 40}, .y2 = {-0.0005, 0.0}});
    KeptLines lines;
    ASSERT_TRUE(draw_plot_clipped(lines, part));
    ASSERT_GT(lines.kept.size(), 10U);
    for (const PlotPoint& point : lines.kept) {
        EXPECT_GE(point.x, part.area.left - 1e-9);
        EXPECT_LE(point.x, part.area.right + 1e-9);
        EXPECT_GE(point.y, part.area.top - 1e-9);
        EXPECT_LE(point.y, part.area.bottom + 1e-9);
    }
}

TEST_F(Plot, AMarkOfAnEarlierFilterLeavesTheCloserLook) {
    press(view, Qt::Key_Plus);
    const double span = view.shown().x.span;
    viewer.mark_earlier(true);
    EXPECT_NE(view.svg().find("(of an earlier filter)"), std::string::npos);
    EXPECT_EQ(view.shown().x.span, span);
    viewer.mark_earlier(false);
    EXPECT_EQ(view.svg().find("(of an earlier filter)"), std::string::npos);
}

TEST_F(Plot, PicturesAreDrawnLightWhateverThePalette) {
    const QImage seen = view.grab().toImage();
    EXPECT_EQ(seen, view.picture(view.size()).convertToFormat(seen.format()));
    viewer.set_shade(Shade::dark);
    EXPECT_LT(view.grab().toImage().pixelColor(3, 3).lightness(), 60);
    EXPECT_EQ(view.picture({900, 600}).pixelColor(3, 3), QColor(Qt::white));
    EXPECT_TRUE(viewer.save_picture("plot.png"));
    EXPECT_TRUE(viewer.save_picture("plot.svg"));
    EXPECT_FALSE(viewer.save_picture("missing/plot.png"));
    EXPECT_EQ(QImage("plot.png").width(), 2 * view.width());
    EXPECT_NE(read_text("plot.svg").find("class=\"y2\""), std::string::npos);
    press(viewer, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->image().width(), 2 * view.width());
    EXPECT_TRUE(QApplication::clipboard()->mimeData()->hasFormat("image/svg+xml"));
}

TEST_F(Plot, PrintSendsTheEventOfTheSegmentThatPlotted) {
    ASSERT_EQ(viewer.menuBar()->actions().size(), 1);
    EXPECT_EQ(viewer.menuBar()->actions()[0]->text(), "&Print");
    EXPECT_EQ(viewer.windowTitle(), "Analysis results");
    std::vector<int> sent;
    QObject::connect(&run.window.main(), &MainWindow::item_chosen, &viewer, [&](int id) { sent.push_back(id); });
    run.hands.always([](QDialog& box) { box.reject(); });
    viewer.menuBar()->actions()[0]->trigger();
    EXPECT_EQ(sent, std::vector<int>{162});
    run.window.printing().use_pdf("plot");
    EXPECT_EQ(run.window.print_plot(plot), PrintOutcome::printed);
    EXPECT_TRUE(read_text("plot.pdf").starts_with("%PDF"));
}

TEST_F(Plot, AClosedWindowOpensAgainWithTheNextPlot) {
    viewer.close();
    EXPECT_FALSE(viewer.isVisible());
    run.window.show_plot(plot);
    EXPECT_TRUE(viewer.isVisible());
}

}  // namespace
}  // namespace kavrel
