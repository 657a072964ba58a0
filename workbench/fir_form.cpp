#include "workbench/fir_form.h"

#include <algorithm>

namespace kavrel {

namespace {

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

constexpr Field band_fields[] = {{.name = "QUADRUPLETS",
                                  .label = "Band specification",
                                  .kind = FieldKind::list,
                                  .columns = band_columns,
                                  .list = list_of<&FirRequest::QUADRUPLETS, max_fir_bands, 4>}};
constexpr Field shape_fields[] = {{.name = "shape",
                                   .label = "Specified shape",
                                   .kind = FieldKind::list,
                                   .columns = shape_columns,
                                   .list = list_of<&FirRequest::shape, max_shape_points, 2>}};

const Form* opens_bands(const void*) { return &FIR_QUADS_DLG; }
const Form* opens_shape(const void*) { return &FIR_TWIN_DLG; }

constexpr Field fields[] = {
    {.name = "filter_length",
     .label = "Filter length",
     .kind = FieldKind::integer,
     .low = 0,
     .high = max_fir_taps,
     .cell = cell_of<&FirRequest::filter_length>},
    {.name = "design_method",
     .label = "Design method",
     .kind = FieldKind::radio,
     .choices = methods,
     .cell = cell_of<&FirRequest::design_method>},
    {.name = "fir_type",
     .label = "Type",
     .kind = FieldKind::radio,
     .choices = types,
     .cell = cell_of<&FirRequest::fir_type>},
    {.name = "specification_type",
     .label = "Specification type",
     .kind = FieldKind::radio,
     .choices = specifications,
     .cell = cell_of<&FirRequest::specification_type>},
    {.name = "details", .label = "Details", .kind = FieldKind::button, .opens = opens_bands},
    {.name = "shaped_passband", .label = "Shaped passband", .kind = FieldKind::button, .opens = opens_shape},
    {.name = "filter_type",
     .label = "Filter type",
     .kind = FieldKind::radio,
     .choices = filter_types,
     .cell = cell_of<&FirRequest::filter_type>},
    {.name = "lower_frequency",
     .label = "Lower passband freq",
     .unit = Unit::frequency,
     .cell = cell_of<&FirRequest::lower_frequency>},
    {.name = "upper_frequency",
     .label = "Upper passband freq",
     .unit = Unit::frequency,
     .cell = cell_of<&FirRequest::upper_frequency>},
    {.name = "sampling_frequency",
     .label = "Sampling frequency",
     .unit = Unit::frequency,
     .cell = cell_of<&FirRequest::sampling_frequency>},
    {.name = "slope", .label = "Slope (dB/oct)", .cell = cell_of<&FirRequest::slope>},
    {.name = "window_type",
     .label = "Window type",
     .kind = FieldKind::radio,
     .choices = windows,
     .cell = cell_of<&FirRequest::window_type>},
    {.name = "parameter", .label = "Enter loss value or parameter", .cell = cell_of<&FirRequest::parameter>},
    {.name = "save_design",
     .label = "Save design data",
     .kind = FieldKind::flag,
     .cell = cell_of<&FirRequest::save_design>},
};

}  // namespace

constexpr Form FIR_DESIGN_DLG =
    form_of<FirRequest, fir_rules, fir_message>("FIR_DESIGN_DLG", "FIR filter design", fields);
constexpr Form FIR_QUADS_DLG = form_of<FirRequest>("FIR_QUADS_DLG", "Band specification", band_fields, true);
constexpr Form FIR_TWIN_DLG = form_of<FirRequest>("FIR_TWIN_DLG", "Specified shape", shape_fields, true);

}  // namespace kavrel
