// The plot window: one curve or two over a common x axis, with a cursor readout.
//
// A plot is made in two steps. `plot_two` copies the curves into a `PlotWindow` and finds the three axes; `draw_plot`
// lays that window out on a surface and draws it, as often as the window has to be painted. All places on a surface are
// fractions of the window, x to the right and y downwards, (0, 0) the upper left corner. Heights of text are in points.
//
// An axis shows (value - offset) / 10^exponent: the exponent is a multiple of three, and the offset is other than 0
// only on an axis that is narrow compared with its level.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <type_traits>

#include "shell/fingerprint.h"
#include "shell/fixed_text.h"
#include "shell/plot_axes.h"
#include "shell/table.h"
#include "shell/units.h"

namespace kavrel {

inline constexpr int plot_bound = 1002;  // points of a curve

// ---- verdicts ----

// What a box is to say; an empty text says that all went well.
struct PlotVerdict {
    std::string_view text;
    std::string_view caption;

    [[nodiscard]] constexpr bool ok() const { return text.empty(); }
};

namespace plot_messages {
inline constexpr PlotVerdict lengths_differ{"X and Y arrays must have the same number of elements.", "Plot data Error"};
inline constexpr PlotVerdict too_many_points{"X and Y arrays must not have more than 1002 elements.",
                                             "Plot data Error"};
inline constexpr PlotVerdict few_x_labels{"Start_plot_real error: SIZE of x_text must be > 1", "Axis Text Error"};
inline constexpr PlotVerdict few_y1_labels{"Start_plot_real error: SIZE of y1_text must be > 1", "Axis Text Error"};
inline constexpr PlotVerdict few_y2_labels{"Start_plot_real error: SIZE of y2_text must be > 1", "Axis Text Error"};
inline constexpr PlotVerdict no_results{"No analysis results", "Error"};
inline constexpr PlotVerdict nothing_selected{"No plot specified", "Error"};
inline constexpr PlotVerdict too_few_points{"Too few points to plot", "Warning"};
inline constexpr PlotVerdict constant_delay{"Delay constant, no plot", "Warning"};
}  // namespace plot_messages

// ---- the surface ----

struct PlotPoint {
    double x = 0.0;
    double y = 0.0;

    friend bool operator==(const PlotPoint&, const PlotPoint&) = default;
};

struct PlotArea {
    double left = 0.0;
    double right = 1.0;
    double top = 0.0;
    double bottom = 1.0;
};

struct TextSize {
    double width = 0.0;   // fraction of the window's width
    double height = 0.0;  // fraction of the window's height
};

enum class PlotPen { frame, tick, grid, y1, y2 };

// The second curve differs from the first by its dashes, also where colours are lost.
[[nodiscard]] constexpr bool is_dashed(PlotPen pen) { return pen == PlotPen::y2; }

enum class Across { left, middle, right };
enum class Along { top, middle, bottom };
enum class PlotInk { plain, y1, y2 };

// A text in the face "ARIAL". `across` and `along` say which point of its box is at `at`; an upwards text is
// turned by a quarter, so that it is read from below, and its box (and the two anchors) are those of the turned text.
struct PlotText {
    std::string_view text;
    PlotPoint at;
    double height = 10.0;  // points
    Across across = Across::left;
    Along along = Along::top;
    PlotInk ink = PlotInk::plain;
    bool upwards = false;
};

class PlotSurface {
public:
    virtual ~PlotSurface() = default;

    // Width of the window divided by its height.
    [[nodiscard]] virtual double aspect() const = 0;

    // The box of a level text of a height in points.
    [[nodiscard]] virtual TextSize text_size(std::string_view text, double height) const = 0;

    // Straight lines from point to point; the dashes of a pen run on through the points.
    virtual void polyline(std::span<const PlotPoint> points, PlotPen pen) = 0;
    virtual void text(const PlotText& text) = 0;

    // Clears a rectangle to the colour of the paper.
    virtual void clear(const PlotArea& box) = 0;

