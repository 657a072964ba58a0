#include "forms/filter_form.h"

#include <algorithm>
#include <cmath>

#include "approximation/filter_driver.h"
#include "shell/field_table.h"

namespace kavrel {

namespace {

using R = FilterRequest;

// The choices that hold, by name. A group that is off and a stopband that cannot be had with a functional pass band
// give way.
struct Chosen {
    bool lc, microwave, active_rc, digital;
    bool low, high, band;
    bool flat, ripple, functional, sloping;
    bool of_e;
    bool monotonic, equal_min, placer, specified;
    bool conventional, parametric, matching;

    explicit Chosen(const FilterRequest& r)
        : lc(r.filter_kind == FilterKind::lc),
          microwave(r.filter_kind == FilterKind::microwave),
          active_rc(r.filter_kind == FilterKind::active_rc),
          digital(r.filter_kind == FilterKind::iir_digital),
          low(r.filter_type == TypeChoice::low_pass),
          high(r.filter_type == TypeChoice::high_pass),
          band(r.filter_type == TypeChoice::band_pass),
          flat(r.passband_type == PassbandChoice::max_flat),
          ripple(r.passband_type == PassbandChoice::equal_ripple),
          functional(r.passband_type == PassbandChoice::functional),
          sloping(r.passband_type == PassbandChoice::sloping),
          of_e(functional && r.function_type == FunctionChoice::e) {
        const bool any_stopband = flat || ripple;
        monotonic = any_stopband && r.stopband_type == StopbandChoice::monotonic;
        equal_min = (any_stopband || (functional && !band)) && r.stopband_type == StopbandChoice::equal_min;
        placer = any_stopband && r.stopband_type == StopbandChoice::placer;
        specified = !monotonic && !equal_min && !placer;
        matching = band && any_stopband && r.bandpass_form == BandpassChoice::matching;
        parametric = band && !sloping && r.bandpass_form == BandpassChoice::parametric;
        conventional = !parametric && !matching;
    }
};

// Rules, a routine each.

void quarter_wave_or_sampling(const FilterRequest&, const Chosen& is, FieldStates& states) {
    states.off("fq_or_fs", !is.microwave && !is.digital);
    if (is.microwave) states.label("fq_or_fs", "Quarter-wave frequency");
    if (is.digital) states.label("fq_or_fs", "Sampling frequency");
}

void passband_edges(const FilterRequest&, const Chosen& is, FieldStates& states) {
    states.off("lower_passband", is.low);
    states.off("upper_passband", is.high);
}

void shifted_bandpass(const FilterRequest&, const Chosen& is, FieldStates& states) {
    states.off({"shifted_bandpass_trans", "center_frequency", "odd_parametric"},
               is.high || is.band || is.microwave || is.digital);
}

void sloping_choice(const FilterRequest&, const Chosen& is, FieldStates& states) {
    states.choice_off("passband_type", PassbandChoice::sloping, !is.band);
}

void functional_passband_fields(const FilterRequest&, const Chosen& is, FieldStates& states) {
    if (!is.functional) return;
    states.off({"band_edge_loss", "loss_slope", "flat_loss"});
    states.off("multiplier", is.of_e);
    states.choice_off("stopband_type", StopbandChoice::monotonic);
    states.choice_off("stopband_type", StopbandChoice::placer);
    states.choice_off("stopband_type", StopbandChoice::equal_min, is.band);
    states.off({"lower_stop_loss", "upper_stop_loss"});
    states.off("lower_stopband", !is.high || is.specified);
    states.off("upper_stopband", !is.low || is.specified);
    states.off("zeros_at_zero", is.low);
    states.off("zeros_at_infinity", is.high);
    states.off("stopband_type", is.band);
}

void sloping_passband_fields(const FilterRequest&, const Chosen& is, FieldStates& states) {
    if (!is.sloping) return;
    states.off({"function_type", "multiplier", "stopband_type", "lower_stopband", "lower_stop_loss", "upper_stopband",
                "upper_stop_loss"});
}

void flat_or_ripple_passband_fields(const FilterRequest&, const Chosen& is, FieldStates& states) {
    if (!is.flat && !is.ripple) return;
    states.off({"loss_slope", "flat_loss", "function_type", "multiplier"});
    const bool estimated = is.monotonic || is.equal_min;
    states.off({"zeros_at_zero", "zeros_at_infinity"}, estimated);
    states.off({"lower_stopband", "lower_stop_loss"}, !estimated || is.low);
    states.off({"upper_stopband", "upper_stop_loss"}, !estimated || is.high);
}

void detail_button(const FilterRequest&, const Chosen& is, FieldStates& states) {
    states.off("detail_parameters", is.sloping || !(is.functional || is.placer || is.specified));
}

void zeros_that_cannot_be(const FilterRequest&, const Chosen& is, FieldStates& states) {
    if (!is.placer && !is.specified) return;
    states.off("zeros_at_zero", is.low || is.matching);
    states.off("zeros_at_infinity", is.high);
}

void unit_element_count(const FilterRequest&, const Chosen& is, FieldStates& states) {
    states.off("unit_elements", !is.microwave);
}

void bandpass_forms(const FilterRequest&, const Chosen& is, FieldStates& states) {
    states.off("bandpass_form", !is.band || is.sloping);
    states.choice_off("bandpass_form", BandpassChoice::matching, is.functional);
}

void terminations(const FilterRequest&, const Chosen& is, FieldStates& states) {
    states.off({"r1", "r2"}, is.active_rc || is.digital);
}

void symmetry(const FilterRequest&, const Chosen& is, FieldStates& states) {
    states.off("zs_parameter", is.band || !(is.equal_min || is.ripple));
}

void lossy_elements(const FilterRequest& r, const Chosen& is, FieldStates& states) {
    const bool lossy = is.lc || is.microwave;
    states.off("q_predistortion", !lossy);
    states.off("predistortion", !lossy || r.q_predistortion == 0.0 || !is.placer);
}

void zeros_at_infinity_label(const FilterRequest&, const Chosen& is, FieldStates& states) {
    if (is.microwave || is.digital) states.label("zeros_at_infinity", "# of zeros at FQ or FS/2");
}

void filter_rules(const FilterRequest& r, FieldStates& states) {
    constexpr void (*rules[])(const FilterRequest&, const Chosen&, FieldStates&) = {quarter_wave_or_sampling,
                                                                                    passband_edges,
                                                                                    shifted_bandpass,
                                                                                    sloping_choice,
                                                                                    functional_passband_fields,
                                                                                    sloping_passband_fields,
                                                                                    flat_or_ripple_passband_fields,
                                                                                    detail_button,
                                                                                    zeros_that_cannot_be,
                                                                                    unit_element_count,
                                                                                    bandpass_forms,
                                                                                    terminations,
                                                                                    symmetry,
                                                                                    lossy_elements,
                                                                                    zeros_at_infinity_label};
    const Chosen chosen(r);
    for (const auto rule : rules) rule(r, chosen, states);
}

// The validator: its tests in their order, on the request in force. Each answers what is wrong, and in which field.

constexpr std::string_view bad_stopband = "Stopband not specified or incorrect";
constexpr std::string_view bad_passband = "Passband not specified or incorrect";

// Whether a band reaches beyond what the medium can serve. A pass band may not even touch it: its tangent is infinite
// there. Edges whose fields are off are 0.
bool an_edge_is_above(const FilterRequest& r, double limit) {
    const auto above = [&](double edge) { return edge != 0.0 && edge + r.center_frequency > limit; };
    const auto at = [&](double edge) { return edge != 0.0 && edge + r.center_frequency == limit; };
    return above(r.lower_stopband) || above(r.upper_stopband) || above(r.lower_passband) || above(r.upper_passband) ||
           at(r.lower_passband) || at(r.upper_passband);
}

// A zero there is one at half the sampling or at the quarter-wave frequency, which has a count of its own, and one
// beyond is an image. Zeros in rad/sec have to wait for the frequency unit: the driver looks at them.
bool a_zero_is_beyond(const FilterRequest& r, const Chosen& is, double limit) {
    if (!is.specified || is.sloping || r.zero_unit != ZeroUnitChoice::hertz) return false;
    for (int row = 1; row <= r.TR_ZEROS.rows; ++row) {
        if (std::abs(r.TR_ZEROS(row, 2)) >= limit) return true;
    }
    return false;
}

Refusal sampling_test(const FilterRequest& r, const Chosen& is) {
    const double limit = std::abs(r.fq_or_fs) / 2.0;
    const bool low = is.digital && (an_edge_is_above(r, limit) || a_zero_is_beyond(r, is, limit));
    return low ? Refusal(sampling_too_low, "fq_or_fs") : Refusal();
}

Refusal quarter_wave_test(const FilterRequest& r, const Chosen& is) {
    const double limit = r.fq_or_fs;
    const bool low = is.microwave && (an_edge_is_above(r, limit) || a_zero_is_beyond(r, is, limit));
    return low ? Refusal(quarter_wave_too_low, "fq_or_fs") : Refusal();
}

Refusal center_test(const FilterRequest& r, const Chosen&) {
    const bool low =
        r.center_frequency > 0.0 && std::max(r.upper_passband, r.upper_stopband) > r.center_frequency / 2.0;
    return low ? Refusal("Center frequency too low", "center_frequency") : Refusal();
}

Refusal matching_test(const FilterRequest& r, const Chosen& is) {
    if (!is.matching) return {};
    if (!(r.lower_passband > 0.0) && !(r.upper_passband > 0.0)) return {"Passband is not specified", "lower_passband"};
    if (r.r1 != r.r2 && r.r1 * r.r2 != 0.0) return {};
    return {"Terminations may not be equal or zero", r.r1 == 0.0 ? "r1" : "r2"};
}

Refusal placer_test(const FilterRequest& r, const Chosen& is) {
    if (!is.placer) return {};
    int below = 0;
    int above = 0;
    for (int row = 1; row <= r.PLACER_REQS.rows && r.PLACER_REQS(row, 1) != 0.0; ++row) {
        ++(r.PLACER_REQS(row, 1) <= r.lower_passband ? below : above);
    }
    const bool good = (is.high || above > 0) && (is.low || below > 0);
    if (good) return {};
    return {is.low    ? "No upper band breakpoint"
            : is.high ? "No lower band breakpoint"
                      : "Breakpoints are missing",
            "detail_parameters"};
}

// A matching network's degree follows from the terminations where no stopband is given, and one edge is enough for it.
Refusal matching_stopband_test(const FilterRequest& r) {
    const auto pair_fits = [](double edge, double loss) {
        return (edge == 0.0 && loss == 0.0) || (edge > 0.0 && loss > 0.0);
    };
    const bool lower_edge = r.lower_stopband == 0.0 || r.lower_stopband < r.lower_passband;
    const bool upper_edge = r.upper_stopband == 0.0 || r.upper_stopband > std::max(r.lower_passband, r.upper_passband);
    if (!pair_fits(r.lower_stopband, r.lower_stop_loss) || !lower_edge) return {bad_stopband, "lower_stopband"};
    if (!pair_fits(r.upper_stopband, r.upper_stop_loss) || !upper_edge) return {bad_stopband, "upper_stopband"};
    return {};
}

Refusal estimated_stopband_test(const FilterRequest& r, const Chosen& is) {
    if (!is.monotonic && !is.equal_min) return {};
    if (is.matching) return matching_stopband_test(r);
    // The stopband of a function follows from its zeros: it needs no loss.
    const bool upper_outside = r.upper_stopband > r.upper_passband && (r.upper_stopband > 0.0 || !is.band);
    const bool lower_outside = r.lower_stopband > 0.0 && r.lower_stopband < r.lower_passband;
    if (!is.high && !is.functional && !upper_outside) return {bad_stopband, "upper_stopband"};
    if (!is.high && !is.functional && !(r.upper_stop_loss > 0.0)) return {bad_stopband, "upper_stop_loss"};
    if (!is.low && !is.functional && !lower_outside) return {bad_stopband, "lower_stopband"};
    if (!is.low && !is.functional && !(r.lower_stop_loss > 0.0)) return {bad_stopband, "lower_stop_loss"};
    if (!is.high && !(r.upper_passband > 0.0)) return {bad_passband, "upper_passband"};
    if (!is.low && !(r.lower_passband > 0.0)) return {bad_passband, "lower_passband"};
    return {};
}

Refusal loss_test(const FilterRequest& r, const Chosen& is) {
    if (r.band_edge_loss == 0.0 && !is.functional) return {"Passband loss is zero", "band_edge_loss"};
    if (is.sloping && r.loss_slope == 0.0) return {"Loss slope is zero", "loss_slope"};
    if (r.band_edge_loss > -100.0) return {};
    return {"Reflection coefficient of 100 percent or more", "band_edge_loss"};
}

// Where the counts are estimated they come out as a parametric band-pass needs them.
Refusal parametric_test(const FilterRequest& r, const Chosen& is) {
    if (is.monotonic || is.equal_min) return {};
    const bool odd = (r.zeros_at_zero % 2 != 0) || (r.zeros_at_infinity % 2 != 0) || (r.unit_elements % 2 != 0);
    return is.parametric && !odd ? Refusal("Incorrect parametric specification", "zeros_at_zero") : Refusal();
}

Refusal termination_test(const FilterRequest& r, const Chosen&) {
    if (r.r1 >= 0.0 && r.r2 >= 0.0) return {};
    return {"Terminations may not be negative", r.r1 < 0.0 ? "r1" : "r2"};
}

// Choices made before another choice turned them off.
Refusal choice_test(const FilterRequest& r, const Chosen& is) {
    if (is.sloping && !is.band) return {"A sloping pass band needs a band pass", "passband_type"};
    if (is.functional && is.band && r.bandpass_form == BandpassChoice::matching)
        return {"Matching cannot be functional", "bandpass_form"};
    return {};
}

Refusal filter_refusal(const FilterRequest& request) {
    constexpr Refusal (*tests[])(const FilterRequest&, const Chosen&) = {
        sampling_test,           quarter_wave_test, center_test,     matching_test,   placer_test,
        estimated_stopband_test, loss_test,         parametric_test, termination_test};
    const Chosen chosen(request);
    const FilterRequest r = in_force(request);
    for (const auto test : tests) {
        if (Refusal wrong = test(r, chosen); !wrong.empty()) return wrong;
    }
    return choice_test(request, chosen);
}

// Fields.

constexpr Choice kinds[] = {{"LC", FilterKind::lc},
                            {"Microwave", FilterKind::microwave},
                            {"Active RC", FilterKind::active_rc},
                            {"IIR Digital", FilterKind::iir_digital}};
constexpr Choice types[] = {
    {"Low pass", TypeChoice::low_pass}, {"High pass", TypeChoice::high_pass}, {"Band pass", TypeChoice::band_pass}};
constexpr Choice passbands[] = {{"Max. flat", PassbandChoice::max_flat},
                                {"Equal ripple", PassbandChoice::equal_ripple},
                                {"Functional", PassbandChoice::functional},
                                {"Sloping", PassbandChoice::sloping}};
constexpr Choice functions[] = {{"E", FunctionChoice::e}, {"F", FunctionChoice::f}};
constexpr Choice stopbands[] = {{"Monotonic", StopbandChoice::monotonic},
                                {"Equal min", StopbandChoice::equal_min},
                                {"Placer", StopbandChoice::placer},
                                {"Specified", StopbandChoice::specified}};
constexpr Choice bandpasses[] = {{"Conventional", BandpassChoice::conventional},
                                 {"Parametric", BandpassChoice::parametric},
                                 {"Matching", BandpassChoice::matching}};
constexpr Choice predistortions[] = {{"Passband only", PredistortionMode::passband_only},
                                     {"Pass/stop bands", PredistortionMode::pass_and_stop_bands}};
constexpr Choice zero_units[] = {{"in  Hz", ZeroUnitChoice::hertz, Unit::frequency},
                                 {"rad/sec", ZeroUnitChoice::radians}};

// A zero on the axis needs no real part.
constexpr Column root_columns[] = {{"Real Part", Unit::none, Blank::zero}, {"Imaginary Part"}};
constexpr Column requirement_columns[] = {{"Frequency", Unit::frequency}, {"Loss (dB)", Unit::decibel}};
constexpr Column placed_columns[] = {{"Frequency", Unit::frequency}, {"Multiplicity"}};

constexpr Field zero_unit_field = radio<&R::zero_unit>("frequency_unit", "Frequency unit", zero_units);
constexpr Field transmission_zeros_field =
    list<&R::TR_ZEROS>("TR_ZEROS", "Transmission zeros", root_columns, ListRows::mirrored);
constexpr Field function_zeros_field = list<&R::DOUBLETS>("DOUBLETS", "Function zeros", root_columns);

constexpr Field specified_zeros_fields[] = {zero_unit_field, transmission_zeros_field};
constexpr Field function_zeros_fields[] = {zero_unit_field, function_zeros_field};
constexpr Field doublets_fields[] = {zero_unit_field, function_zeros_field, transmission_zeros_field};

constexpr Field placer_fields[] = {
    list<&R::PLACER_REQS>("PLACER_REQS", "Requirements", requirement_columns),
    list<&R::FIXED_ZEROS>("FIXED_ZEROS", "Fixed zeros", placed_columns),
    list<&R::MOVABLE_ZEROS>("MOVABLE_ZEROS", "Movable zeros", placed_columns),
    integer<&R::lower_movable>("or_no_of_zeros_below_passband", "or no. of zeros below passband", 0, 15),
    integer<&R::upper_movable>("and_or_no_of_zeros_above_passband", "and/or no. of zeros above passband", 0, 15),
};

const Form* opens_details(const R& r) {
    const Chosen is(r);
    if (is.placer) return &PLACER_DLG;
    if (!is.functional) return &SPECIFIED_ZEROS_DLG;
    return is.equal_min ? &FUNCTION_ZEROS_DLG : &DOUBLETS_DLG;
}

constexpr int zero_limit = 50;

constexpr Field filter_fields[] = {
    radio<&R::filter_kind>("filter_kind", "Filter kind", kinds),
    real<&R::fq_or_fs>("fq_or_fs", "Quarter-wave/Sampling freq", Unit::frequency),
    radio<&R::filter_type>("filter_type", "Filter type", types),
    real<&R::lower_passband>("lower_passband", "Lower passband freq", Unit::frequency),
    real<&R::upper_passband>("upper_passband", "Upper passband freq", Unit::frequency),
    radio<&R::passband_type>("passband_type", "Passband type", passbands),
    real<&R::band_edge_loss>("band_edge_loss", "Band-edge loss/return loss (dB)", Unit::decibel),
    real<&R::loss_slope>("loss_slope", "Loss Slope (dB/oct)"),
    real<&R::flat_loss>("flat_loss", "Flat loss (dB)", Unit::decibel),
    radio<&R::function_type>("function_type", "Function Type", functions),
    real<&R::multiplier>("multiplier", "Multiplier"),
    radio<&R::stopband_type>("stopband_type", "Stopband", stopbands),
    real<&R::lower_stopband>("lower_stopband", "Lower stopband freq", Unit::frequency),
    real<&R::lower_stop_loss>("lower_stop_loss", "Loss (dB)", Unit::decibel),
    real<&R::upper_stopband>("upper_stopband", "Upper stopband freq", Unit::frequency),
    real<&R::upper_stop_loss>("upper_stop_loss", "Loss (dB)", Unit::decibel),
    button<opens_details>("detail_parameters", "Detail Parameters"),
    integer<&R::zeros_at_zero>("zeros_at_zero", "# of zeros at zero", 0, zero_limit),
    integer<&R::zeros_at_infinity>("zeros_at_infinity", "# of zeros at infinity", 0, zero_limit),
    integer<&R::unit_elements>("unit_elements", "# of unit elements", -1, zero_limit),
    radio<&R::bandpass_form>("bandpass_form", "Parametric", bandpasses),
    real<&R::r1>("r1", "R1", Unit::resistance),
    real<&R::r2>("r2", "R2", Unit::resistance),
    integer<&R::zs_parameter>("zs_parameter", "ZS parameter", -1, 1),
    real<&R::q_predistortion>("q_predistortion", "Q for predistortion"),
    radio<&R::predistortion>("predistortion", "Predistortion", predistortions),
    heading("shifted_bandpass_trans", "Shifted bandpass trans."),
    real<&R::center_frequency>("center_frequency", "Center frequency", Unit::frequency),
    flag<&R::odd_parametric>("odd_parametric", "Odd parametric"),
    flag<&R::save_design>("save_design", "Save design data"),
};

}  // namespace

FilterRequest in_force(const FilterRequest& request) {
    FilterRequest r = request;
    const Chosen is(request);
    r.stopband_type = is.monotonic   ? StopbandChoice::monotonic
                      : is.equal_min ? StopbandChoice::equal_min
                      : is.placer    ? StopbandChoice::placer
                                     : StopbandChoice::specified;
    r.bandpass_form = is.parametric ? BandpassChoice::parametric
                      : is.matching ? BandpassChoice::matching
                                    : BandpassChoice::conventional;
    r.zs_parameter = zs_parameter_of(request);
    FieldStates states(filter_fields);
    filter_rules(request, states);
    for (std::size_t i = 0; i < std::size(filter_fields); ++i) {
        const Field& field = filter_fields[i];
        const bool is_number = field.set != nullptr && field.kind != FieldKind::radio;
        if (is_number && !states.is_on(i)) field.set(&r, 0.0);
    }
    if (r.q_predistortion == 0.0 || !is.placer) r.predistortion = PredistortionMode::passband_only;
    return r;
}

constexpr Form DESIGN_FILTER_DLG =
    form_of<R, filter_rules, filter_refusal>("DESIGN_FILTER_DLG", "Filter design", filter_fields);
constexpr Form SPECIFIED_ZEROS_DLG = form_of<R>("DOUBLETS_DLG", "Filter Parameters", specified_zeros_fields, true);
constexpr Form FUNCTION_ZEROS_DLG = form_of<R>("DOUBLETS_DLG", "Filter Parameters", function_zeros_fields, true);
constexpr Form DOUBLETS_DLG = form_of<R>("DOUBLETS_DLG", "Filter Parameters", doublets_fields, true);
constexpr Form PLACER_DLG = form_of<R>("PLACER_DLG", "Filter Parameters", placer_fields, true);

}  // namespace kavrel
