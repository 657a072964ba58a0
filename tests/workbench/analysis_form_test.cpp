#include "forms/analysis_form.h"

#include <memory>
#include <set>

#include <gtest/gtest.h>

#include "forms/fir_analysis_form.h"
#include "passive/passive_segment.h"
#include "tests/support/choices.h"
#include "tests/support/fake_window.h"
#include "tests/support/scratch_folder.h"
#include "workbench/events.h"

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

struct AnalysisRoad : testing::Test {
    ScratchFolder folder;
    FakeWindow window;
    std::unique_ptr<Workbench> bench = std::make_unique<Workbench>(window);

    void analyse() {
        window.forms = {[](FormSheet&) { return true; }};
        dispatch_event(*bench, 149);
    }
};

TEST_F(AnalysisRoad, APassiveFilterOpensItsSegmentOnAnEmptyStore) {
    bench->session.units.frequency_index = 2;
    settle_units(bench->session.units);
    bench->passive.designed = true;
    bench->passive.circuit.R1 = 600.0;
    int k = 1;
    ASSERT_EQ(insertBranch(bench->passive.circuit, k, 50.0, 0.0, BranchId::resistor), CircuitVerdict::done);
    bench->passive_state.kept.undoCount = 3;
    bench->filter.transfer.poleCount = 5;
    bench->design = DesignOutcome::done;
    const struct {
        K kind;
        T type;
        double fa, fb, fnorm, fs;
        CircuitKind circuit;
        const char* title;
    } rows[] = {
        {K::passive_lc, T::low_pass, 0.0, 4e3, 4e3, 0.0, CircuitKind::lumped, "<New Passive Filter>"},
        {K::passive_lc, T::high_pass, 2e3, 0.0, 2e3, 0.0, CircuitKind::lumped, "<New Passive Filter>"},
        {K::microwave, T::band_pass, 2e3, 4e3, 4e3, 20e3, CircuitKind::microwave, "<New Microwave Filter>"},
    };
    for (const auto& row : rows) {
        bench->analysis_request.analysis_kind = row.kind;
        bench->analysis_request.analysis_type = row.type;
        bench->analysis_request.lower_passband = 2.0;
        bench->analysis_request.upper_passband = 4.0;
        bench->analysis_request.sampling_or_qw = 10.0;
        analyse();
        const Circuit& circuit = bench->passive.circuit;
        EXPECT_EQ(window.titles.back(), "Kavrel - PASSIVE LC/MICROWAVE MENU");
        EXPECT_EQ(bench->session.segment, SegmentId::passive);
        EXPECT_EQ(bench->session.entry(SegmentId::passive), passive_entry::ordinary_command) << "the entry is over";
        EXPECT_TRUE(bench->session.word(SegmentId::passive).is_blank());
        EXPECT_EQ(bench->session.TITLE, std::string_view(row.title));
        EXPECT_EQ(circuit.klast, 0);
        EXPECT_EQ(circuit.kind, row.circuit);
        EXPECT_EQ(circuit.fa, row.fa);
        EXPECT_EQ(circuit.fb, row.fb);
        EXPECT_EQ(circuit.fnorm, row.fnorm);
        EXPECT_EQ(circuit.fs, row.fs);
        EXPECT_EQ(bench->passive.spec.filterType, static_cast<FilterType>(row.type));
        EXPECT_FALSE(bench->passive.designed);
        EXPECT_EQ(bench->passive_state.kept.undoCount, 0);
        EXPECT_EQ(bench->filter.transfer.poleCount, 0) << "of the former design";
        EXPECT_EQ(bench->design, DesignOutcome::none);
        EXPECT_TRUE(window.boxes.empty());
    }
}

TEST_F(AnalysisRoad, OtherKindsAreNotImplementedAndChangeNothing) {
    for (const K kind : {K::active_rc, K::iir_digital, K::switched_capacitor}) {
        bench->analysis_request.analysis_kind = kind;
        analyse();
        EXPECT_EQ(window.boxes.back(), "Default: Command not implemented") << kind;
    }
    window.forms = {[](FormSheet&) { return true; }};
    dispatch_event(*bench, 152);
    EXPECT_EQ(window.boxes.size(), 4U);
    EXPECT_EQ(window.boxes.back(), "Default: Command not implemented");
    EXPECT_EQ(bench->session.segment, SegmentId::main);
    EXPECT_TRUE(bench->session.TITLE.is_blank());
    EXPECT_TRUE(bench->session.design_class.is_blank());
}

TEST_F(AnalysisRoad, ACancelledFormChangesNothing) {
    bench->session.TITLE = "kept";
    window.forms = {[](FormSheet& sheet) {
        EXPECT_EQ(sheet.enter(4, "7"), "");
        return false;
    }};
    dispatch_event(*bench, 149);
    EXPECT_EQ(bench->analysis_request.lower_passband, 0.0);
    EXPECT_EQ(bench->session.TITLE, std::string_view("kept"));
    EXPECT_EQ(bench->session.segment, SegmentId::main);
}

}  // namespace
}  // namespace kavrel
