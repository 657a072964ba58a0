// "Plot": the form in which the curves of a plot are chosen from the columns of an analysis, and the way from there
// into the plot window.
#pragma once

#include "shell/analysis_result.h"
#include "shell/field_table.h"
#include "shell/plot.h"

namespace kavrel {

inline constexpr int no_curve = 0;

// What a curve may be: its column, and its label at the axis. The row's number, from 1, is the choice in the form.
struct CurveRow {
    ResultColumn AnalysisResult::*column;
    bool AnalysisResult::*present;
    std::string_view label;
};

struct PlotChoice {
    int y1 = 1;  // number of a CurveRow, or no_curve
    int y2 = no_curve;
    double lower = 0;  // of x, in the user's unit
    double upper = 0;  // 0 or below: everything is plotted
};

// The fields of a PlotChoice that is the member `Member` of a form's record. `curves` begins and ends with "None": it
// is the last choice of the first curve and the first of the second.
template <auto Member>
constexpr std::array<Field, 4> plot_fields(std::span<const Choice> curves, Unit unit) {
    return {{
        radio<Member, &PlotChoice::y1>("y1", "First curve", curves.subspan(1)),
        radio<Member, &PlotChoice::y2>("y2", "Second curve", curves.first(curves.size() - 1)),
        real<Member, &PlotChoice::lower>("lower", "Lower limit", unit),
        real<Member, &PlotChoice::upper>("upper", "Upper limit", unit),
    }};
}

// The columns to choose from.
struct PlotSource {
    AnalysisResult::Kind kind;
    std::span<const CurveRow> curves;
    std::string_view x_label;
    double x_unit;  // of the limits, in the unit of the x column
    int print_id;   // see PlotWindow
    int least_points = 2;
};

// Copies the chosen curves, between the limits, into X_DATA, Y1_DATA and Y2_DATA, and from there into the window. Told
// instead: that there are no results of the kind, no curve is chosen, a chosen one is not among the results, the points
// are too few, or a delay is constant.
[[nodiscard]] PlotVerdict plot_results(const PlotChoice& choice, const PlotSource& source, const UnitSet& units,
                                       AnalysisResult& results, PlotWindow& window);

}  // namespace kavrel
