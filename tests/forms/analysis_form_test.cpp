#include "forms/analysis_form.h"

#include <set>

#include <gtest/gtest.h>

#include "forms/fir_analysis_form.h"
#include "tests/support/choices.h"

namespace kavrel {
namespace {

using K = AnalysisKind;
using T = AnalysisType;
using Names = std::set<std::string_view>;

Names on(const Form& form, const void* record) {
    FieldStates states(form.fields);
    form.rules(record, states);
    Names names;
    for (std::size_t i = 0; i < form.fields.size(); ++i) {
        if (states.is_on(i)) names.insert(form.fields[i].name);
    }
    return names;
}

TEST(AnalysisForm, FieldsAreOnForWhatTheFilterNeeds) {
    const struct {
        K kind;
        T type;
        int structure, form;
        Names names;
    } rows[] = {
        {K::passive_lc, T::low_pass, 1, 1, {"upper_passband"}},
        {K::passive_lc, T::high_pass, 2, 2, {"lower_passband"}},
        {K::microwave, T::band_pass, 1, 1, {"lower_passband", "upper_passband", "sampling_or_qw"}},
        {K::active_rc,
         T::band_reject,
         1,
         1,
         {"structure", "form", "lower_passband", "upper_passband", "poles", "zeros", "zeros_at_infinity"}},
        {K::active_rc, T::low_pass, 1, 2, {"structure", "form", "upper_passband", "numerator", "denominator"}},
        {K::active_rc,
         T::low_pass,
         2,
         1,
         {"structure", "upper_passband", "numerator", "denominator", "feedback_coeff"}},
        {K::switched_capacitor,
         T::low_pass,
         3,
         1,
         {"structure", "upper_passband", "sampling_or_qw", "numerator", "denominator", "feedback_coeff"}},
        {K::iir_digital,
         T::delay_equalizer,
         3,
         1,
         {"form", "upper_passband", "sampling_or_qw", "poles", "zeros", "zeros_at_infinity"}},
        {K::iir_digital, T::high_pass, 1, 2, {"form", "lower_passband", "sampling_or_qw", "numerator", "denominator"}},
    };
    int n = 0;
    for (const auto& row : rows) {
        FilterAnalysisRequest r;
        r.analysis_kind = row.kind;
        r.analysis_type = row.type;
        r.structure = static_cast<AnalysisStructure>(row.structure);
        r.form = static_cast<AnalysisForm>(row.form);
        Names names = row.names;
        names.insert({"analysis_kind", "analysis_type", "save_analysis"});
        EXPECT_EQ(on(ANALYSIS_DLG, &r), names) << "row " << n++;
    }
    FirAnalysisRequest fir;
    EXPECT_EQ(on(ANALYSIS_FIR_DLG, &fir).size(), ANALYSIS_FIR_DLG.fields.size());
    fir.filter_data = FirData::quadratics;
    EXPECT_EQ(on(ANALYSIS_FIR_DLG, &fir), (Names{"sampling_freq", "filter_data", "data", "save_analysis_data"}));
}

TEST(AnalysisForm, TheEdgeIsTheNormalisationWhereThereIsOne) {
    const auto label = [](K kind) {
        FilterAnalysisRequest r;
        r.analysis_kind = kind;
        FieldStates states(ANALYSIS_DLG.fields);
        ANALYSIS_DLG.rules(&r, states);
        for (std::size_t i = 0; i < ANALYSIS_DLG.fields.size(); ++i) {
            if (ANALYSIS_DLG.fields[i].name == "upper_passband") return states.label_at(i);
        }
        return std::string_view{};
    };
    for (const K kind : {K::passive_lc, K::microwave, K::active_rc, K::switched_capacitor}) {
        EXPECT_EQ(label(kind), "(Upper) passband/norm.") << kind;
    }
    EXPECT_EQ(label(K::iir_digital), "Upper passband freq");
}

TEST(AnalysisForm, ValidatorGoodAndBadSideBySide) {
    const struct {
        K kind;
        double quarter_wave;
        const char* wrong;
    } rows[] = {{K::passive_lc, 0.0, ""},
                {K::microwave, 1e9, ""},
                {K::microwave, 0.0, "Sampling/quarter-wave frequency missing"},
                {K::microwave, -1e9, "Sampling/quarter-wave frequency missing"},
                {K::iir_digital, 0.0, ""}};
    for (const auto& row : rows) {
        FilterAnalysisRequest r;
        r.analysis_kind = row.kind;
        r.sampling_or_qw = row.quarter_wave;
        EXPECT_EQ(ANALYSIS_DLG.message(&r), row.wrong) << row.kind;
    }
}

}  // namespace
}  // namespace kavrel
