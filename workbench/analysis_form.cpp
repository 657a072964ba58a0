#include "workbench/analysis_form.h"

namespace kavrel {

namespace {

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
std::string_view analysis_message(const FilterAnalysisRequest& r) {
    const bool missing = r.analysis_kind == AnalysisKind::microwave && !(r.sampling_or_qw > 0.0);
    return missing ? "Sampling/quarter-wave frequency missing" : "";
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

constexpr Column root_columns[] = {{"Real Part"}, {"Imaginary Part"}};
constexpr Column factor_columns[] = {{"Quadratic"}, {"Linear"}, {"Constant"}};
constexpr Column feedback_columns[] = {{"Coefficients"}};

constexpr Field pole_fields[] = {{.name = "TR_POLES",
                                  .label = "Poles",
                                  .kind = FieldKind::list,
                                  .columns = root_columns,
                                  .list = list_of<&FilterAnalysisRequest::TR_POLES, finite_zero_limit, 2>}};
constexpr Field zero_fields[] = {{.name = "TR_ZEROS",
                                  .label = "Zeros",
                                  .kind = FieldKind::list,
                                  .columns = root_columns,
                                  .list = list_of<&FilterAnalysisRequest::TR_ZEROS, finite_zero_limit, 2>}};
constexpr Field numerator_fields[] = {{.name = "NUMER",
                                       .label = "Specified numerator factors",
                                       .kind = FieldKind::list,
                                       .columns = factor_columns,
                                       .list = list_of<&FilterAnalysisRequest::NUMER, section_limit, 3>}};
constexpr Field denominator_fields[] = {{.name = "DENOM",
                                         .label = "Specified denominator factors",
                                         .kind = FieldKind::list,
                                         .columns = factor_columns,
                                         .list = list_of<&FilterAnalysisRequest::DENOM, section_limit, 3>}};
constexpr Field feedback_fields[] = {{.name = "FEED",
                                      .label = "Feedback structure",
                                      .kind = FieldKind::list,
                                      .columns = feedback_columns,
                                      .list = list_of<&FilterAnalysisRequest::FEED, section_limit, 1>}};

const Form* opens_poles(const void*) { return &ANALYSIS_POLES_DLG; }
const Form* opens_zeros(const void*) { return &ANALYSIS_ZEROS_DLG; }
const Form* opens_numerator(const void*) { return &NUMER_DLG; }
const Form* opens_denominator(const void*) { return &DENOM_DLG; }
const Form* opens_feedback(const void*) { return &FEED_DLG; }

constexpr Field fields[] = {
    {.name = "analysis_kind",
     .label = "Filter kind",
     .kind = FieldKind::radio,
     .choices = kinds,
     .cell = cell_of<&FilterAnalysisRequest::analysis_kind>},
    {.name = "analysis_type",
     .label = "Filter type",
     .kind = FieldKind::radio,
     .choices = types,
     .cell = cell_of<&FilterAnalysisRequest::analysis_type>},
    {.name = "structure",
     .label = "Structure",
     .kind = FieldKind::radio,
     .choices = structures,
     .cell = cell_of<&FilterAnalysisRequest::structure>},
    {.name = "form",
     .label = "Form",
     .kind = FieldKind::radio,
     .choices = forms,
     .cell = cell_of<&FilterAnalysisRequest::form>},
    {.name = "lower_passband",
     .label = "Lower passband freq",
     .unit = Unit::frequency,
     .cell = cell_of<&FilterAnalysisRequest::lower_passband>},
    {.name = "upper_passband",
     .label = "Upper passband freq",
     .unit = Unit::frequency,
     .cell = cell_of<&FilterAnalysisRequest::upper_passband>},
    {.name = "sampling_or_qw",
     .label = "Sampling/Q.W. freq",
     .unit = Unit::frequency,
     .cell = cell_of<&FilterAnalysisRequest::sampling_or_qw>},
    {.name = "poles", .label = "Poles", .kind = FieldKind::button, .opens = opens_poles},
    {.name = "zeros", .label = "Zeros", .kind = FieldKind::button, .opens = opens_zeros},
    {.name = "numerator", .label = "Numerator", .kind = FieldKind::button, .opens = opens_numerator},
    {.name = "denominator", .label = "Denominator", .kind = FieldKind::button, .opens = opens_denominator},
    {.name = "feedback_coeff", .label = "Feedback coeff.", .kind = FieldKind::button, .opens = opens_feedback},
    {.name = "zeros_at_infinity",
     .label = "No. of zeros at infinity",
     .kind = FieldKind::integer,
     .low = 0,
     .high = max_degree,
     .cell = cell_of<&FilterAnalysisRequest::zeros_at_infinity>},
    {.name = "save_analysis",
     .label = "Save analysis data",
     .kind = FieldKind::flag,
     .cell = cell_of<&FilterAnalysisRequest::save_analysis>},
};

}  // namespace

constexpr Form ANALYSIS_DLG =
    form_of<FilterAnalysisRequest, analysis_rules, analysis_message>("ANALYSIS_DLG", "Entering filter data", fields);
constexpr Form ANALYSIS_POLES_DLG =
    form_of<FilterAnalysisRequest>("ANALYSIS_POLES_DLG", "Specified poles in Hz", pole_fields, true);
constexpr Form ANALYSIS_ZEROS_DLG =
    form_of<FilterAnalysisRequest>("ANALYSIS_ZEROS_DLG", "Specified zeros in Hz", zero_fields, true);
constexpr Form NUMER_DLG =
    form_of<FilterAnalysisRequest>("NUMER_DLG", "Specified numerator factors", numerator_fields, true);
constexpr Form DENOM_DLG =
    form_of<FilterAnalysisRequest>("DENOM_DLG", "Specified denominator factors", denominator_fields, true);
constexpr Form FEED_DLG = form_of<FilterAnalysisRequest>("FEED_DLG", "Feedback structure", feedback_fields, true);

}  // namespace kavrel
