#include "fir/fir_json.h"

#include <cmath>

#include <nlohmann/json.hpp>

#include "fir/fir_deviation.h"
#include "fir/fir_report.h"
#include "fir/fir_rows.h"
#include "fir/fir_task.h"
#include "fir/level_edits.h"
#include "fir/window_figures.h"
#include "fir/windows.h"

namespace kavrel {

using Json = nlohmann::ordered_json;

namespace {

Json function_part(const FirFilter& filter, int n);
Json factors_part(const FirFactors& factors);
Json window_part(const WindowRow& row, const FirFilter& filter);
void add_deviations(Json& part, const FirFilter& filter, int n);
void add_words(Json& part, const FirFilter& filter, const FirState& state);

constexpr const char* origins[] = {"given", "equal ripple", "windowed"};

}  // namespace

Json fir_part(const FirFilter& filter, const FirState& state) {
    if (filter.functions == 0) return {};
    Json functions = Json::array();
    for (int n = 1; n <= filter.functions; ++n) functions.push_back(function_part(filter, n));
    Json part{{"length", filter.FUNCTION(1).taps},
              {"symmetry", name_of(filter.FUNCTION(1).symmetry)},
              {"method", origins[static_cast<int>(filter.origin)]},
              {"fs", filter.sampling_frequency},
              {"impulse", full_response(filter, 1)}};
    part["shown"] = shown_function(filter, state);
    add_deviations(part, filter, shown_function(filter, state));
    const WindowRow* window = window_row(filter.request.window_type);
    if (has_window(filter) && window != nullptr) part["window"] = window_part(*window, filter);
    part["functions"] = std::move(functions);
    if (filter.factors.count > 0) part["factors"] = factors_part(filter.factors);
    add_words(part, filter, state);
    return part;
}

namespace {

Json function_part(const FirFilter& filter, int n) {
    const FirFunction& function = filter.FUNCTION(n);
    const double sum = largest_output(filter, n);
    Json part{{"number", n}, {"symmetry", name_of(function.symmetry)}, {"impulse", full_response(filter, n)}};
    if (function.word.bits != fir_untruncated) part["bits"] = function.word.bits;
    if (function.gain != 0) part["gain"] = function.gain;
    if (std::isfinite(sum)) part["sum_of_magnitudes"] = sum;
    return part;
}

Json factors_part(const FirFactors& factors) {
    Json quadratics = Json::array();
    for (int k = 1; k <= factors.count; ++k) quadratics.push_back({factors.ISER(k), factors.A1(k), factors.A2(k)});
    Json part{{"multiplier", factors.multiplier}, {"delay", factors.delay}, {"quadratics", std::move(quadratics)}};
    if (factors.function > 0) part["function"] = factors.function;
    return part;
}

// What a windowed design asked for, and what it reached.
Json window_part(const WindowRow& row, const FirFilter& filter) {
    const WindowFigures figures = window_figures(filter);
    Json part{{"type", row.label}};
    if (row.parameter != WindowParameter::none) part["parameter"] = filter.request.parameter;
    if (figures.sidelobe) part["sidelobe"] = *figures.sidelobe;
    part["edges_6db"] = figures.edges_6db;
    if (figures.stopband_loss) part["stopband_loss"] = *figures.stopband_loss;
    return part;
}

// The largest weighted deviation of the function shown last, that of each band, and the gain outside of them.
void add_deviations(Json& part, const FirFilter& filter, int n) {
    FirTask task;
    if (!has_bands(filter, n) || take_task(filter.request, task) != nullptr) return;
    part["deviation"] = largest_deviation(task, filter, n).weighted;
    const double gain = largest_outside_gain(task, filter, n);
    if (gain >= 0) part["outside_gain"] = gain;
    Json deviations = Json::array();
    for (int band = 1; band <= task.BANDS.NBANDS; ++band) {
        deviations.push_back(largest_deviation(task, filter, n, band).weighted / task.BANDS.WTX(band));
    }
    part["deviations"] = std::move(deviations);
}

// The least words, as long as there is the function that they are of.
void add_words(Json& part, const FirFilter& filter, const FirState& state) {
    int n = 1;
    while (n <= filter.functions && fingerprint(filter, n) != state.words_of) ++n;
    if (n > filter.functions) return;
    Json& list = part["word_lengths"] = Json::array();
    for (const FoundWord& found : state.words) add_least_word(found, list.emplace_back(Json::object()));
}

}  // namespace

}  // namespace kavrel
