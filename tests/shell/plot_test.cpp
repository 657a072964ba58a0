#include "shell/plot.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "shell/analysis_result.h"
#include "shell/svg_surface.h"

namespace kavrel {
namespace {

using Floats = std::vector<float>;

constexpr float nan_f = std::numeric_limits<float>::quiet_NaN();
constexpr float inf_f = std::numeric_limits<float>::infinity();

// ---- the window ----

struct Curves {
    Floats x, y1, y2;
};

Curves low_pass(int n) {
    Curves c;
    for (int i = 0; i < n; ++i) {
        const double f = 3000.0 * i / (n - 1);
        const double u = f / 1000;
        c.x.push_back(static_cast<float>(f));
        c.y1.push_back(static_cast<float>(10 * std::log10(1 + std::pow(u, 14))));
        c.y2.push_back(static_cast<float>(1e-3 / (1 + 30 * (u - 1) * (u - 1))));
    }
    return c;
}

PlotRequest request_of(const Curves& c) {
    return {.x = c.x,
            .y1 = c.y1,
            .y2 = c.y2,
            .x_label = "Frequency Hz",
            .y1_label = "Loss (dB)",
            .y2_label = "Delay (sec)",
            .title = "Low-pass",
            .print_id = 160};
}

TEST(PlotTwo, VerdictsLeaveTheWindowAsItWas) {
    const auto window = std::make_unique<PlotWindow>();
    Curves c = low_pass(501);
    ASSERT_TRUE(plot_two(*window, request_of(c), {}).ok());
    const auto before = std::make_unique<PlotWindow>(*window);

    const auto refused = [&](const PlotVerdict& verdict, std::string_view text, std::string_view caption) {
        EXPECT_EQ(verdict.text, text);
        EXPECT_EQ(verdict.caption, caption);
        EXPECT_EQ(window->point_count, before->point_count);
        EXPECT_TRUE(window->X_DATA == before->X_DATA && window->Y2_DATA == before->Y2_DATA);
    };
    const std::string_view lengths = "X and Y arrays must have the same number of elements.";
    Curves bad = c;
    bad.y1.pop_back();
    refused(plot_two(*window, request_of(bad), {}), lengths, "Plot data Error");
    bad = c;
    bad.y2.push_back(0);
    refused(plot_two(*window, request_of(bad), {}), lengths, "Plot data Error");
    refused(plot_two(*window, request_of({{1}, {1}, {}}), {}), "Too few points to plot", "Warning");
    refused(plot_two(*window, request_of(low_pass(1003)), {}), plot_messages::too_many_points.text, "Plot data Error");
    EXPECT_TRUE(plot_two(*window, request_of(low_pass(1002)), {}).ok());

    SvgSurface surface({});
    window->y2.label_count = 1;
    EXPECT_EQ(draw_plot(surface, *window).text, "Start_plot_real error: SIZE of y2_text must be > 1");
    window->y1.label_count = 1;
    EXPECT_EQ(draw_plot(surface, *window).text, "Start_plot_real error: SIZE of y1_text must be > 1");
    window->x.label_count = 0;
    EXPECT_EQ(draw_plot(surface, *window).text, "Start_plot_real error: SIZE of x_text must be > 1");
    EXPECT_EQ(draw_plot(surface, *window).caption, "Axis Text Error");
    EXPECT_EQ(plot_svg(*window), "");
}

TEST(PlotTwo, PlotsFromItsOwnArrays) {
    const auto window = std::make_unique<PlotWindow>();
    ASSERT_TRUE(plot_two(*window, request_of(low_pass(100)), {}).ok());
    const std::span<const float> x(window->X_DATA.data(), 100);
    const std::span<const float> y(window->Y2_DATA.data(), 100);
    ASSERT_TRUE(plot_two(*window, {.x = x, .y1 = y, .y1_label = "Delay (sec)", .print_id = 163}, {}).ok());
    EXPECT_EQ(window->Y1_DATA(34), low_pass(100).y2[33]);
    EXPECT_FALSE(window->has_y2);
    EXPECT_EQ(window->print_id, 163);
}

// ---- thinning ----

TEST(ThinDashed, KeepsWhatTheDashesNeed) {
    std::vector<PlotPoint> line;
    for (int i = 0; i <= 999; ++i) line.push_back({i / 999.0 * 0.8, 0.3});
    // Ten steps are the first sum above a hundredth: points 0, 10, 20, ... 990, and the last one.
    EXPECT_EQ(thin_dashed(line, 0.8, 0.9), 101u);
    EXPECT_DOUBLE_EQ(line[1].x, 10 / 999.0 * 0.8);
    EXPECT_DOUBLE_EQ(line[100].x, 0.8);

    std::vector<PlotPoint> steep = {{0, 0}, {0.001, 0.5}, {0.002, 0}, {0.003, 0.001}, {0.004, 0}};
    EXPECT_EQ(thin_dashed(steep, 1, 1), 4u);
    EXPECT_EQ(steep[3], (PlotPoint{0.004, 0}));

    std::vector<PlotPoint> two = {{0, 0}, {0.001, 0}};
    EXPECT_EQ(thin_dashed(two, 1, 1), 2u);
    EXPECT_EQ(thin_dashed({}, 1, 1), 0u);
}

// ---- pictures ----

struct TextBox {
    std::string text;
    double left, right, top, bottom;  // of its letters, in pixels
};

// The SVG surface, taking down where the texts stand by the metrics of the layout.
class WatchedSurface : public SvgSurface {
public:
    explicit WatchedSurface(SvgSize size) : SvgSurface(size), pixels(size) {}

