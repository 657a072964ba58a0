#include "forms/fir_analysis_form.h"

#include "shell/field_table.h"

namespace kavrel {

namespace {

using R = FirAnalysisRequest;

// Factors give length and symmetry themselves.
void fir_analysis_rules(const FirAnalysisRequest& r, FieldStates& states) {
    states.off({"filter_symmetry", "filter_length"}, r.filter_data == FirData::quadratics);
}

// Without it a filter has no frequency.
Refusal fir_analysis_refusal(const FirAnalysisRequest& r) {
    if (!(r.sampling_freq > 0.0)) return {"Sampling/quarter-wave frequency missing", "sampling_freq"};
    return {};
}

constexpr Choice data_kinds[] = {{"Coefficients", FirData::coefficients}, {"Quadratics", FirData::quadratics}};
constexpr Choice symmetries[] = {
    {"Even", FirSymmetryChoice::even}, {"Odd", FirSymmetryChoice::odd}, {"None", FirSymmetryChoice::none}};

constexpr Column coefficient_columns[] = {{"Coefficients"}};
constexpr Column quadratic_columns[] = {{"Linear terms"}, {"Quadratic terms"}};

constexpr Field coefficient_fields[] = {
    list<&R::COEFFICIENTS>("COEFFICIENTS", "Specified coefficients", coefficient_columns)};
constexpr Field quadratic_fields[] = {list<&R::FIR_ZEROS>("FIR_ZEROS", "Specified quadratics", quadratic_columns)};

const Form* opens_data(const R& r) { return r.filter_data == FirData::quadratics ? &FIR_ZEROS_DLG : &COEFFICIENTS_DLG; }

constexpr Field fields[] = {
    real<&R::sampling_freq>("sampling_freq", "Sampling freq.", Unit::frequency),
    radio<&R::filter_data>("filter_data", "Filter data", data_kinds),
    radio<&R::filter_symmetry>("filter_symmetry", "Filter symmetry", symmetries),
    integer<&R::filter_length>("filter_length", "Filter length", 0, fir_coefficient_limit),
    button<opens_data>("data", "Data"),
    flag<&R::save_analysis_data>("save_analysis_data", "Save analysis data"),
};

}  // namespace

constexpr Form ANALYSIS_FIR_DLG =
    form_of<R, fir_analysis_rules, fir_analysis_refusal>("ANALYSIS_FIR_DLG", "Entering FIR filter data", fields);
constexpr Form COEFFICIENTS_DLG = form_of<R>("COEFFICIENTS_DLG", "Specified coefficients", coefficient_fields, true);
constexpr Form FIR_ZEROS_DLG = form_of<R>("FIR_ZEROS_DLG", "Specified quadratics", quadratic_fields, true);

}  // namespace kavrel
