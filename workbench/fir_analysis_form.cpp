#include "workbench/fir_analysis_form.h"

namespace kavrel {

namespace {

// Factors tell length and symmetry themselves.
void fir_analysis_rules(const FirAnalysisRequest& r, FieldStates& states) {
    states.off({"filter_symmetry", "filter_length"}, r.filter_data == FirData::quadratics);
}

constexpr Choice data_kinds[] = {{"Coefficients", FirData::coefficients}, {"Quadratics", FirData::quadratics}};
constexpr Choice symmetries[] = {{"Even", FirSymmetry::even}, {"Odd", FirSymmetry::odd}, {"None", FirSymmetry::none}};

constexpr Column coefficient_columns[] = {{"Coefficients"}};
constexpr Column quadratic_columns[] = {{"Linear terms"}, {"Quadratic terms"}};

constexpr Field coefficient_fields[] = {{.name = "COEFFICIENTS",
                                         .label = "Specified coefficients",
                                         .kind = FieldKind::list,
                                         .columns = coefficient_columns,
                                         .list = list_of<&FirAnalysisRequest::COEFFICIENTS, fir_coefficient_limit, 1>}};
constexpr Field quadratic_fields[] = {{.name = "FIR_ZEROS",
                                       .label = "Specified quadratics",
                                       .kind = FieldKind::list,
                                       .columns = quadratic_columns,
                                       .list = list_of<&FirAnalysisRequest::FIR_ZEROS, fir_quadratic_limit, 2>}};

const Form* opens_data(const void* record) {
    const auto& r = *static_cast<const FirAnalysisRequest*>(record);
    return r.filter_data == FirData::quadratics ? &FIR_ZEROS_DLG : &COEFFICIENTS_DLG;
}

constexpr Field fields[] = {
    {.name = "sampling_freq",
     .label = "Sampling freq.",
     .unit = Unit::frequency,
     .cell = cell_of<&FirAnalysisRequest::sampling_freq>},
    {.name = "filter_data",
     .label = "Filter data",
     .kind = FieldKind::radio,
     .choices = data_kinds,
     .cell = cell_of<&FirAnalysisRequest::filter_data>},
    {.name = "filter_symmetry",
     .label = "Filter symmetry",
     .kind = FieldKind::radio,
     .choices = symmetries,
     .cell = cell_of<&FirAnalysisRequest::filter_symmetry>},
    {.name = "filter_length",
     .label = "Filter length",
     .kind = FieldKind::integer,
     .low = 0,
     .high = fir_coefficient_limit,
     .cell = cell_of<&FirAnalysisRequest::filter_length>},
    {.name = "data", .label = "Data", .kind = FieldKind::button, .opens = opens_data},
    {.name = "save_analysis_data",
     .label = "Save analysis data",
     .kind = FieldKind::flag,
     .cell = cell_of<&FirAnalysisRequest::save_analysis_data>},
};

}  // namespace

constexpr Form ANALYSIS_FIR_DLG =
    form_of<FirAnalysisRequest, fir_analysis_rules>("ANALYSIS_FIR_DLG", "Entering FIR filter data", fields);
constexpr Form COEFFICIENTS_DLG =
    form_of<FirAnalysisRequest>("COEFFICIENTS_DLG", "Specified coefficients", coefficient_fields, true);
constexpr Form FIR_ZEROS_DLG =
    form_of<FirAnalysisRequest>("FIR_ZEROS_DLG", "Specified quadratics", quadratic_fields, true);

}  // namespace kavrel
