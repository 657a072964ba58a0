#include "forms/analysis_form.h"

#include <cmath>

#include "approximation/digital_function.h"
#include "shell/field_table.h"

namespace kavrel {

namespace {

using R = FilterAnalysisRequest;

Refusal digital_refusal(const FilterAnalysisRequest& r);

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

// Lines have no electrical length without it, a digital filter has no frequency.
Refusal analysis_refusal(const FilterAnalysisRequest& r) {
    const bool digital = r.analysis_kind == AnalysisKind::iir_digital;
    const bool missing = (digital || r.analysis_kind == AnalysisKind::microwave) && !(r.sampling_or_qw > 0.0);
    if (missing) return {"Sampling/quarter-wave frequency missing", "sampling_or_qw"};
    return digital ? digital_refusal(r) : Refusal();
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

// Poles and zeros of a digital filter have no unit.
const Form* pole_form(const FilterAnalysisRequest& r) {
    return r.analysis_kind == AnalysisKind::iir_digital ? &DIGITAL_POLES_DLG : &ANALYSIS_POLES_DLG;
}
const Form* zero_form(const FilterAnalysisRequest& r) {
    return r.analysis_kind == AnalysisKind::iir_digital ? &DIGITAL_ZEROS_DLG : &ANALYSIS_ZEROS_DLG;
}

constexpr Column root_columns[] = {{"Real Part", Unit::hertz, Blank::zero}, {"Imaginary Part", Unit::hertz}};
constexpr Column digital_columns[] = {{"Real Part", Unit::none, Blank::zero},
                                      {"Imaginary Part", Unit::none, Blank::zero}};
constexpr Column factor_columns[] = {{"Quadratic"}, {"Linear"}, {"Constant"}};
constexpr Column feedback_columns[] = {{"Coefficients"}};

constexpr Field pole_fields[] = {list<&R::TR_POLES>("TR_POLES", "Poles", root_columns)};
constexpr Field zero_fields[] = {list<&R::TR_ZEROS>("TR_ZEROS", "Zeros", root_columns)};
constexpr Field digital_pole_fields[] = {list<&R::TR_POLES>("TR_POLES", "Poles", digital_columns, ListRows::z_plane)};
constexpr Field digital_zero_fields[] = {list<&R::TR_ZEROS>("TR_ZEROS", "Zeros", digital_columns, ListRows::z_plane)};
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
    button<pole_form>("poles", "Poles"),
    button<zero_form>("zeros", "Zeros"),
    button<NUMER_DLG>("numerator", "Numerator"),
    button<DENOM_DLG>("denominator", "Denominator"),
    button<FEED_DLG>("feedback_coeff", "Feedback coeff."),
    integer<&R::zeros_at_infinity>("zeros_at_infinity", "No. of zeros at infinity", 0, max_degree),
    flag<&R::save_analysis>("save_analysis", "Save analysis data"),
};

// Edges below half the sampling frequency, the lower one first; poles within the unit circle.
Refusal digital_refusal(const FilterAnalysisRequest& r) {
    const bool both = r.analysis_type == AnalysisType::band_pass || r.analysis_type == AnalysisType::band_reject;
    const bool low = both || r.analysis_type == AnalysisType::high_pass;
    const bool high = both || r.analysis_type == AnalysisType::low_pass;
    const double lower = low ? r.lower_passband : 0, upper = high ? r.upper_passband : 0;
    const bool crossed = lower > 0 && upper > 0 && lower >= upper;
    if (lower < 0 || 2 * lower >= r.sampling_or_qw || crossed) {
        return {"Incorrect lower passband edge", "lower_passband"};
    }
    if (upper < 0 || 2 * upper >= r.sampling_or_qw) return {"Incorrect upper passband edge", "upper_passband"};

    const bool roots = r.form == AnalysisForm::roots;
    for (int i = 1; roots && i <= r.TR_POLES.rows; ++i) {
        const double re = r.TR_POLES(i, 1), im = r.TR_POLES(i, 2);
        if (re * re + im * im >= 1) return {pole_outside, "poles"};
    }
    for (int i = 1; !roots && i <= r.DENOM.rows; ++i) {
        const double q = r.DENOM(i, 1), l = r.DENOM(i, 2), c = r.DENOM(i, 3);
        if (q == 0 && l == 0 && c == 0) return {"Values not permitted", "denominator"};
        const bool within = q != 0 ? std::abs(c / q) < 1 && std::abs(l / q) < 1 + c / q : l == 0 || std::abs(c / l) < 1;
        if (!within) return {pole_outside, "denominator"};
    }
    for (int i = 1; !roots && i <= r.NUMER.rows; ++i) {
        if (r.NUMER(i, 1) == 0 && r.NUMER(i, 2) == 0 && r.NUMER(i, 3) == 0)
            return {"Values not permitted", "numerator"};
    }
    int zeros = r.zeros_at_infinity;
    for (int i = 1; i <= r.TR_ZEROS.rows; ++i) zeros += r.TR_ZEROS(i, 2) == 0 ? 1 : 2;
    if (roots && zeros > max_degree) return {"Too many zeros", "zeros_at_infinity"};
    const bool any = roots ? zeros + r.TR_POLES.rows > 0 : r.NUMER.rows + r.DENOM.rows > 0;
    return any ? Refusal() : Refusal("Not enough data", roots ? "poles" : "denominator");
}

}  // namespace

constexpr Form ANALYSIS_DLG =
    form_of<R, analysis_rules, analysis_refusal>("ANALYSIS_DLG", "Entering filter data", fields);
constexpr Form ANALYSIS_POLES_DLG = form_of<R>("ANALYSIS_POLES_DLG", "Specified poles in Hz", pole_fields, true);
constexpr Form ANALYSIS_ZEROS_DLG = form_of<R>("ANALYSIS_ZEROS_DLG", "Specified zeros in Hz", zero_fields, true);
constexpr Form DIGITAL_POLES_DLG = form_of<R>("DIGITAL_POLES_DLG", "Specified poles", digital_pole_fields, true);
constexpr Form DIGITAL_ZEROS_DLG = form_of<R>("DIGITAL_ZEROS_DLG", "Specified zeros", digital_zero_fields, true);
constexpr Form NUMER_DLG = form_of<R>("NUMER_DLG", "Specified numerator factors", numerator_fields, true);
constexpr Form DENOM_DLG = form_of<R>("DENOM_DLG", "Specified denominator factors", denominator_fields, true);
constexpr Form FEED_DLG = form_of<R>("FEED_DLG", "Feedback structure", feedback_fields, true);

}  // namespace kavrel
