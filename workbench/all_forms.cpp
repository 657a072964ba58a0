#include "workbench/all_forms.h"

#include <algorithm>
#include <cstdlib>

#include "fir/fir_forms.h"
#include "forms/analysis_form.h"
#include "forms/delay_form.h"
#include "forms/filter_form.h"
#include "forms/fir_analysis_form.h"
#include "forms/fir_form.h"
#include "forms/units_form.h"
#include "iir/iir_forms.h"
#include "passive/passive_forms.h"
#include "shell/field_table.h"
#include "synthesis/synthesis_form.h"

namespace kavrel {

namespace {

constexpr const Form* forms[] = {&DESIGN_FILTER_DLG,
                                 &DOUBLETS_DLG,
                                 &SPECIFIED_ZEROS_DLG,
                                 &FUNCTION_ZEROS_DLG,
                                 &PLACER_DLG,
                                 &DELAY_DESIGN_DLG,
                                 &ZEROS_DLG,
                                 &POLES_DLG,
                                 &INDICATORS_DLG,
                                 &FIR_DESIGN_DLG,
                                 &FIR_QUADS_DLG,
                                 &FIR_TWIN_DLG,
                                 &ANALYSIS_DLG,
                                 &ANALYSIS_POLES_DLG,
                                 &ANALYSIS_ZEROS_DLG,
                                 &DIGITAL_POLES_DLG,
                                 &DIGITAL_ZEROS_DLG,
                                 &NUMER_DLG,
                                 &DENOM_DLG,
                                 &FEED_DLG,
                                 &ANALYSIS_FIR_DLG,
                                 &COEFFICIENTS_DLG,
                                 &FIR_ZEROS_DLG,
                                 &MENU2_DLG,
                                 &PASSIVE_TRANSFER_DLG,
                                 &PASSIVE_TITLE_DLG,
                                 &PASSIVE_PRINT_DLG,
                                 &PASSIVE_SUPPRESS_DLG,
                                 &PASSIVE_FREQUENCY_DLG,
                                 &PASSIVE_TIME_DLG,
                                 &PASSIVE_PLOT_FREQUENCY_DLG,
                                 &PASSIVE_PLOT_TIME_DLG,
                                 &PASSIVE_RESONANCE_DLG,
                                 &PASSIVE_INSERT_DLG,
                                 &PASSIVE_DELETE_DLG,
                                 &PASSIVE_CHANGE_DLG,
                                 &PASSIVE_COMBINE_DLG,
                                 &PASSIVE_SPLIT_DLG,
                                 &PASSIVE_INTERCHANGE_DLG,
                                 &PASSIVE_TEE_PI_DLG,
                                 &PASSIVE_EXCHANGE_DLG,
                                 &PASSIVE_CONVERT_DLG,
                                 &PASSIVE_LATTICE_DLG,
                                 &PASSIVE_INCLUDE_DLG,
                                 &PASSIVE_TRIPLET_DLG,
                                 &PASSIVE_QUADRUPLET_DLG,
                                 &PASSIVE_NORTON_SIMPLE_DLG,
                                 &PASSIVE_NORTON_COMPUTED_DLG,
                                 &PASSIVE_NORTON_MATCHING_DLG,
                                 &PASSIVE_EQUAL_DLG,
                                 &PASSIVE_INNER_EQUAL_DLG,
                                 &PASSIVE_MULTIPLE_L_DLG,
                                 &PASSIVE_MULTIPLE_C_DLG,
                                 &PASSIVE_MULTIPLE_VALUES_DLG,
                                 &PASSIVE_R_SCALING_DLG,
                                 &PASSIVE_F_SCALING_DLG,
                                 &PASSIVE_PREFERRED_DLG,
                                 &PASSIVE_BAND_REJECT_DLG,
                                 &Z_TRANSFORM_DLG,
                                 &SPECTRAL_DLG,
                                 &IIR_FREQUENCY_DLG,
                                 &IIR_TIME_DLG,
                                 &IIR_PLOT_FREQUENCY_DLG,
                                 &IIR_PLOT_TIME_DLG,
                                 &IIR_FLAT_DLG,
                                 &IIR_ADD_DLG,
                                 &IIR_DELETE_DLG,
                                 &IIR_PERMUTE_DLG,
                                 &IIR_TRUNCATE_DLG,
                                 &IIR_SCALE_DLG,
                                 &IIR_SCALE_FACTORS_DLG,
                                 &IIR_ORDER_DLG,
                                 &IIR_PROGRAM_DLG,
                                 &IIR_SECTION_DLG,
                                 &IIR_RESAMPLE_DLG,
                                 &IIR_TITLE_DLG,
                                 &IIR_PRINT_DLG,
                                 &FIR_FUNCTION_DLG,
                                 &FIR_FREQUENCY_DLG,
                                 &FIR_PLOT_FREQUENCY_DLG,
                                 &FIR_PLOT_TIME_DLG,
                                 &FIR_TRUNCATE_DLG,
                                 &FIR_GAIN_DLG,
                                 &FIR_PROGRAM_DLG,
                                 &FIR_ADD_DLG,
                                 &FIR_DELETE_DLG,
                                 &FIR_CHANGE_DLG,
                                 &FIR_SERIAL_DLG,
                                 &FIR_TITLE_DLG,
                                 &FIR_PRINT_DLG,
                                 &SYNTHESIS_DLG};

struct RecordRow {
    TypeTag type;
    void* (*in)(Workbench& bench);
};

template <auto... Path>
constexpr RecordRow record() {
    using Member = MemberAt<Path...>;
    return {type_tag<typename Member::Value>, [](Workbench& bench) -> void* { return &Member::in(bench); }};
}

constexpr RecordRow records[] = {
    record<&Workbench::filter_request>(),       record<&Workbench::delay_request>(),
    record<&Workbench::fir_request>(),          record<&Workbench::analysis_request>(),
    record<&Workbench::fir_analysis_request>(), record<&Workbench::session, &Session::units>(),
    record<&Workbench::passive_command>(),      record<&Workbench::iir_command>(),
    record<&Workbench::fir_command>(),          record<&Workbench::ladder, &LadderWork::form>()};

}  // namespace

std::span<const Form* const> all_forms() { return forms; }

void* record_of(const Form& form, Workbench& bench) {
    const auto found = std::ranges::find(records, form.record, &RecordRow::type);
    if (found == std::end(records)) std::abort();
    return found->in(bench);
}

}  // namespace kavrel
