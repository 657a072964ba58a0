#include "forms/fir_form.h"

#include <algorithm>
#include <array>

#include "fir/windows.h"
#include "shell/field_table.h"

namespace kavrel {

namespace {

using R = FirRequest;

bool is_windowed(const FirRequest& r) { return r.design_method == FirMethod::windowed; }

bool needs_parameter(const FirRequest& r) { return parameter_kind(r.window_type) == WindowParameter::required; }

void fir_rules(const FirRequest& r, FieldStates& states) {
    const bool windowed = is_windowed(r);
    const bool filter = r.fir_type == FirType::filter;
    states.off({"fir_type", "specification_type", "details", "shaped_passband"}, windowed);
    states.off({"filter_type", "window_type"}, !windowed);
    states.off("parameter", !windowed || parameter_kind(r.window_type) == WindowParameter::none);
    // An equal ripple filter takes its frequencies from the band table.
    states.off({"specification_type", "details", "shaped_passband"}, !windowed && !filter);
    states.off({"lower_frequency", "upper_frequency", "sampling_frequency"}, !windowed && filter);
    states.off("lower_frequency", r.fir_type == FirType::differentiator && !windowed);
    states.off("lower_frequency", windowed && r.filter_type == FirFilterType::low_pass);
    states.off("upper_frequency", windowed && r.filter_type == FirFilterType::high_pass);
    states.off("slope", windowed || r.fir_type != FirType::differentiator);
}

constexpr std::string_view bad_band = "Incorrect frequency band specification";

Refusal windowed_refusal(const FirRequest& r) {
    if (r.filter_length < 3) return {"Filter length too low", "filter_length"};
    if (!(r.sampling_frequency > 0.0)) return {"Sampling frequency missing", "sampling_frequency"};
    const double half = r.sampling_frequency / 2.0;
    const auto in_band = [half](double f) { return f > 0.0 && f < half; };
    if (r.filter_type != FirFilterType::low_pass && !in_band(r.lower_frequency)) return {bad_band, "lower_frequency"};
    if (r.filter_type != FirFilterType::high_pass && !in_band(r.upper_frequency)) return {bad_band, "upper_frequency"};
    if (needs_parameter(r) && !(r.parameter > 0.0)) return {"Parameter missing", "parameter"};
    return {};
}

Refusal equal_ripple_refusal(const FirRequest& r) {
    if (r.filter_length == 0 && r.QUADRUPLETS.rows >= 3 && r.QUADRUPLETS(3, 2) != 0.0) {
        return {"Only lowpass can have zero length", "filter_length"};
    }
    if (r.fir_type == FirType::filter) {
        int positive = 0;
        for (int row = 1; row <= std::min(2, r.QUADRUPLETS.rows); ++row) {
            positive += (r.QUADRUPLETS(row, 1) > 0.0 ? 1 : 0) + (r.QUADRUPLETS(row, 2) > 0.0 ? 1 : 0);
        }
        return positive >= 3 ? Refusal() : Refusal(bad_band, "details");
    }
    const bool differentiates = r.fir_type == FirType::differentiator;
    const double product =
        differentiates ? r.upper_frequency * r.sampling_frequency * r.slope : r.lower_frequency * r.sampling_frequency;
    if (product > 0.0) return {};
    const double edge = differentiates ? r.upper_frequency : r.lower_frequency;
    return {"Missing data", !(edge > 0.0)                   ? (differentiates ? "upper_frequency" : "lower_frequency")
                            : !(r.sampling_frequency > 0.0) ? "sampling_frequency"
                                                            : "slope"};
}

Refusal fir_refusal(const FirRequest& r) { return is_windowed(r) ? windowed_refusal(r) : equal_ripple_refusal(r); }

constexpr Choice methods[] = {{"Equal ripple", FirMethod::equal_ripple}, {"Windowed", FirMethod::windowed}};
constexpr Choice types[] = {{"Filter", FirType::filter},
                            {"Differentiator", FirType::differentiator},
                            {"Hilbert transformer", FirType::hilbert}};
constexpr Choice specifications[] = {{"Ripple in dB", FirSpecification::ripple_in_db},
                                     {"Weights", FirSpecification::weights}};
constexpr Choice filter_types[] = {{"Lowpass", FirFilterType::low_pass},
                                   {"Highpass", FirFilterType::high_pass},
                                   {"Bandpass", FirFilterType::band_pass},
                                   {"Bandreject", FirFilterType::band_reject}};
constexpr auto windows = [] {
    std::array<Choice, fir_window_count> choices;
    std::ranges::transform(fir_windows, choices.begin(),
                           [](const WindowRow& row) { return Choice(row.label, row.window); });
    return choices;
}();

constexpr Column band_columns[] = {{"Lower band-edge", Unit::frequency},
                                   {"Upper band-edge", Unit::frequency},
                                   {"Function value"},
                                   {"Ripple or weight"}};
constexpr Column shape_columns[] = {{"Frequency", Unit::frequency}, {"Loss (dB)", Unit::decibel}};

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
    real_by<R, parameter_of, give_parameter>("parameter", "Enter loss value or parameter"),
    flag<&R::save_design>("save_design", "Save design data"),
};

}  // namespace

constexpr Form FIR_DESIGN_DLG = form_of<R, fir_rules, fir_refusal>("FIR_DESIGN_DLG", "FIR filter design", fields);
constexpr Form FIR_QUADS_DLG = form_of<R>("FIR_QUADS_DLG", "Band specification", band_fields, true);
constexpr Form FIR_TWIN_DLG = form_of<R>("FIR_TWIN_DLG", "Specified shape", shape_fields, true);

}  // namespace kavrel
