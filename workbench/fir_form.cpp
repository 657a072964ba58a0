#include "workbench/fir_form.h"

#include <algorithm>

#include "shell/field_table.h"

namespace kavrel {

namespace {

using R = FirRequest;

constexpr int first_window_with_parameter = 17;

bool is_windowed(const FirRequest& r) { return r.design_method == static_cast<int>(FirMethod::windowed); }

void fir_rules(const FirRequest& r, FieldStates& states) {
    const bool windowed = is_windowed(r);
    const bool filter = r.fir_type == jtype_filter;
    states.off({"fir_type", "specification_type", "details", "shaped_passband"}, windowed);
    states.off({"filter_type", "window_type"}, !windowed);
    states.off("parameter", !windowed || r.window_type < first_window_with_parameter);
    // An equal ripple filter takes its frequencies from the band table.
    states.off({"specification_type", "details", "shaped_passband"}, !windowed && !filter);
    states.off({"lower_frequency", "upper_frequency", "sampling_frequency"}, !windowed && filter);
    states.off("lower_frequency", r.fir_type == jtype_differentiator && !windowed);
    states.off("lower_frequency", windowed && r.filter_type == 1);
    states.off("upper_frequency", windowed && r.filter_type == 2);
    states.off("slope", windowed || r.fir_type != jtype_differentiator);
}

std::string_view windowed_message(const FirRequest& r) {
    if (r.filter_length < 3) return "Filter length too low";
    if (!(r.sampling_frequency > 0.0)) return "Sampling frequency missing";
    const double half = r.sampling_frequency / 2.0;
    const auto in_band = [half](double f) { return f > 0.0 && f < half; };
    const bool good = r.filter_type == 1   ? in_band(r.upper_frequency)
                      : r.filter_type == 2 ? in_band(r.lower_frequency)
                                           : in_band(r.lower_frequency) && in_band(r.upper_frequency);
    if (!good) return "Incorrect frequency band specification";
    if (r.window_type >= first_window_with_parameter && !(r.parameter > 0.0)) return "Parameter missing";
    return {};
}

std::string_view equal_ripple_message(const FirRequest& r) {
    if (r.filter_length == 0 && r.QUADRUPLETS.rows >= 3 && r.QUADRUPLETS(3, 2) != 0.0) {
        return "Only lowpass can have zero length";
    }
    if (r.fir_type == jtype_filter) {
        int positive = 0;
        for (int row = 1; row <= std::min(2, r.QUADRUPLETS.rows); ++row) {
            positive += (r.QUADRUPLETS(row, 1) > 0.0 ? 1 : 0) + (r.QUADRUPLETS(row, 2) > 0.0 ? 1 : 0);
        }
        return positive >= 3 ? "" : "Incorrect frequency band specification";
    }
    const double product = r.fir_type == jtype_differentiator ? r.upper_frequency * r.sampling_frequency * r.slope
                                                              : r.lower_frequency * r.sampling_frequency;
    return product > 0.0 ? "" : "Missing data";
}

std::string_view fir_message(const FirRequest& r) {
    return is_windowed(r) ? windowed_message(r) : equal_ripple_message(r);
}

constexpr Choice methods[] = {{"Equal ripple", 1}, {"Windowed", 2}};
constexpr Choice types[] = {{"Filter", 1}, {"Differentiator", 2}, {"Hilbert transformer", 3}};
constexpr Choice specifications[] = {{"Ripple in dB", 1}, {"Weights", 2}};
constexpr Choice filter_types[] = {{"Lowpass", 1}, {"Highpass", 2}, {"Bandpass", 3}, {"Bandreject", 4}};
constexpr Choice windows[] = {{"Rectangular", 1},  {"Triangular", 2},       {"Hamming", 3},
                              {"Hann", 4},         {"Cosine", 5},           {"Cos**3", 6},
                              {"Cos**4", 7},       {"Blackman", 8},         {"'Exact' Blackman", 9},
                              {"3-term B-H", 10},  {"3-term 18dB/oct", 11}, {"Opt. 3-term", 12},
                              {"4-term B-H", 13},  {"4-term 40dB/oct", 14}, {"4-term 18dB/oct", 15},
                              {"Opt. 4-term", 16}, {"Kaiser", 17},          {"Chebyshev", 18},
                              {"Gaussian", 19},    {"Taylor", 20},          {"Sampled Kaiser", 21}};

constexpr Column band_columns[] = {{"Lower band-edge", Unit::frequency},
                                   {"Upper band-edge", Unit::frequency},
                                   {"Function value"},
                                   {"Ripple or weight"}};
constexpr Column shape_columns[] = {{"Frequency", Unit::frequency}, {"Loss (dB)"}};

constexpr Field band_fields[] = {list<&R::QUADRUPLETS>("QUADRUPLETS", "Band specification", band_columns)};
constexpr Field shape_fields[] = {list<&R::shape>("shape", "Specified shape", shape_columns)};

constexpr Field fields[] = {
    integer<&R::filter_length>("filter_length", "Filter length", 0, max_fir_taps),
    radio<&R::design_method>("design_method", "Design method", methods),
    radio<&R::fir_type>("fir_type", "Type", types),
    radio<&R::specification_type>("specification_type", "Specification type", specifications),
    button<FIR_QUADS_DLG>("details", "Details"),
    button<FIR_TWIN_DLG>("shaped_passband", "Shaped passband"),
    radio<&R::filter_type>("filter_type", "Filter type", filter_types),
    real<&R::lower_frequency>("lower_frequency", "Lower passband freq", Unit::frequency),
    real<&R::upper_frequency>("upper_frequency", "Upper passband freq", Unit::frequency),
    real<&R::sampling_frequency>("sampling_frequency", "Sampling frequency", Unit::frequency),
    real<&R::slope>("slope", "Slope (dB/oct)"),
    radio<&R::window_type>("window_type", "Window type", windows),
    real<&R::parameter>("parameter", "Enter loss value or parameter"),
    flag<&R::save_design>("save_design", "Save design data"),
};

}  // namespace

constexpr Form FIR_DESIGN_DLG = form_of<R, fir_rules, fir_message>("FIR_DESIGN_DLG", "FIR filter design", fields);
constexpr Form FIR_QUADS_DLG = form_of<R>("FIR_QUADS_DLG", "Band specification", band_fields, true);
constexpr Form FIR_TWIN_DLG = form_of<R>("FIR_TWIN_DLG", "Specified shape", shape_fields, true);

}  // namespace kavrel
