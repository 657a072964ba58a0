#include "shell/plot_form.h"

#include <algorithm>
#include <cmath>

namespace kavrel {

namespace {

struct Curves {
    const CurveRow* y1 = nullptr;
    const CurveRow* y2 = nullptr;  // null with a single curve
};

const CurveRow* find_curve(const PlotSource& source, int number);
Curves chosen_curves(const PlotChoice& choice, const PlotSource& source);
const ResultColumn& x_column(const AnalysisResult& results, AnalysisResult::Kind kind);
int rows(const AnalysisResult& results, AnalysisResult::Kind kind);
void take_points(const PlotChoice& choice, const PlotSource& source, const Curves& curves, AnalysisResult& results);
std::span<const float> points(const ResultColumn& column, int count);
bool is_constant_delay(const CurveRow& curve, std::span<const float> values);

}  // namespace

PlotVerdict plot_results(const PlotChoice& choice, const PlotSource& source, const UnitSet& units,
                         AnalysisResult& results, PlotWindow& window) {
    if (rows(results, source.kind) == 0) return plot_messages::no_results;
    const Curves curves = chosen_curves(choice, source);
    if (curves.y1 == nullptr) return plot_messages::nothing_selected;
    for (const CurveRow* curve : {curves.y1, curves.y2}) {
        if (curve != nullptr && !(results.*curve->present)) return plot_messages::no_results;
    }
    take_points(choice, source, curves, results);
    if (results.point_count < source.least_points) return plot_messages::too_few_points;
    const auto x = points(results.X_DATA, results.point_count);
    const auto y1 = points(results.Y1_DATA, results.point_count);
    const auto y2 = points(results.Y2_DATA, results.has_y2 ? results.point_count : 0);
    if (is_constant_delay(*curves.y1, y1) || (results.has_y2 && is_constant_delay(*curves.y2, y2)))
        return plot_messages::constant_delay;
    return plot_two(window,
                    {.x = x,
                     .y1 = y1,
                     .y2 = y2,
                     .x_label = results.x_label.trimmed(),
                     .y1_label = results.y1_label.trimmed(),
                     .y2_label = results.y2_label.trimmed(),
                     .title = results.TITLE.trimmed(),
                     .print_id = source.print_id,
                     .source = analysed_filter(results, source.kind)},
                    units);
}

namespace {

const CurveRow* find_curve(const PlotSource& source, int number) {
    const auto row = static_cast<std::size_t>(number);
    return row >= 1 && row <= source.curves.size() ? &source.curves[row - 1] : nullptr;
}

Curves chosen_curves(const PlotChoice& choice, const PlotSource& source) {
    Curves curves{find_curve(source, choice.y1), find_curve(source, choice.y2)};
    if (curves.y1 == nullptr) std::swap(curves.y1, curves.y2);
    if (curves.y2 == curves.y1) curves.y2 = nullptr;
    return curves;
}

const ResultColumn& x_column(const AnalysisResult& results, AnalysisResult::Kind kind) {
    return kind == AnalysisResult::Kind::time ? results.TIME : results.FREQ;
}

int rows(const AnalysisResult& results, AnalysisResult::Kind kind) {
    return kind == AnalysisResult::Kind::time ? results.time_count : results.frequency_count;
}

void take_points(const PlotChoice& choice, const PlotSource& source, const Curves& curves, AnalysisResult& results) {
    const ResultColumn& x = x_column(results, source.kind);
    results.point_count = 0;
    results.has_y2 = curves.y2 != nullptr;
    // In the precision of the results: a row on a limit is inside.
    const auto lower = static_cast<float>(choice.lower * source.x_unit);
    const auto upper = static_cast<float>(choice.upper * source.x_unit);
    for (int i = 1; i <= rows(results, source.kind); ++i) {
        if (choice.upper > 0 && (x(i) < lower || x(i) > upper)) continue;
        const int n = ++results.point_count;
        results.X_DATA(n) = x(i);
        results.Y1_DATA(n) = (results.*curves.y1->column)(i);
        if (results.has_y2) results.Y2_DATA(n) = (results.*curves.y2->column)(i);
    }
    results.x_label = source.x_label;
    results.y1_label = curves.y1->label;
    results.y2_label = results.has_y2 ? curves.y2->label : "";
}

std::span<const float> points(const ResultColumn& column, int count) {
    return std::span<const float>(column.cells).first(static_cast<std::size_t>(count));
}

// But for the rounding of its last place.
bool is_constant_delay(const CurveRow& curve, std::span<const float> values) {
    constexpr float rounding = 1e-6F;
    if (curve.column != &AnalysisResult::DELA) return false;
    const auto [low, high] = std::ranges::minmax(values);
    return high - low <= rounding * std::max(std::abs(low), std::abs(high));
}

}  // namespace

}  // namespace kavrel
