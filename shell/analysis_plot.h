// The plot of an analysis when nobody chose its curves.
#pragma once

#include "shell/analysis_result.h"
#include "shell/plot.h"

namespace kavrel {

// Opens the plot window with the loss over frequency, or, after a time analysis, with the impulse and step response
// over time.
[[nodiscard]] PlotVerdict plot_last_analysis(const AnalysisResult& result, const UnitSet& units, PlotWindow& window);

}  // namespace kavrel
