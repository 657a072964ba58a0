#include "workbench/delay_form.h"

#include <algorithm>

namespace kavrel {

namespace {

// What the choices amount to. An equalizer is no network of its own, and a delay line has no stopband.
struct Wanted {
    bool lc, microwave, digital;
    bool flat, ripple, equalizer;
    bool filter, line;
    bool equal_min, specified;
    bool signs, manual;

    explicit Wanted(const DelayRequest& r)
        : lc(r.implementation == DelayImplementation::lc),
          microwave(r.implementation == DelayImplementation::microwave),
          digital(r.implementation == DelayImplementation::iir_digital),
          flat(r.delay_type == DelayType::max_flat),
          ripple(r.delay_type == DelayType::equal_ripple),
          equalizer(r.delay_type == DelayType::equalizer),
          filter(!equalizer && r.network_type == DelayNetwork::filter),
          line(!equalizer && !filter),
          equal_min(filter && r.stopband == DelayStopband::equal_min),
          specified(filter && !equal_min),
          signs(filter && (lc || microwave)),
          manual(signs && r.hurwitz == HurwitzType::non_hurwitz && r.selection == SignSelection::manual) {}
};

void delay_rules(const DelayRequest& r, FieldStates& states) {
    const Wanted is(r);
    states.off({"data", "normalization_freq"}, !is.equalizer);
    states.off({"network_type", "delay"}, is.equalizer);
    states.off("fq_or_fs", !is.microwave && !is.digital);
    // Without a stopband that is estimated from it, the degree is the sum of the zeros.
    states.off("stopband", !is.filter);
    states.off("start_of_stopband", !is.equal_min);
    states.off("degree", is.specified);
    states.off({"zeros_at_infinity", "transm_zeros"}, !is.specified);
    // The pass band of a maximally flat delay follows from the delay.
    states.off("end_of_passband", !is.ripple);
    states.off({"terminations", "r1", "r2"}, !is.lc && !is.microwave);
    states.off("q_value", !is.signs);
    // The signs of f matter to a ladder only.
    states.off("hurwitz", !is.signs);
    states.off("selection", !is.signs || r.hurwitz != HurwitzType::non_hurwitz);
    states.off("indicators", !is.manual);
    const bool shifts = !is.equalizer && !is.microwave && !is.digital;
    states.off({"shifted_bandpass_trans", "center_frequency"}, !shifts);
    states.off("odd_parametric", !shifts || !is.filter);
}

// The validator, a routine for each type of delay.

std::string_view zeros_at_infinity_test(const DelayRequest& r) {
    const bool missing = r.implementation == DelayImplementation::lc && r.zeros_at_infinity == 0;
    return missing ? "Zero at infinity should be nonzero" : "";
}

std::string_view max_flat_test(const DelayRequest& r, const Wanted& is) {
    if (!(r.delay > 0.0)) return "Delay data missing";
    if (is.line) return r.degree != 0 ? "" : "Filter degree missing";
    if (is.equal_min) return r.degree > 0 && r.start_of_stopband > 0.0 ? "" : "Missing data";
    return zeros_at_infinity_test(r);
}

std::string_view equal_ripple_test(const DelayRequest& r, const Wanted& is) {
    if (!(r.delay > 0.0)) return "Delay data missing";
    const bool edge = r.end_of_passband > 0.0;
    if (is.line) return r.degree > 0 && edge ? "" : "Degree missing";
    if (is.equal_min) return edge && r.start_of_stopband > 0.0 && r.degree > 0 ? "" : "Data missing";
    if (!edge) return "Passband edge missing";
    return zeros_at_infinity_test(r);
}

std::string_view equalizer_test(const DelayRequest& r, const Wanted& is) {
    if (r.degree <= 0) return "Data missing";
    const bool missing = (is.microwave || is.digital) && !(r.fq_or_fs > 0.0);
    return missing ? "Sampling/quarter-wave frequency missing" : "";
}

std::string_view delay_message(const DelayRequest& r) {
    const Wanted is(r);
    if (is.equalizer) return equalizer_test(r, is);
    return is.flat ? max_flat_test(r, is) : equal_ripple_test(r, is);
}

// A fit of `degree` pole coordinates and a level needs one point more than there are poles.
std::string_view data_message(const DelayRequest& r) {
    return r.DELAY_DATA.rows < std::max(least_delay_rows, r.degree + 1) ? "Not enough data" : "";
}

// Fields.

constexpr Choice delay_types[] = {
    {"Max. flat", DelayType::max_flat}, {"Equal ripple", DelayType::equal_ripple}, {"Equalizer", DelayType::equalizer}};
constexpr Choice implementations[] = {{"LC elements", DelayImplementation::lc},
                                      {"Active RC", DelayImplementation::active_rc},
                                      {"Microwave", DelayImplementation::microwave},
                                      {"IIR digital", DelayImplementation::iir_digital}};
constexpr Choice networks[] = {{"Filter", DelayNetwork::filter}, {"Delay line", DelayNetwork::delay_line}};
constexpr Choice stopbands[] = {{"Equal min.", DelayStopband::equal_min}, {"Specified", DelayStopband::specified}};
constexpr Choice hurwitz_types[] = {{"Hurwitz", HurwitzType::hurwitz}, {"Non Hurwitz", HurwitzType::non_hurwitz}};
constexpr Choice selections[] = {{"Auto", SignSelection::automatic}, {"Manual", SignSelection::manual}};

constexpr Column data_columns[] = {{"Frequency", Unit::frequency}, {"Delay", Unit::time}};
constexpr Column zero_columns[] = {{"Real Part", Unit::frequency}, {"Imaginary Part", Unit::frequency}};
constexpr Column sign_columns[] = {{"1 or -1"}};

constexpr Field data_fields[] = {{.name = "DELAY_DATA",
                                  .label = "Input data",
                                  .kind = FieldKind::list,
                                  .columns = data_columns,
                                  .list = list_of<&DelayRequest::DELAY_DATA, delay_row_limit, 2>}};
constexpr Field zero_fields[] = {{.name = "TR_ZEROS",
                                  .label = "Transmission zeros",
                                  .kind = FieldKind::list,
                                  .columns = zero_columns,
                                  .list = list_of<&DelayRequest::TR_ZEROS, finite_zero_limit, 2>,
                                  .mirrored = true}};
constexpr Field sign_fields[] = {{.name = "PLUS_MIN",
                                  .label = "Indicators",
                                  .kind = FieldKind::list,
                                  .columns = sign_columns,
                                  .list = list_of<&DelayRequest::PLUS_MIN, sign_limit, 1>}};

const Form* opens_data(const void*) { return &ZEROS_DLG; }
const Form* opens_zeros(const void*) { return &POLES_DLG; }
const Form* opens_signs(const void*) { return &INDICATORS_DLG; }

constexpr Field fields[] = {
    {.name = "delay_type",
     .label = "Delay type",
     .kind = FieldKind::radio,
     .choices = delay_types,
     .cell = cell_of<&DelayRequest::delay_type>},
    {.name = "implementation",
     .label = "Implementation",
     .kind = FieldKind::radio,
     .choices = implementations,
     .cell = cell_of<&DelayRequest::implementation>},
    {.name = "data", .label = "Data", .kind = FieldKind::button, .opens = opens_data},
    {.name = "fq_or_fs", .label = "FQ or FS", .unit = Unit::frequency, .cell = cell_of<&DelayRequest::fq_or_fs>},
    {.name = "normalization_freq",
     .label = "Normalization freq",
     .unit = Unit::frequency,
     .cell = cell_of<&DelayRequest::normalization_freq>},
    {.name = "network_type",
     .label = "Network type",
     .kind = FieldKind::radio,
     .choices = networks,
     .cell = cell_of<&DelayRequest::network_type>},
    {.name = "delay", .label = "Delay", .unit = Unit::time, .cell = cell_of<&DelayRequest::delay>},
    {.name = "stopband",
     .label = "Stopband",
     .kind = FieldKind::radio,
     .choices = stopbands,
     .cell = cell_of<&DelayRequest::stopband>},
    {.name = "end_of_passband",
     .label = "End of passband",
     .unit = Unit::frequency,
     .cell = cell_of<&DelayRequest::end_of_passband>},
    {.name = "start_of_stopband",
     .label = "Start of stopband",
     .unit = Unit::frequency,
     .cell = cell_of<&DelayRequest::start_of_stopband>},
    {.name = "degree",
     .label = "Degree",
     .kind = FieldKind::integer,
     .low = least_delay_degree,
     .high = delay_degree_limit,
     .cell = cell_of<&DelayRequest::degree>},
    {.name = "zeros_at_infinity",
     .label = "Zeros at infinity",
     .kind = FieldKind::integer,
     .low = least_delay_degree,
     .high = delay_degree_limit,
     .cell = cell_of<&DelayRequest::zeros_at_infinity>},
    {.name = "transm_zeros", .label = "Transm. zeros", .kind = FieldKind::button, .opens = opens_zeros},
    {.name = "terminations", .label = "Terminations", .kind = FieldKind::heading},
    {.name = "r1", .label = "R1", .cell = cell_of<&DelayRequest::r1>},
    {.name = "r2", .label = "R2", .cell = cell_of<&DelayRequest::r2>},
    {.name = "q_value", .label = "Q-value", .cell = cell_of<&DelayRequest::q_value>},
    {.name = "hurwitz",
     .label = "Hurwitz type",
     .kind = FieldKind::radio,
     .choices = hurwitz_types,
     .cell = cell_of<&DelayRequest::hurwitz>},
    {.name = "selection",
     .label = "Selection",
     .kind = FieldKind::radio,
     .choices = selections,
     .cell = cell_of<&DelayRequest::selection>},
    {.name = "indicators", .label = "Indicators", .kind = FieldKind::button, .opens = opens_signs},
    {.name = "shifted_bandpass_trans", .label = "Shifted bandpass trans.", .kind = FieldKind::heading},
    {.name = "center_frequency",
     .label = "Center frequency",
     .unit = Unit::frequency,
     .cell = cell_of<&DelayRequest::center_frequency>},
    {.name = "odd_parametric",
     .label = "Odd parametric",
     .kind = FieldKind::flag,
     .cell = cell_of<&DelayRequest::odd_parametric>},
    {.name = "save_design",
     .label = "Save design data",
     .kind = FieldKind::flag,
     .cell = cell_of<&DelayRequest::save_design>},
};

}  // namespace

constexpr Form DELAY_DESIGN_DLG =
    form_of<DelayRequest, delay_rules, delay_message>("DELAY_DESIGN_DLG", "Delay design", fields);
constexpr Form ZEROS_DLG =
    form_of<DelayRequest, nullptr, data_message>("ZEROS_DLG", "Input data", data_fields, true, "Warning");
constexpr Form POLES_DLG = form_of<DelayRequest>("POLES_DLG", "Transmission zeros", zero_fields, true);
constexpr Form INDICATORS_DLG = form_of<DelayRequest>("INDICATORS_DLG", "Indicators", sign_fields, true);

}  // namespace kavrel
