#include "forms/delay_form.h"

#include <algorithm>

#include "shell/field_table.h"

namespace kavrel {

namespace {

using R = DelayRequest;

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

Refusal zeros_at_infinity_test(const DelayRequest& r) {
    const bool missing = r.implementation == DelayImplementation::lc && r.zeros_at_infinity == 0;
    return missing ? Refusal("Zero at infinity should be nonzero", "zeros_at_infinity") : Refusal();
}

Refusal max_flat_test(const DelayRequest& r, const Wanted& is) {
    if (!(r.delay > 0.0)) return {"Delay data missing", "delay"};
    if (is.line) return r.degree != 0 ? Refusal() : Refusal("Filter degree missing", "degree");
    if (!is.equal_min) return zeros_at_infinity_test(r);
    if (!(r.start_of_stopband > 0.0)) return {"Missing data", "start_of_stopband"};
    return r.degree > 0 ? Refusal() : Refusal("Missing data", "degree");
}

Refusal equal_ripple_test(const DelayRequest& r, const Wanted& is) {
    if (!(r.delay > 0.0)) return {"Delay data missing", "delay"};
    const bool edge = r.end_of_passband > 0.0;
    const std::string_view wrong = is.line ? "Degree missing" : is.equal_min ? "Data missing" : "Passband edge missing";
    if (!edge) return {wrong, "end_of_passband"};
    if (is.equal_min && !(r.start_of_stopband > 0.0)) return {wrong, "start_of_stopband"};
    if ((is.line || is.equal_min) && r.degree <= 0) return {wrong, "degree"};
    return is.specified ? zeros_at_infinity_test(r) : Refusal();
}

Refusal equalizer_test(const DelayRequest& r, const Wanted& is) {
    if (r.degree <= 0) return {"Data missing", "degree"};
    const bool missing = (is.microwave || is.digital) && !(r.fq_or_fs > 0.0);
    return missing ? Refusal("Sampling/quarter-wave frequency missing", "fq_or_fs") : Refusal();
}

Refusal delay_refusal(const DelayRequest& r) {
    const Wanted is(r);
    if (is.equalizer) return equalizer_test(r, is);
    return is.flat ? max_flat_test(r, is) : equal_ripple_test(r, is);
}

// A fit of `degree` pole coordinates and a level needs one point more than there are poles.
Refusal data_refusal(const DelayRequest& r) {
    const bool few = r.DELAY_DATA.rows < std::max(least_delay_rows, r.degree + 1);
    return few ? Refusal("Not enough data", "DELAY_DATA") : Refusal();
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
constexpr Column zero_columns[] = {{"Real Part", Unit::frequency, Blank::zero}, {"Imaginary Part", Unit::frequency}};
constexpr Column sign_columns[] = {{"1 or -1"}};

constexpr Field data_fields[] = {list<&R::DELAY_DATA>("DELAY_DATA", "Input data", data_columns)};
constexpr Field zero_fields[] = {
    list<&R::TR_ZEROS>("TR_ZEROS", "Transmission zeros", zero_columns, ListRows::mirrored)};
constexpr Field sign_fields[] = {list<&R::PLUS_MIN>("PLUS_MIN", "Indicators", sign_columns)};

constexpr Field fields[] = {
    radio<&R::delay_type>("delay_type", "Delay type", delay_types),
    radio<&R::implementation>("implementation", "Implementation", implementations),
    button<ZEROS_DLG>("data", "Data"),
    real<&R::fq_or_fs>("fq_or_fs", "FQ or FS", Unit::frequency),
    real<&R::normalization_freq>("normalization_freq", "Normalization freq", Unit::frequency),
    radio<&R::network_type>("network_type", "Network type", networks),
    real<&R::delay>("delay", "Delay", Unit::time),
    radio<&R::stopband>("stopband", "Stopband", stopbands),
    real<&R::end_of_passband>("end_of_passband", "End of passband", Unit::frequency),
    real<&R::start_of_stopband>("start_of_stopband", "Start of stopband", Unit::frequency),
    integer<&R::degree>("degree", "Degree", least_delay_degree, delay_degree_limit),
    integer<&R::zeros_at_infinity>("zeros_at_infinity", "Zeros at infinity", least_delay_degree, delay_degree_limit),
    button<POLES_DLG>("transm_zeros", "Transm. zeros"),
    heading("terminations", "Terminations"),
    real<&R::r1>("r1", "R1", Unit::resistance),
    real<&R::r2>("r2", "R2", Unit::resistance),
    real<&R::q_value>("q_value", "Q-value"),
    radio<&R::hurwitz>("hurwitz", "Hurwitz type", hurwitz_types),
    radio<&R::selection>("selection", "Selection", selections),
    button<INDICATORS_DLG>("indicators", "Indicators"),
    heading("shifted_bandpass_trans", "Shifted bandpass trans."),
    real<&R::center_frequency>("center_frequency", "Center frequency", Unit::frequency),
    flag<&R::odd_parametric>("odd_parametric", "Odd parametric"),
    flag<&R::save_design>("save_design", "Save design data"),
};

}  // namespace

constexpr Form DELAY_DESIGN_DLG = form_of<R, delay_rules, delay_refusal>("DELAY_DESIGN_DLG", "Delay design", fields);
constexpr Form ZEROS_DLG = form_of<R, nullptr, data_refusal>("ZEROS_DLG", "Input data", data_fields, true, "Warning");
constexpr Form POLES_DLG = form_of<R>("POLES_DLG", "Transmission zeros", zero_fields, true);
constexpr Form INDICATORS_DLG = form_of<R>("INDICATORS_DLG", "Indicators", sign_fields, true);

}  // namespace kavrel