    void text(const PlotText& t) override {
        SvgSurface::text(t);
        if (t.text.empty()) return;
        TextSize box = text_size(t.text, t.height);
        if (t.upwards) box = {box.height / aspect(), box.width * aspect()};
        const double left = t.at.x - box.width * (t.across == Across::right ? 1 : t.across == Across::middle ? 0.5 : 0);
        const double top = t.at.y - box.height * (t.along == Along::bottom ? 1 : t.along == Along::middle ? 0.5 : 0);
        // Letters fill the middle of a box's height: a quarter above and below them stays free.
        const double free_x = t.upwards ? 0.24 * box.width : 0;
        const double free_y = t.upwards ? 0 : 0.24 * box.height;
        texts.push_back({std::string(t.text), (left + free_x) * pixels.width,
                         (left + box.width - free_x) * pixels.width, (top + free_y) * pixels.height,
                         (top + box.height - free_y) * pixels.height});
    }

    SvgSize pixels;
    std::vector<TextBox> texts;
};

std::string_view attribute(std::string_view element, std::string_view name) {
    const auto at = element.find(std::string(name) + "=\"");
    if (at == std::string_view::npos) return {};
    const auto from = at + name.size() + 2;
    return element.substr(from, element.find('"', from) - from);
}

// The points of all polylines of a class, in pixels; a curve's sample in the legend, of two level points, comes last.
std::vector<std::vector<PlotPoint>> polylines(std::string_view svg, std::string_view name) {
    std::vector<std::vector<PlotPoint>> all;
    for (auto at = svg.find("<polyline"); at != std::string_view::npos; at = svg.find("<polyline", at + 1)) {
        const std::string_view element = svg.substr(at, svg.find("/>", at) - at);
        if (attribute(element, "class") != name) continue;
        const std::string_view list = attribute(element, "points");
        std::vector<PlotPoint> points;
        for (const char *p = list.data(), *end = p + list.size(); p < end;) {
            PlotPoint point;
            p = std::from_chars(p, end, point.x).ptr + 1;
            p = std::from_chars(p, end, point.y).ptr + 1;
            points.push_back(point);
        }
        all.push_back(std::move(points));
    }
    return all;
}

struct Picture {
    const char* name;
    Curves curves;
    const char* x_label;
    const char* y1_label;
    const char* y2_label;
    std::string title;
};

std::vector<Picture> pictures() {
    const Curves c = low_pass(501);
    Floats narrow, band, falling, constant(501, 6.02f), zero(501, 0.f), tiny;
    for (int i = 0; i < 501; ++i) {
        narrow.push_back(static_cast<float>(40.05 + 0.05 * std::cos(i / 20.0)));
        band.push_back(static_cast<float>(10.7e6 + (i - 250) * 200.0));
        falling.push_back(static_cast<float>(-170.0 - i * 1e-4));
        tiny.push_back(static_cast<float>(1.23e-6 + 1e-8 * std::sin(i / 40.0)));
    }
    const std::string wide(60, 'W');
    const char* w36 = "WWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWW";
    return {{"two axes", c, "Frequency Hz", "Loss (dB)", "Delay (sec)", "Low-pass"},
            {"single", {c.x, c.y1, {}}, "Frequency Hz", "Loss (dB)", "", "Low-pass"},
            {"two points", {{0, 10}, {0, 7}, {}}, "Time (sec)", "Step response", "", ""},
            {"narrow", {c.x, narrow, c.y1}, "Frequency Hz", "Loss (dB)", "Return loss (dB)", "Pass band"},
            {"band", {band, c.y1, tiny}, "Frequency Hz", "Transd. loss (dB)", "Delay (sec)", "10.7 MHz"},
            {"negative", {c.x, falling, {}}, "Frequency Hz", "Phase (deg)", "", "Phase"},
            {"constant", {c.x, constant, zero}, "Frequency Hz", "Loss (dB)", "Phase (deg)", "Attenuator"},
            {"crowded", {{0, 9.9f}, {0, 9.9f}, {0.f, 9.9f}}, "Time (sec)", "Impulse response", "Step response", ""},
            {"wide texts", {band, narrow, tiny}, w36, w36, w36, wide}};
}

TEST(Svg, TextsStandInThePictureAndApart) {
    for (const SvgSize size : {SvgSize{960, 600}, SvgSize{640, 400}, SvgSize{480, 480}}) {
        for (const Picture& picture : pictures()) {
            PlotRequest request = request_of(picture.curves);
            request.x_label = picture.x_label;
            request.y1_label = picture.y1_label;
            request.y2_label = picture.y2_label;
            request.title = picture.title;
            const auto window = std::make_unique<PlotWindow>();
            ASSERT_TRUE(plot_two(*window, request, {}).ok()) << picture.name;
            WatchedSurface surface(size);
            ASSERT_TRUE(draw_plot(surface, *window).ok()) << picture.name;
            ASSERT_GT(surface.texts.size(), 8u);
            for (std::size_t i = 0; i < surface.texts.size(); ++i) {
                const TextBox& a = surface.texts[i];
                EXPECT_GE(a.left, 0.0199 * size.width) << picture.name << ": " << a.text;
                EXPECT_GE(a.top, 0.0199 * size.height) << picture.name << ": " << a.text;
                EXPECT_LE(a.right, 0.9801 * size.width) << picture.name << ": " << a.text;
                EXPECT_LE(a.bottom, 0.9801 * size.height) << picture.name << ": " << a.text;
                for (std::size_t k = 0; k < i; ++k) {
                    const TextBox& b = surface.texts[k];
                    const bool apart = a.right <= b.left || b.right <= a.left || a.bottom <= b.top || b.bottom <= a.top;
                    EXPECT_TRUE(apart) << picture.name << " " << size.width << ": " << a.text << " on " << b.text;
                }
            }
        }
    }
}

TEST(Svg, LegendHidesNoCurve) {
    std::vector<Picture> all = pictures();
    Curves dense = low_pass(501);
    for (std::size_t i = 0; i < 501; ++i) {
        dense.y1[i] = std::sin(static_cast<float>(i) * 0.37f);
        dense.y2[i] = std::cos(static_cast<float>(i) * 0.31f);
    }
    all.push_back({"dense", dense, "Frequency Hz", "Loss (dB)", "Return loss (dB)", "Comb"});
    int legends = 0;
    for (const Picture& picture : all) {
        if (picture.curves.y2.empty()) continue;
        PlotRequest request = request_of(picture.curves);
        request.y1_label = picture.y1_label;
        request.y2_label = picture.y2_label;
        const auto window = std::make_unique<PlotWindow>();
        ASSERT_TRUE(plot_two(*window, request, {}).ok()) << picture.name;
        const std::string svg = plot_svg(*window);
        // The paper under the legend, beside that of the picture.
        const auto at = svg.find("<rect class=\"paper\" x=");
        const auto first = polylines(svg, "y1");
        const auto second = polylines(svg, "y2");
        if (at == std::string::npos && std::string_view(picture.name) == "wide texts") continue;  // no room at all
        ASSERT_EQ(first.size(), 2u) << picture.name;
        ASSERT_EQ(second.size(), 2u) << picture.name;
        legends += at == std::string::npos ? 0 : 1;
        if (at == std::string::npos) {
            EXPECT_EQ(first[1][0].x, first[1][1].x) << "samples stand below the labels of the axes";
            EXPECT_LT(first[1][0].x, first[0][0].x);
            EXPECT_GT(second[1][0].x, second[0].back().x);
            EXPECT_LT(first[1][1].y, 600.0);
            continue;
        }
        const std::string_view paper = std::string_view(svg).substr(at);
        const auto number = [&](std::string_view name) { return std::stod(std::string(attribute(paper, name))); };
        const double left = number("x");
        const double top = number("y");
        const double right = left + number("width");
        const double bottom = top + number("height");
        for (const auto& curve : {first[0], second[0]}) {
            for (const PlotPoint& p : curve) {
                EXPECT_FALSE(p.x > left && p.x < right && p.y > top && p.y < bottom) << picture.name;
            }
        }
    }
    EXPECT_EQ(legends, 4) << "of two axes, band, constant, crowded";
}

TEST(Svg, CurvePointsAreTheData) {
    const auto window = std::make_unique<PlotWindow>();
    const Curves c = low_pass(501);
    ASSERT_TRUE(plot_two(*window, request_of(c), {}).ok());
    WatchedSurface surface({});
    ASSERT_TRUE(draw_plot(surface, *window).ok());
    const std::string svg = plot_svg(*window);
    const PlotArea& area = window->area;
    const auto value_x = [&](double pixel) {
        return window->x.lo + (pixel / 960 - area.left) / (area.right - area.left) * window->x.span;
    };
    const auto value_y = [&](const PlotAxis& axis, double pixel) {
        return axis.lo + (area.bottom - pixel / 600) / (area.bottom - area.top) * axis.span;
    };

    const auto first = polylines(svg, "y1");
    ASSERT_EQ(first.size(), 2u);  // and the sample in the legend
    ASSERT_EQ(first[0].size(), 501u);
    for (std::size_t i = 0; i < 501; ++i) {
        EXPECT_NEAR(value_x(first[0][i].x), static_cast<double>(c.x[i]), 2e-6 * window->x.span);
        EXPECT_NEAR(value_y(window->y1, first[0][i].y), static_cast<double>(c.y1[i]), 2e-6 * window->y1.span);
    }

    // The dashed curve has fewer points; each of them is one of the data, in order, from the first to the last.
    const auto dashed = polylines(svg, "y2");
    ASSERT_EQ(dashed.size(), 2u);
    EXPECT_LT(dashed[0].size(), 200u);
    std::size_t i = 0;
    for (const PlotPoint& point : dashed[0]) {
        while (i < 501 && static_cast<double>(c.x[i]) < value_x(point.x) - 1) ++i;
        ASSERT_LT(i, 501u);
        EXPECT_NEAR(value_y(window->y2, point.y), static_cast<double>(c.y2[i]), 2e-6 * window->y2.span);
    }
    EXPECT_EQ(i, 500u);

    // Grid lines stand where the axes have their ticks: crosswise for x, level for y1.
    const auto grid = polylines(svg, "grid");
    ASSERT_EQ(static_cast<int>(grid.size()), window->x.label_count + window->y1.label_count);
    for (int k = 0; k < window->x.label_count; ++k) {
        const auto& line = grid[static_cast<std::size_t>(k)];
        EXPECT_NEAR(value_x(line[0].x), window->x.tick(k), 2e-6 * window->x.span);
        EXPECT_EQ(line[0].x, line[1].x);
    }
    EXPECT_EQ(polylines(svg, "frame")[0].size(), 4u);
    // Ticks, and the box of the legend, lie inside of the frame.
    int ticks = 0;
    for (const auto& line : polylines(svg, "tick")) {
        ticks += line.size() == 2 ? 1 : 0;
        for (const PlotPoint& point : line) {
            EXPECT_TRUE(point.x / 960 >= area.left - 1e-6 && point.x / 960 <= area.right + 1e-6) << point.x;
            EXPECT_TRUE(point.y / 600 >= area.top - 1e-6 && point.y / 600 <= area.bottom + 1e-6) << point.y;
        }
    }
    EXPECT_EQ(ticks, window->x.label_count + window->y1.label_count + window->y2.label_count);
    EXPECT_NE(svg.find("stroke-dasharray"), std::string::npos);
    EXPECT_NE(svg.find("font-size=\"16\""), std::string::npos) << "12 points";
}

TEST(Svg, ValuesThatAreNotFiniteAreNotDrawn) {
    Curves c = low_pass(101);
    c.y2.clear();
    c.y1[0] = nan_f;
    c.y1[40] = inf_f;
    c.y1[60] = -inf_f;
    c.x[62] = nan_f;
    const auto window = std::make_unique<PlotWindow>();
    ASSERT_TRUE(plot_two(*window, request_of(c), {}).ok());
    EXPECT_EQ(window->x.hi, 3000);
    const std::string svg = plot_svg(*window);
    EXPECT_EQ(svg.find("nan"), std::string::npos);
    EXPECT_EQ(svg.find("inf"), std::string::npos);
    std::vector<std::size_t> runs;
    for (const auto& run : polylines(svg, "y1")) runs.push_back(run.size());
    EXPECT_EQ(runs, (std::vector<std::size_t>{39, 19, 2, 38}));  // the single point 61 as a dot

    c.y1.assign(101, nan_f);
    ASSERT_TRUE(plot_two(*window, request_of(c), {}).ok());
    EXPECT_TRUE(polylines(plot_svg(*window), "y1").empty());
}

TEST(Svg, AnyTextIsWellFormed) {
    Curves c = low_pass(11);
    PlotRequest request = request_of(c);
    request.title = "a<b & c>d \"\x01\xC3\xA9\xFF\xED\xA0\x80";
    const auto window = std::make_unique<PlotWindow>();
    ASSERT_TRUE(plot_two(*window, request, {}).ok());
    EXPECT_NE(plot_svg(*window).find(">a&lt;b &amp; c&gt;d \" \xC3\xA9???"
                                     "?</text>"),
              std::string::npos);
    window->earlier = true;
    EXPECT_NE(plot_svg(*window).find("? (of an earlier filter)</text>"), std::string::npos);
    EXPECT_EQ(plot_svg(PlotWindow{}), "");
}

// ---- cursor ----

TEST(Cursor, SnapsToTheNearestPoint) {
    const auto window = std::make_unique<PlotWindow>();
    const Curves c{{0, 1000, 2000, 3000}, {0, 10, 20, 40}, {0.002f, 0.002f, 0.001f, 0.f}};
    ASSERT_TRUE(plot_two(*window, request_of(c), {}).ok());
    SvgSurface surface({});
    ASSERT_TRUE(draw_plot(surface, *window).ok());
    const auto pointer = [&](double x, const PlotAxis& axis, double y) {
        return PlotPoint{place_x(*window, x), place_y(*window, axis, y)};
    };

    CursorReadout readout = read_cursor(*window, pointer(1900, window->y1, 20.9));
    EXPECT_EQ(readout.point, 3);
    EXPECT_DOUBLE_EQ(readout.x, 2.0);  // the axis shows thousands
    EXPECT_TRUE(readout.x_text == " X = 2");
    readout = read_cursor(*window, pointer(1900, window->y1, 20 + 0.99 * window->y1.snap));
    EXPECT_TRUE(readout.y1_shown);
    EXPECT_TRUE(readout.y1_text == " Y1 = 20");
    readout = read_cursor(*window, pointer(1900, window->y1, 20 + 1.01 * window->y1.snap));
    EXPECT_FALSE(readout.y1_shown);
    EXPECT_TRUE(readout.y1_text.is_blank());

    readout = read_cursor(*window, pointer(900, window->y2, 0.002));
    EXPECT_TRUE(readout.y2_shown);
    EXPECT_NEAR(readout.y2, 2.0, 1e-6);
    EXPECT_TRUE(readout.y2_text == " Y2 = 2");
    EXPECT_FALSE(read_cursor(*window, pointer(900, window->y2, 0.002 - 1.01 * window->y2.snap)).y2_shown);
    window->has_y2 = false;
    EXPECT_FALSE(read_cursor(*window, pointer(900, window->y2, 0.002)).y2_shown);
    EXPECT_EQ(read_cursor(*window, pointer(500, window->y1, 0)).point, 1);  // the first of equals
    EXPECT_FALSE(read_cursor(*window, {window->area.left - 0.001, 0.5}).shown);
    EXPECT_FALSE(read_cursor(*window, {window->area.right + 0.001, 0.5}).shown);
    EXPECT_FALSE(read_cursor(PlotWindow{}, {0.5, 0.5}).shown);
}

TEST(Cursor, BoxStaysInTheWindow) {
    const PixelSize box{100, 40};
    const PixelSize window{640, 480};
    EXPECT_EQ(place_cursor_box({20, 30}, box, window), (PixelPoint{30, 40}));
    EXPECT_EQ(place_cursor_box({530, 430}, box, window), (PixelPoint{540, 440}));
    EXPECT_EQ(place_cursor_box({531, 30}, box, window), (PixelPoint{421, 40}));
    EXPECT_EQ(place_cursor_box({20, 431}, box, window), (PixelPoint{30, 381}));
}

// ---- the table ----

TEST(ResultTable, IsExactAndTellsWhatThereIs) {
    const auto result = std::make_unique<AnalysisResult>();
    EXPECT_EQ(write_table_csv(*result), "");

    result->kind = AnalysisResult::Kind::frequency;
    result->frequency_count = 501;
    result->has_loss = result->has_delay = true;
    std::mt19937 random(3);
    for (int i = 1; i <= 501; ++i) {
        result->frequency(i) = (i - 1) * 0.1;
        const auto bits = static_cast<std::uint32_t>(random());
        std::memcpy(&result->LOSS(i), &bits, sizeof bits);  // any single-precision number at all
    }
    result->DELA(2) = nan_f;
    const std::string csv = write_table_csv(*result);
    ASSERT_EQ(csv.substr(0, csv.find('\n')), "frequency (Hz),loss (dB),delay (sec)");
    std::size_t at = csv.find('\n') + 1;
    for (int i = 1; i <= 501; ++i) {
        const std::string line = csv.substr(at, csv.find('\n', at) - at);
        at += line.size() + 1;
        const auto comma = line.find(',');
        EXPECT_EQ(std::strtod(line.c_str(), nullptr), result->frequency(i));
        if (std::isfinite(result->LOSS(i))) {
            EXPECT_EQ(std::strtof(line.c_str() + comma + 1, nullptr), result->LOSS(i)) << line;
        } else {
            EXPECT_EQ(line[comma + 1], ',');
        }
        if (i == 2) {
            EXPECT_EQ(line.back(), ',');
        }
    }
    EXPECT_EQ(at, csv.size());

    result->time_count = 1;
    result->has_step = true;
    result->TIME(1) = 0.5f;
    result->STEP(1) = -2;
    EXPECT_EQ(write_table_csv(*result, AnalysisResult::Kind::time), "time (sec),step (1)\n0.5,-2\n");
    result->frequency_count = 1;
    result->has_loss = result->has_delay = false;
    result->has_immittance = result->admittance = result->radians = true;
    EXPECT_EQ(write_table_csv(*result), "frequency (rad/sec),real (S),imag (S)\n0,0,0\n");
}

}  // namespace
}  // namespace kavrel
