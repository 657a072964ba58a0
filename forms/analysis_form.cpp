#include "forms/analysis_form.h"

#include "shell/field_table.h"

namespace kavrel {

namespace {

using R = FilterAnalysisRequest;

void analysis_rules(const FilterAnalysisRequest& r, FieldStates& states) {
    const bool circuit = r.analysis_kind == AnalysisKind::passive_lc || r.analysis_kind == AnalysisKind::microwave;
    const bool active =
        r.analysis_kind == AnalysisKind::active_rc || r.analysis_kind == AnalysisKind::switched_capacitor;
    const bool high = r.analysis_type == AnalysisType::high_pass;
    const bool feedback = active && r.structure != AnalysisStructure::cascade;
    // A structure with feedback is given by its sections; a circuit is typed in branch by branch.
    const bool roots = !circuit && !feedback && r.form == AnalysisForm::roots;
    const bool factors = !circuit && !roots;
    states.off("structure", !active);
    states.off("form", circuit || feedback);
    states.off("lower_passband",
               r.analysis_type == AnalysisType::low_pass || r.analysis_type == AnalysisType::delay_equalizer);
    states.off("upper_passband", high);
    // A digital filter has no normalisation.
    if (r.analysis_kind != AnalysisKind::iir_digital) states.label("upper_passband", "(Upper) passband/norm.");
    states.off("sampling_or_qw",
               r.analysis_kind == AnalysisKind::passive_lc || r.analysis_kind == AnalysisKind::active_rc);
    states.off({"poles", "zeros", "zeros_at_infinity"}, !roots);
    states.off({"numerator", "denominator"}, !factors);
    states.off("feedback_coeff", !feedback);
}

// Lines have no electrical length without it.
Refusal analysis_refusal(const FilterAnalysisRequest& r) {
    const bool missing = r.analysis_kind == AnalysisKind::microwave && !(r.sampling_or_qw > 0.0);
    return missing ? Refusal("Sampling/quarter-wave frequency missing", "sampling_or_qw") : Refusal();
}

constexpr Choice kinds[] = {{"Passive LC", AnalysisKind::passive_lc},
                            {"Microwave", AnalysisKind::microwave},
                            {"Active RC", AnalysisKind::active_rc},
                            {"Switched capacitor", AnalysisKind::switched_capacitor},
                            {"IIR digital", AnalysisKind::iir_digital}};
constexpr Choice types[] = {{"Lowpass", AnalysisType::low_pass},
                            {"Highpass", AnalysisType::high_pass},
                            {"Bandpass", AnalysisType::band_pass},
                            {"Band reject", AnalysisType::band_reject},
                            {"Delay equalizer", AnalysisType::delay_equalizer}};
constexpr Choice structures[] = {{"Cascade", AnalysisStructure::cascade},
                                 {"Follow-the-leader", AnalysisStructure::follow_the_leader},
                                 {"Leapfrog", AnalysisStructure::leapfrog}};
constexpr Choice forms[] = {{"Roots", AnalysisForm::roots}, {"Factors", AnalysisForm::factors}};

constexpr Column root_columns[] = {{"Real Part", Unit::hertz, Blank::zero}, {"Imaginary Part", Unit::hertz}};
constexpr Column factor_columns[] = {{"Quadratic"}, {"Linear"}, {"Constant"}};
constexpr Column feedback_columns[] = {{"Coefficients"}};

constexpr Field pole_fields[] = {list<&R::TR_POLES>("TR_POLES", "Poles", root_columns)};
constexpr Field zero_fields[] = {list<&R::TR_ZEROS>("TR_ZEROS", "Zeros", root_columns)};
constexpr Field numerator_fields[] = {list<&R::NUMER>("NUMER", "Specified numerator factors", factor_columns)};
constexpr Field denominator_fields[] = {list<&R::DENOM>("DENOM", "Specified denominator factors", factor_columns)};
constexpr Field feedback_fields[] = {list<&R::FEED>("FEED", "Feedback structure", feedback_columns)};

constexpr Field fields[] = {
    radio<&R::analysis_kind>("analysis_kind", "Filter kind", kinds),
    radio<&R::analysis_type>("analysis_type", "Filter type", types),
    radio<&R::structure>("structure", "Structure", structures),
    radio<&R::form>("form", "Form", forms),
    real<&R::lower_passband>("lower_passband", "Lower passband freq", Unit::frequency),
    real<&R::upper_passband>("upper_passband", "Upper passband freq", Unit::frequency),
    real<&R::sampling_or_qw>("sampling_or_qw", "Sampling/Q.W. freq", Unit::frequency),
    button<ANALYSIS_POLES_DLG>("poles", "Poles"),
    button<ANALYSIS_ZEROS_DLG>("zeros", "Zeros"),
    button<NUMER_DLG>("numerator", "Numerator"),
    button<DENOM_DLG>("denominator", "Denominator"),
    button<FEED_DLG>("feedback_coeff", "Feedback coeff."),
    integer<&R::zeros_at_infinity>("zeros_at_infinity", "No. of zeros at infinity", 0, max_degree),
    flag<&R::save_analysis>("save_analysis", "Save analysis data"),
};

}  // namespace

constexpr Form ANALYSIS_DLG =
    form_of<R, analysis_rules, analysis_refusal>("ANALYSIS_DLG", "Entering filter data", fields);
constexpr Form ANALYSIS_POLES_DLG = form_of<R>("ANALYSIS_POLES_DLG", "Specified poles in Hz", pole_fields, true);
constexpr Form ANALYSIS_ZEROS_DLG = form_of<R>("ANALYSIS_ZEROS_DLG", "Specified zeros in Hz", zero_fields, true);
constexpr Form NUMER_DLG = form_of<R>("NUMER_DLG", "Specified numerator factors", numerator_fields, true);
constexpr Form DENOM_DLG = form_of<R>("DENOM_DLG", "Specified denominator factors", denominator_fields, true);
constexpr Form FEED_DLG = form_of<R>("FEED_DLG", "Feedback structure", feedback_fields, true);

}  // namespace kavrel