    void line(PlotPoint from, PlotPoint to, PlotPen pen);
};

// ---- the window ----

struct PlotWindow {
    bool open = false;
    Fingerprint source = 0;  // the filter whose curves these are
    bool earlier = false;    // it is no longer the one that is shown: the title says so
    int print_id = 0;        // of the event that the window's item "&Print" sends
    int point_count = 0;     // 2 to 1002
    bool has_y2 = false;
    FixedText<60> TITLE;
    Table<float, plot_bound> X_DATA;
    Table<float, plot_bound> Y1_DATA;
    Table<float, plot_bound> Y2_DATA;
    FixedText<36> y1_label;  // as given, for the legend
    FixedText<36> y2_label;
    PlotAxis x;
    PlotAxis y1;
    PlotAxis y2;
    PlotArea area;  // of the last drawing: the plot area without its texts
};

static_assert(std::is_trivially_copyable_v<PlotWindow>);

inline constexpr std::string_view plot_window_title = "Analysis results";
inline constexpr std::string_view cursor_box_title = "Cursor Position";

struct PlotRequest {
    std::span<const float> x{};
    std::span<const float> y1{};
    std::span<const float> y2{};  // empty for a single curve
    std::string_view x_label{};
    std::string_view y1_label{};
    std::string_view y2_label{};
    std::string_view title{};
    int print_id = 0;        // see PlotWindow
    Fingerprint source = 0;  // likewise
};

// Opens the window with new curves of equally many points, 2 to 1002. Values that are not finite have no share in the
// axes and are not drawn. On any verdict but ok the window stays as it was.
[[nodiscard]] PlotVerdict plot_two(PlotWindow& window, const PlotRequest& request, const UnitSet& units);

// ---- drawing ----

// Lays the window out on a surface, then draws it. The window keeps the plot area for its cursor.
[[nodiscard]] PlotVerdict draw_plot(PlotSurface& surface, PlotWindow& window);

// The same drawing on another surface, a page or a picture, which leaves the window as it is.
[[nodiscard]] PlotVerdict print_plot(PlotSurface& page, const PlotWindow& window);

// The first step of a drawing: plot area, frame, ticks, grid, title and labels. At least two labels on each axis.
[[nodiscard]] PlotVerdict start_plot_real(PlotSurface& surface, PlotWindow& window);

// One curve (1 or 2) into the plot area; it breaks where a value is not finite.
void plot_data(PlotSurface& surface, const PlotWindow& window, int curve);

// Leaves of `points` those that a dashed pen joins: from each kept point the path is summed, by the larger of
// |dx|/span_x and |dy|/span_y, and the next one kept is the first where the sum exceeds 0.01; the last point is always
// kept. Returns how many there are, at the head of `points`.
[[nodiscard]] std::size_t thin_dashed(std::span<PlotPoint> points, double span_x, double span_y);

// The place of a value in the plot area.
[[nodiscard]] double place_x(const PlotWindow& window, double value);
[[nodiscard]] double place_y(const PlotWindow& window, const PlotAxis& axis, double value);

// ---- cursor ----

struct CursorReadout {
    bool shown = false;     // the pointer is between the left and the right edge
    int point = 0;          // the curve's point nearest in x, the first of equals
    bool y1_shown = false;  // the pointer is near the curve there
    bool y2_shown = false;
    double x = 0.0;  // values divided by their axes' 10^exponent
    double y1 = 0.0;
    double y2 = 0.0;
    FixedText<22> x_text;  // " X = 1.25"
    FixedText<22> y1_text;
    FixedText<22> y2_text;
};

// What the box "Cursor Position" shows for a pointer at a place of the window as last drawn.
[[nodiscard]] CursorReadout read_cursor(const PlotWindow& window, PlotPoint pointer);

// Width and height in pixels of a box or a window; x and y of its corner.
struct PixelSize {
    int width = 0;
    int height = 0;
};
struct PixelPoint {
    int x = 0;
    int y = 0;

    friend bool operator==(const PixelPoint&, const PixelPoint&) = default;
};

// The upper left corner of the readout box: 10 pixels to the lower right of the pointer, or to its left or above it
// where the box would leave the window.
[[nodiscard]] PixelPoint place_cursor_box(PixelPoint pointer, PixelSize box, PixelSize window);

}  // namespace kavrel
