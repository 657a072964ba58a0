#include "shell/analysis_plot.h"

namespace kavrel {

namespace {

std::span<const float> rows(const ResultColumn& column, int count) {
    return {column.data(), static_cast<std::size_t>(count)};
}

}  // namespace

PlotVerdict plot_last_analysis(const AnalysisResult& result, const UnitSet& units, PlotWindow& window) {
    PlotRequest request;
    request.title = result.TITLE.trimmed();
    request.source = analysed_filter(result, result.kind);
    if (result.kind == AnalysisResult::Kind::frequency && result.has_loss) {
        request.x = rows(result.FREQ, result.frequency_count);
        request.y1 = rows(result.LOSS, result.frequency_count);
        request.x_label = result.radians ? "Frequency rad/sec" : "Frequency Hz";
        request.y1_label = "Loss (dB)";
    } else if (result.kind == AnalysisResult::Kind::time) {
        request.x = rows(result.TIME, result.time_count);
        request.y1 = rows(result.IMPULSE, result.time_count);
        request.y2 = rows(result.STEP, result.time_count);
        request.x_label = "Time (sec)";
        request.y1_label = "Impulse response";
        request.y2_label = "Step response";
    } else {
        return plot_messages::no_results;
    }
    if (request.x.size() < 2) return plot_messages::too_few_points;
    return plot_two(window, request, units);
}

}  // namespace kavrel
