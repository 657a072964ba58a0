#include "workbench/analysis_road.h"

#include <memory>

#include <gtest/gtest.h>

#include "passive/passive_segment.h"
#include "tests/support/choices.h"
#include "tests/support/fake_window.h"
#include "tests/support/scratch_folder.h"
#include "workbench/events.h"

namespace kavrel {
namespace {

using K = AnalysisKind;
using T = AnalysisType;

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
    bench->filter.design.transfer.poleCount = 5;
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
        EXPECT_EQ(bench->filter.design.transfer.poleCount, 0) << "of the former design";
        EXPECT_EQ(bench->design, DesignOutcome::none);
        EXPECT_TRUE(window.boxes.empty());
    }
}

TEST_F(AnalysisRoad, OtherKindsAreNotImplementedAndChangeNothing) {
    for (const K kind : {K::active_rc, K::switched_capacitor}) {
        bench->analysis_request.analysis_kind = kind;
        analyse();
        EXPECT_EQ(window.boxes.back(), "Default: Command not implemented") << kind;
    }
    EXPECT_EQ(bench->session.segment, SegmentId::main);
    EXPECT_TRUE(bench->session.TITLE.is_blank());
    EXPECT_TRUE(bench->session.design_class.is_blank());
}

TEST_F(AnalysisRoad, AnFirFilterIsShown) {
    FirAnalysisRequest& request = bench->fir_analysis_request;
    request.sampling_freq = 8, request.filter_length = 4;
    const auto analyse_fir = [&] {
        window.forms = {[](FormSheet&) { return true; }};
        dispatch_event(*bench, 152);
    };
    analyse_fir();
    EXPECT_TRUE(window.boxes.back() == "Error: Not enough data" && bench->session.segment == SegmentId::main);
    request.COEFFICIENTS.rows = 2, bench->fir_command.function_number = 4;
    analyse_fir();
    EXPECT_EQ(window.lines.back(), "    **** All coefficients are 0 ****");
    request.filter_data = FirData::quadratics, request.FIR_ZEROS.rows = 1, request.FIR_ZEROS(1, 2) = 1;
    analyse_fir();
    EXPECT_EQ(full_response(bench->fir, 1), (std::vector<double>{1, 0, 1}));
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
